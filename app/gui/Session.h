#pragma once

#include "LaunchOptions.h"
#include "assembly/Daten.h"
#include "host/HostJournal.h"
#include "host/Macro.h"
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

// One run of the program: the stand-in host with its window and the macro with its windows, in
// one process. The macro reaches the host only through the connection object it creates at
// start-up (journaled with --journal); the host reaches the macro only through its events.
class Session {
public:
    // Throws RuntimeError when the building file cannot be read or the journal not written.
    explicit Session(const LaunchOptions& options);
    ~Session();

    // Shows the host, runs the macro's start-up and shows its main window; false when the
    // macro ended the program during start-up (its message has been shown).
    bool start();

    TectaroHost& host() { return m_host; }
    TectaroWindow& hostWindow() { return *m_hostWindow; }
    MacroWindows& windows() { return *m_windows; }
    Macro& macro() { return *m_macro; }
    Daten& daten() { return m_daten; }
    HelpWindow& help() { return m_help; }
    HostJournal* journal() { return m_journal.get(); }
    // The messages shown so far in a scripted session (none are kept otherwise).
    RecordedMessages* recordedMessages() const { return m_recorded; }

private:
    std::ofstream m_journalFile;
    std::unique_ptr<HostJournal> m_journal;
    // Message boxes and questions of the host and the macro.
    std::unique_ptr<UserMessages> m_messages;
    UserQuestions* m_questions = nullptr;
    RecordedMessages* m_recorded = nullptr;
    TectaroHost m_host;
    std::unique_ptr<TectaroWindow> m_hostWindow;
    Daten m_daten;
    ViewerScene m_scene;
    std::unique_ptr<MacroWindows> m_windows;
    GuiProgramControl m_program;
    HelpWindow m_help;
    std::unique_ptr<Macro> m_macro;
};

} // namespace pluvarine
