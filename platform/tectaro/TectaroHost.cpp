#include "platform/tectaro/TectaroHost.h"

#include "base/ResumeNext.h"
#include "host/HostEvents.h"
#include "platform/system/AtomicFile.h"
#include "platform/tectaro/ProgramFolder.h"
#include "platform/tectaro/TectaroBuilding.h"
#include "platform/tectaro/TectaroConnection.h"

#include <QMetaObject>
#include <QtGlobal>
#include <fstream>
#include <regex>
#include <sstream>

namespace pluvarine {

namespace {

std::string withSeparator(std::string folder) {
    if (!folder.empty() && folder.back() != '/') {
        folder += '/';
    }
    return folder;
}

std::shared_ptr<const Building> emptyBuilding() {
    return std::make_shared<const Building>();
}

} // namespace

TectaroHost::TectaroHost(TectaroOptions options, QObject* parent)
    : QObject(parent), m_options(std::move(options)) {
    setProgramFolder(m_options.programFolder);
    if (!m_options.defaultBuilding) {
        m_options.defaultBuilding = emptyBuilding();
    }
    // The host starts with a new, untitled project; the macro is not there yet to hear of it.
    TectaroProject project;
    project.building = m_options.defaultBuilding;
    m_project = std::move(project);
}

TectaroHost::~TectaroHost() = default;

void TectaroHost::setProgramFolder(std::string folder) {
    m_programFolder = withSeparator(folder.empty() ? ProgramFolder::defaultPath() : folder);
    m_seeded = false;
}

bool TectaroHost::seedProgramFolder(std::string* error) {
    m_seeded = true;
    return ProgramFolder::seed(m_programFolder, m_options.workFolderTree, m_options.helpFolder,
                               error);
}

std::unique_ptr<HostConnection> TectaroHost::createConnection() {
    if (!m_seeded) {
        std::string error;
        if (!seedProgramFolder(&error)) {
            qWarning("Tectaro: %s", error.c_str());
        }
    }
    return std::make_unique<TectaroConnection>(this);
}

std::shared_ptr<const Building> TectaroHost::building() const {
    return m_project ? m_project->building : emptyBuilding();
}

std::shared_ptr<const Building> TectaroHost::activeBuilding() const {
    if (!m_project) {
        throw RuntimeError(RuntimeError::HostError, "no project is open");
    }
    return m_project->building;
}

// ---- the queue ----

void TectaroHost::post(std::function<void()> step) {
    m_steps.push_back(std::move(step));
    schedule();
}

void TectaroHost::schedule() {
    if (m_scheduled || m_running || m_steps.empty()) {
        return;
    }
    m_scheduled = true;
    QMetaObject::invokeMethod(this, &TectaroHost::runStep, Qt::QueuedConnection);
}

void TectaroHost::runStep() {
    m_scheduled = false;
    if (m_running || m_steps.empty()) {
        return; // a handler is letting events run: the next step waits for it to return
    }
    std::function<void()> step = std::move(m_steps.front());
    m_steps.pop_front();
    m_running = true;
    // The host's side of the event boundary: whatever a handler throws stays with the macro.
    try {
        step();
    } catch (const std::exception& error) {
        qWarning("Tectaro: an event handler failed: %s", error.what());
    }
    m_running = false;
    if (!m_steps.empty()) {
        schedule();
    }
}

void TectaroHost::deliver(const std::function<void(HostEvents&)>& call) {
    if (m_sink && m_connected) {
        call(*m_sink);
    }
}

// ---- project actions ----

void TectaroHost::postProjectClosed() {
    post([this]() {
        if (!m_project) {
            return;
        }
        m_project.reset();
        m_saveFailed = false;
        m_click.reset();
        emit clickModeChanged(false);
        emit projectChanged();
        emit elementsChanged();
        deliver([](HostEvents& sink) { sink.exe_ProjectClosed(); });
    });
}

void TectaroHost::installProject(TectaroProject project) {
    m_project = std::move(project);
    m_saveFailed = false;
    emit projectChanged();
    emit elementsChanged();
}

void TectaroHost::newProject() {
    postProjectClosed();
    post([this]() {
        TectaroProject project;
        project.building = m_options.defaultBuilding;
        installProject(std::move(project));
        deliver([](HostEvents& sink) { sink.exe_NewCurrentProject(); });
    });
}

bool TectaroHost::openProject(const std::string& path, std::string* error) {
    std::optional<TectaroProject> loaded;
    if (!tryStep([&]() { loaded = TectaroProject::load(path); },
                 [&](const RuntimeError& failure) {
                     if (error) {
                         *error = failure.description();
                     }
                 })) {
        return false;
    }
    auto project = std::make_shared<TectaroProject>(std::move(*loaded));
    postProjectClosed();
    post([this, project]() { installProject(std::move(*project)); });
    post([this]() {
        if (!m_project) {
            return;
        }
        auto building = std::make_shared<TectaroBuilding>(this, m_project->building);
        const std::int32_t saveNo = m_project->saveNumber;
        deliver([&](HostEvents& sink) { sink.exe_LoadBuilding(building, saveNo); });
    });
    post([this]() {
        const std::int32_t saveNo = m_project ? m_project->saveNumber : 0;
        deliver([&](HostEvents& sink) { sink.exe_LoadBuilding(nullptr, saveNo); });
    });
    post([this]() { deliver([](HostEvents& sink) { sink.exe_LoadComplete(true); }); });
    post([this, path]() { emit projectOpened(QString::fromStdString(path)); });
    return true;
}

bool TectaroHost::saveProject(const std::string& path, std::string* error) {
    auto fail = [&](const std::string& reason) {
        if (error) {
            *error = reason;
        }
        return false;
    };
    if (!m_project) {
        return fail("no project is open");
    }
    const std::string target = path.empty() ? m_project->path : path;
    if (target.empty()) {
        return fail("the project has no file yet");
    }
    post([this, target]() {
        // A connected macro hands its data over anew: what it does not hand over in this save
        // (a failed pack) is not saved, rather than an older block standing in for it.
        if (m_project && m_sink && m_connected) {
            m_project->macroData.clear();
        }
        std::int32_t chunks = 0;
        deliver([&](HostEvents& sink) { sink.exe_SaveStart(target, 1, false, chunks); });
        m_lastChunks = chunks; // by reference: the host reads what the handler left there
    });
    post([this]() {
        if (!m_project) {
            return;
        }
        auto building = std::make_shared<TectaroBuilding>(this, m_project->building);
        deliver([&](HostEvents& sink) { sink.exe_SaveBuilding(0, building); });
    });
    post([this, target]() {
        if (!m_project) {
            emit projectSaveFailed(QStringLiteral("the project was closed before it was saved"));
            return;
        }
        TectaroProject copy = *m_project;
        copy.saveNumber += 1;
        std::string reason;
        if (!copy.save(target, &reason)) {
            m_saveFailed = true;
            emit projectSaveFailed(QString::fromStdString(reason));
            return;
        }
        m_saveFailed = false;
        m_project->saveNumber = copy.saveNumber;
        m_project->path = target;
        emit projectChanged();
        emit projectSaved(QString::fromStdString(target));
    });
    return true;
}

void TectaroHost::closeProject() {
    postProjectClosed();
}

void TectaroHost::exitProgram() {
    post([this]() { deliver([](HostEvents& sink) { sink.exe_ProgramExit(); }); });
    post([this]() { emit exitRequested(); });
}

// ---- clicks and the button ----

bool TectaroHost::click(QPointF planPoint) {
    if (!m_click) {
        return false;
    }
    const std::int32_t id = m_click->id;
    if (--m_click->remaining <= 0) {
        m_click.reset();
        m_prompt.clear();
        emit clickModeChanged(false);
        emit promptChanged(QString());
    }
    std::optional<WallHit> hit = building()->exteriorWallHit(planPoint);
    const bool valid = hit.has_value();
    const QPointF at = valid ? hit->facePoint : planPoint;
    const float x = static_cast<float>(at.x());
    const float y = static_cast<float>(at.y());
    post([this, valid, x, y, id]() {
        deliver([&](HostEvents& sink) { sink.exe_GotOneClick(valid, x, y, id); });
    });
    return true;
}

bool TectaroHost::pressMacroButton() {
    if (!m_button || !m_button->shown || !m_button->enabled) {
        return false;
    }
    const MacroButton button = *m_button;
    post([this, button]() {
        deliver([&](HostEvents& sink) {
            sink.exe_ButtonChange(button.id, 2, 0, true, button.shown, button.enabled);
        });
    });
    return true;
}

// ---- what the macro calls ----

void TectaroHost::setEventSink(HostEvents* sink, const void* owner) {
    m_sink = sink;
    m_sinkOwner = sink ? owner : nullptr;
}

void TectaroHost::dropEventSink(const void* owner) {
    if (m_sinkOwner == owner) {
        m_sink = nullptr;
        m_sinkOwner = nullptr;
        m_connected = false;
    }
}

bool TectaroHost::connectMacro(const std::string& guid) {
    static const std::regex registryForm(
        R"(\{[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12}\})");
    if (!std::regex_match(guid, registryForm)) {
        return false;
    }
    m_connected = true;
    return true;
}

std::int32_t TectaroHost::addMacroButton(const QImage& image, std::int32_t flags,
                                         const std::string& tip, std::int32_t code) {
    // One macro, one button: asking again replaces it under the same id.
    MacroButton button;
    button.id = 4001;
    button.image = image;
    button.tooltip = tip;
    button.flags = flags;
    button.code = code;
    m_button = button;
    emit macroButtonChanged();
    return button.id;
}

std::int32_t TectaroHost::setMacroButtonState(std::int32_t id, bool shown, bool enabled) {
    if (!m_button || m_button->id != id) {
        return 0;
    }
    m_button->shown = shown;
    m_button->enabled = enabled;
    emit macroButtonChanged();
    return 1;
}

void TectaroHost::requestClicks(const std::string& text, const QImage& cursor, std::int32_t count) {
    m_click = ClickRequest{m_nextClickId++, text, cursor, std::max<std::int32_t>(count, 1)};
    emit clickModeChanged(true);
}

void TectaroHost::showPrompt(const std::string& text) {
    m_prompt = text;
    emit promptChanged(QString::fromStdString(text));
}

void TectaroHost::showProgress(const std::string& text, int percentage) {
    m_progress = std::make_pair(text, std::clamp(percentage, 0, 100));
    emit progressChanged(QString::fromStdString(text), m_progress->second);
}

void TectaroHost::endProgress() {
    m_progress.reset();
    emit progressEnded();
}

bool TectaroHost::saveMacroData(std::int32_t id, const std::string& path) {
    if (!m_project) {
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        return false;
    }
    std::ostringstream bytes;
    bytes << in.rdbuf();
    if (in.bad()) {
        return false;
    }
    m_project->macroData[id] = bytes.str();
    return true;
}

bool TectaroHost::loadMacroData(std::int32_t id, const std::string& path) {
    if (!m_project) {
        return false;
    }
    auto block = m_project->macroData.find(id);
    if (block == m_project->macroData.end()) {
        return false;
    }
    AtomicFile out(path);
    return out.create() && out.writeAll(block->second.data(), block->second.size()) &&
           out.commit(AtomicFile::Sync::None);
}

void TectaroHost::commitElement(const std::shared_ptr<PlacedElement>& element) {
    if (!m_project) {
        throw RuntimeError(RuntimeError::HostError, "no project is open");
    }
    auto& elements = m_project->elements;
    if (std::find(elements.begin(), elements.end(), element) == elements.end()) {
        elements.push_back(element);
    }
    emit elementsChanged();
}

void TectaroHost::elementMoved(const std::shared_ptr<PlacedElement>& element) {
    if (m_project && std::find(m_project->elements.begin(), m_project->elements.end(), element) !=
                         m_project->elements.end()) {
        emit elementsChanged();
    }
}

} // namespace pluvarine
