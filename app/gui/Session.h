#pragma once

#include "LaunchOptions.h"
#include "ScriptedHost.h"
#include "assembly/Daten.h"
#include "host/HostJournal.h"
#include "host/Macro.h"
#include "platform/hostsocket/HostSocketClient.h"
#include "platform/system/widgets/GuiProgramControl.h"
#include "platform/system/widgets/HelpWindow.h"
#include "platform/tectaro/TectaroHost.h"
#include "platform/tectaro/widgets/TectaroWindow.h"
#include "platform/viewer/ViewerScene.h"
#include "ui/MacroWindows.h"

#include <fstream>
#include <memory>

namespace pluvarine {

class RecordedMessages;

// One run of the program: the macro with its windows and its host, either the stand-in host with
// its window in this process or a host in another process over the host protocol. The macro
// reaches the host only through the connection object it creates at start-up (journaled with
// --journal); the host reaches the macro only through its events.
class Session {
public:
    // Throws RuntimeError when the stand-in's building file cannot be read or the journal not
    // written.
    explicit Session(const LaunchOptions& options);
    ~Session();

    // Shows the host, runs the macro's start-up and shows its main window; false when the
    // macro ended the program during start-up (its message has been shown).
    bool start();

    // The host's side of a script's steps.
    ScriptedHost& scriptedHost() { return *m_scripted; }
    MacroWindows& windows() { return *m_windows; }
    Macro& macro() { return *m_macro; }
    Daten& daten() { return m_daten; }
    HelpWindow& help() { return m_help; }
    HostJournal* journal() { return m_journal.get(); }
    // The messages shown so far in a scripted session (none are kept otherwise).
    RecordedMessages* recordedMessages() const { return m_recorded; }

private:
    // The host binding: how the macro creates its connection object, and its pictures.
    HostConnectionFactory standInHost(const LaunchOptions& options);
    HostConnectionFactory socketHost(const LaunchOptions& options);
    void reportProtocolProblem(const std::string& problem);

    std::ofstream m_journalFile;
    std::unique_ptr<HostJournal> m_journal;
    // Message boxes and questions of the host and the macro.
    std::unique_ptr<UserMessages> m_messages;
    UserQuestions* m_questions = nullptr;
    RecordedMessages* m_recorded = nullptr;
    std::unique_ptr<TectaroHost> m_host;         // the stand-in host, when it is the host
    std::unique_ptr<TectaroWindow> m_hostWindow; // and its window
    std::shared_ptr<HostSocketClient> m_client;  // a host over the host protocol
    std::unique_ptr<ScriptedHost> m_scripted;
    Daten m_daten;
    ViewerScene m_scene;
    std::unique_ptr<MacroWindows> m_windows;
    GuiProgramControl m_program;
    HelpWindow m_help;
    std::unique_ptr<Macro> m_macro;
};

} // namespace pluvarine
