#include "platform/tectaro/SpooledBytes.h"

#include "base/RuntimeError.h"

#include <QDir>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

namespace pluvarine {

namespace {

bool writeAll(int fd, const std::string& bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t put =
            ::pwrite(fd, bytes.data() + done, bytes.size() - done, static_cast<off_t>(done));
        if (put < 0 && errno == EINTR) {
            continue;
        }
        if (put <= 0) {
            return false;
        }
        done += static_cast<std::size_t>(put);
    }
    return true;
}

} // namespace

SpooledBytes::SpooledBytes(std::string bytes) : m_size(bytes.size()) {
    const std::string folder = QDir::tempPath().toStdString();
    m_fd = ::open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (m_fd >= 0 && !writeAll(m_fd, bytes)) {
        ::close(m_fd);
        m_fd = -1;
    }
    if (m_fd < 0) {
        m_inMemory = std::move(bytes);
    }
}

SpooledBytes::~SpooledBytes() {
    if (m_fd >= 0) {
        ::close(m_fd);
    }
}

std::string SpooledBytes::read() const {
    if (m_fd < 0) {
        return m_inMemory;
    }
    std::string bytes(m_size, '\0');
    for (std::size_t done = 0; done < m_size;) {
        const ssize_t got =
            ::pread(m_fd, bytes.data() + done, m_size - done, static_cast<off_t>(done));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            throw RuntimeError(RuntimeError::HostError,
                               std::string("an object file kept for the project cannot be read: ") +
                                   (got < 0 ? std::strerror(errno) : "it became shorter"));
        }
        done += static_cast<std::size_t>(got);
    }
    return bytes;
}

} // namespace pluvarine
