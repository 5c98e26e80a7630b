#include "Session.h"

#include "RecordedMessages.h"
#include "SocketScriptedHost.h"
#include "TectaroScriptedHost.h"
#include "assembly/WorkFolderFiles.h"
#include "base/RuntimeError.h"
#include "host/JournalingHostConnection.h"
#include "platform/hostsocket/SocketHostConnection.h"
#include "platform/system/InstalledData.h"
#include "platform/system/widgets/MessageBoxUserMessages.h"
#include "platform/tectaro/Building.h"
#include "platform/tectaro/util/Tectutil.h"
#include "platform/viewer/widget/PreviewWidget.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <iostream>

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

std::string helpFolder(const LaunchOptions& options) {
    return options.helpFolder.empty() ? InstalledData::helpFolder() : options.helpFolder;
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
    host.helpFolder = helpFolder(options);
    require("The help pages were", InstalledData::missing(host.helpFolder, {"Pluvarine.htm"}));
    const std::string building =
        options.building.empty() ? InstalledData::sampleBuilding() : options.building;
    require("The building file was", InstalledData::missing({}, {building}));
    host.defaultBuilding = std::make_shared<const Building>(Building::load(building));
    return host;
}

} // namespace

Session::Session(const LaunchOptions& options) {
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
    HostConnectionFactory host = options.remoteHost() ? socketHost(options) : standInHost(options);
    QWidget* player = openGlAvailable() ? new PreviewWidget(m_scene) : nullptr;
    m_windows = std::make_unique<MacroWindows>(m_daten, m_scene, player);

    HostConnectionFactory connect = [this, host]() -> std::unique_ptr<HostConnection> {
        auto connection = host();
        if (m_journal) {
            return std::make_unique<JournalingHostConnection>(std::move(connection), *m_journal);
        }
        return connection;
    };
    m_macro = std::make_unique<Macro>(MacroEnvironment{
        std::move(connect),
        m_client ? PictureConversion(SocketHostConnection::pictureFromBitmap)
                 : PictureConversion(TectaroPictureFromBitmap),
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
}

HostConnectionFactory Session::standInHost(const LaunchOptions& options) {
    m_host = std::make_unique<TectaroHost>(hostOptions(options));
    m_hostWindow =
        std::make_unique<TectaroWindow>(*m_host, *m_messages, *m_questions, openGlAvailable());
    m_scripted = std::make_unique<TectaroScriptedHost>(*m_host, *m_hostWindow);
    // The host's window closing ends the host, and with it this process.
    QObject::connect(m_host.get(), &TectaroHost::exitRequested, [] { QCoreApplication::exit(0); });
    return [this] { return m_host->createConnection(); };
}

HostConnectionFactory Session::socketHost(const LaunchOptions& options) {
    m_client = std::make_shared<HostSocketClient>(options.hostTimeoutMs);
    m_client->setProblemReporter(
        [this](const std::string& problem) { reportProtocolProblem(problem); });
    m_scripted = std::make_unique<SocketScriptedHost>(m_client);
    const std::string path = options.hostSocket.empty()
                                 ? HostSocketClient::defaultSocketPath(options.host)
                                 : options.hostSocket;
    const std::string workFolderTree = InstalledData::workFolderTree();
    require("The part files and materials (the working-folder tree) were",
            InstalledData::missing(workFolderTree, workFolderFiles()));
    const nlohmann::json hello{
        {"client", "pluvarine " + QCoreApplication::applicationVersion().toStdString()},
        {"workFolderTree", workFolderTree},
        {"helpFolder", helpFolder(options)}};
    return [this, path, hello]() -> std::unique_ptr<HostConnection> {
        try {
            m_client->open(path, hello);
        } catch (const RuntimeError& error) {
            // The macro shows only that it cannot start; the reason goes here.
            std::cerr << "pluvarine: " << error.description() << '\n';
            throw;
        }
        return std::make_unique<SocketHostConnection>(m_client);
    };
}

void Session::reportProtocolProblem(const std::string& problem) {
    std::cerr << "pluvarine: " << problem << '\n';
    if (m_journal) {
        m_journal->record({{"type", "protocol"}, {"error", problem}});
    }
}

Session::~Session() {
    // The windows call into the macro: unhook them before it goes.
    m_windows->setMacroCommands(nullptr);
}

bool Session::start() {
    if (m_hostWindow) {
        m_hostWindow->move(0, 0);
        m_hostWindow->show();
    }
    m_macro->Form_Load();
    if (m_program.hasEnded()) {
        return false;
    }
    m_windows->view().showWindow();
    return true;
}

} // namespace pluvarine
