"""The host end of the macro's socket: JSON lines over a Unix-domain socket (PySide2).

The add-on listens, the macro connects. Requests are answered as they arrive; events are sent
one at a time, each after the previous one's acknowledgement. Nothing here blocks FreeCAD's
user interface except wait_for_acks, which runs a local event loop (requests keep being
answered) while a save or load has to wait for the macro.
"""

import json
import os

from PySide2 import QtCore, QtNetwork

MAX_LINE = 4 * 1024 * 1024


def default_socket_path():
    explicit = os.environ.get("PLUVARINE_HOST_SOCKET")
    if explicit:
        return explicit
    runtime = os.environ.get("XDG_RUNTIME_DIR")
    if runtime:
        return os.path.join(runtime, "pluvarine-freecad.sock")
    return "/tmp/pluvarine-freecad-%d.sock" % os.getuid()


class Channel(QtCore.QObject):
    """One listening socket and at most one macro connection."""

    connected = QtCore.Signal()
    disconnected = QtCore.Signal()

    def __init__(self, path, handle_request, parent=None):
        super().__init__(parent)
        self.path = path
        self.handle_request = handle_request  # (op, target, args) -> result; raises on error
        self.server = QtNetwork.QLocalServer(self)
        self.server.newConnection.connect(self._accept)
        self.socket = None
        self.buffer = b""
        self.events = []        # events waiting to be sent
        self.pending = None     # seq of the event sent and not acknowledged
        self.last_ack = None    # the acknowledgement of the last event
        self.seq = 0

    def listen(self):
        QtNetwork.QLocalServer.removeServer(self.path)
        if os.path.exists(self.path):
            os.unlink(self.path)
        if not self.server.listen(self.path):
            raise OSError("cannot listen on %s: %s" % (self.path, self.server.errorString()))

    def close(self):
        if self.socket is not None:
            self.socket.flush()
            self.socket.waitForBytesWritten(1000)
            self.socket.disconnectFromServer()
        self.server.close()

    def is_connected(self):
        return self.socket is not None

    def busy(self):
        return bool(self.events) or self.pending is not None

    def _accept(self):
        incoming = self.server.nextPendingConnection()
        if self.socket is not None:
            incoming.disconnectFromServer()  # one macro per host; hello of another is refused
            return
        self.socket = incoming
        self.buffer = b""
        self.events = []
        self.pending = None
        incoming.readyRead.connect(self._read)
        incoming.disconnected.connect(self._lost)
        self.connected.emit()

    def _lost(self):
        if self.socket is not None:
            self.socket.deleteLater()
        self.socket = None
        self.events = []
        self.pending = None
        self.disconnected.emit()

    def _write(self, message):
        if self.socket is not None:
            self.socket.write(QtCore.QByteArray(
                json.dumps(message, separators=(",", ":")).encode("utf-8") + b"\n"))
            self.socket.flush()

    def _read(self):
        if self.socket is None:
            return
        self.buffer += bytes(self.socket.readAll())
        while b"\n" in self.buffer:
            line, self.buffer = self.buffer.split(b"\n", 1)
            self._handle_line(line)
            if self.socket is None:
                return
        if len(self.buffer) > MAX_LINE:
            print("Pluvarine: a line of the macro is too long; dropped")
            self.buffer = b""

    def _handle_line(self, line):
        try:
            message = json.loads(line.decode("utf-8"))
        except ValueError:
            print("Pluvarine: the macro sent a line that is not JSON")
            return
        if not isinstance(message, dict):
            print("Pluvarine: the macro sent a line that is not a JSON object")
            return
        if "ack" in message:
            if message["ack"] == self.pending:
                self.pending = None
                self.last_ack = message
                self._send_next()
            return
        if "id" in message and "op" in message:
            try:
                result = self.handle_request(message["op"], message.get("target"),
                                             message.get("args") or {})
                self._write({"id": message["id"], "result": result})
            except Exception as error:  # every failure of a request goes back to the macro
                self._write({"id": message["id"], "error": {"message": str(error) or
                                                            type(error).__name__}})
            return
        print("Pluvarine: the macro sent a line without its keys")

    def raise_event(self, name, args):
        if self.socket is None:
            return
        self.events.append((name, args))
        self._send_next()

    def _send_next(self):
        if self.pending is not None or not self.events or self.socket is None:
            return
        name, args = self.events.pop(0)
        self.seq += 1
        self.pending = self.seq
        self._write({"event": name, "seq": self.seq, "args": args})

    def wait_for_acks(self, timeout_ms=30000):
        """Runs the event loop until every event is acknowledged (or the time is up)."""
        if not self.busy():
            return True
        loop = QtCore.QEventLoop()
        timer = QtCore.QTimer()
        timer.setSingleShot(True)
        timer.timeout.connect(loop.quit)
        poll = QtCore.QTimer()
        poll.timeout.connect(lambda: loop.quit() if not self.busy() else None)
        poll.start(5)
        timer.start(timeout_ms)
        loop.exec_()
        poll.stop()
        return not self.busy()
