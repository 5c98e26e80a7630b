#include "Session.h"

#include "RecordedMessages.h"
#include "assembly/WorkFolderFiles.h"
#include "base/RuntimeError.h"
#include "host/JournalingHostConnection.h"
#include "platform/system/InstalledData.h"
#include "platform/system/widgets/MessageBoxUserMessages.h"
#include "platform/tectaro/Building.h"
#include "platform/viewer/widget/PreviewWidget.h"

#include <QCoreApplication>
#include <QGuiApplication>

namespace pluvarine {

namespace {

// The data the program ships is checked before anything starts: an installation or a build
// tree that lacks some of it would otherwise show an empty preview and say nothing.
void require(const std::string& what, const std::vector<std::string>& missing) {
    if (missing.empty()) {
        return;
    }
    std::string message = what + " not found:";
    for (const std::string& path : missing) {
        message += "\n  " + path;
    }
    throw RuntimeError(RuntimeError::FileNotFound, message);
}

bool openGlAvailable() {
    const QString platform = QGuiApplication::platformName();
    return platform != QStringLiteral("offscreen") && platform != QStringLiteral("minimal");
}

TectaroOptions hostOptions(const LaunchOptions& options) {
    TectaroOptions host;
    host.programFolder = options.programFolder;
    if (options.versionText) {
        host.versionText = *options.versionText;
    }
    host.workFolderTree = InstalledData::workFolderTree();
    require("The part files and materials (the working-folder tree) were",
            InstalledData::missing(host.workFolderTree, workFolderFiles()));
    host.helpFolder = options.helpFolder.empty() ? InstalledData::helpFolder() : options.helpFolder;
    require("The help pages were", InstalledData::missing(host.helpFolder, {"Pluvarine.htm"}));
    const std::string building =
        options.building.empty() ? InstalledData::sampleBuilding() : options.building;
    require("The building file was", InstalledData::missing({}, {building}));
    host.defaultBuilding = std::make_shared<const Building>(Building::load(building));
    return host;
}

} // namespace

Session::Session(const LaunchOptions& options) : m_host(hostOptions(options)) {
    if (!options.journal.empty()) {
        m_journalFile.open(options.journal, std::ios::out | std::ios::trunc);
        if (!m_journalFile) {
            throw RuntimeError(RuntimeError::PathFileAccess,
                               "cannot write the journal " + options.journal);
        }
        m_journal = std::make_unique<HostJournal>(m_journalFile);
    }
    if (options.script.empty()) {
        auto boxes = std::make_unique<MessageBoxUserMessages>();
        m_questions = boxes.get();
        m_messages = std::move(boxes);
    } else {
        auto recorded = std::make_unique<RecordedMessages>(m_journal.get());
        m_recorded = recorded.get();
        m_questions = recorded.get();
        m_messages = std::move(recorded);
    }
    const bool withOpenGl = openGlAvailable();
    m_hostWindow = std::make_unique<TectaroWindow>(m_host, *m_messages, *m_questions, withOpenGl);
    QWidget* player = withOpenGl ? new PreviewWidget(m_scene) : nullptr;
    m_windows = std::make_unique<MacroWindows>(m_daten, m_scene, player);

    HostConnectionFactory connect = [this]() -> std::unique_ptr<HostConnection> {
        auto connection = m_host.createConnection();
        if (m_journal) {
            return std::make_unique<JournalingHostConnection>(std::move(connection), *m_journal);
        }
        return connection;
    };
    m_macro = std::make_unique<Macro>(MacroEnvironment{
        std::move(connect),
        m_daten,
        m_scene,
        [this] { m_windows->rebuild().run(); },
        m_windows->view(),
        *m_messages,
        m_program,
        m_help,
        [] { QCoreApplication::processEvents(); },
    });
    m_windows->setMacroCommands(m_macro.get());

    // The host's window closing ends the host, and with it this process.
    QObject::connect(&m_host, &TectaroHost::exitRequested, [] { QCoreApplication::exit(0); });
}

Session::~Session() {
    // The windows call into the macro: unhook them before it goes.
    m_windows->setMacroCommands(nullptr);
}

bool Session::start() {
    m_hostWindow->move(0, 0);
    m_hostWindow->show();
    m_macro->Form_Load();
    if (m_program.hasEnded()) {
        return false;
    }
    m_windows->view().showWindow();
    return true;
}

} // namespace pluvarine
