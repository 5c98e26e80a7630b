#include "ScriptRunner.h"

#include "RecordedMessages.h"
#include "ScriptedHost.h"
#include "Session.h"
#include "platform/viewer/widget/PreviewWidget.h"
#include "store/ProjectArchive.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLineEdit>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <sys/resource.h>

namespace pluvarine {

namespace {

using Json = nlohmann::json;

// How long a step may keep the session busy before the script gives up.
constexpr qint64 kSettleTimeoutMs = 30000;

qint64 now() {
    return QDateTime::currentMSecsSinceEpoch();
}

std::string text(const Json& step, const char* key) {
    if (!step.contains(key) || !step[key].is_string()) {
        throw std::runtime_error(std::string("needs the text \"") + key + "\"");
    }
    return step[key].get<std::string>();
}

double number(const Json& step, const char* key) {
    if (!step.contains(key) || !step[key].is_number()) {
        throw std::runtime_error(std::string("needs the number \"") + key + "\"");
    }
    return step[key].get<double>();
}

void requireUsable(const QWidget& widget) {
    if (!widget.isVisible()) {
        throw std::runtime_error(widget.objectName().toStdString() + " is not shown");
    }
    if (!widget.isEnabled()) {
        throw std::runtime_error(widget.objectName().toStdString() + " is disabled");
    }
}

void sendKey(QWidget& widget, int key, const QString& keyText) {
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, keyText);
    QCoreApplication::sendEvent(&widget, &press);
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, keyText);
    QCoreApplication::sendEvent(&widget, &release);
}

int keyFor(QChar character) {
    if (character == QChar('\b')) {
        return Qt::Key_Backspace;
    }
    // Qt's key codes of printable Latin-1 characters are their upper-case code points.
    const QChar upper = character.toUpper();
    return upper.unicode() < 0x100 ? static_cast<int>(upper.unicode())
                                   : static_cast<int>(Qt::Key_unknown);
}

// The process's CPU time, all threads (the GL rasteriser has its own), user and system.
double processCpuMs() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return (usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1e3 +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e3;
}

long residentKiB() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0) {
            return std::stol(line.substr(6));
        }
    }
    return 0;
}

} // namespace

ScriptRunner::ScriptRunner(Session& session, const std::string& scriptFile) : m_session(session) {
    std::ifstream in(scriptFile);
    if (!in) {
        throw std::runtime_error("cannot read the script " + scriptFile);
    }
    const Json script = Json::parse(in);
    m_steps = script.is_array() ? script : script.at("steps");
    if (!m_steps.is_array()) {
        throw std::runtime_error("the script's \"steps\" must be a list");
    }
    for (const Json& step : m_steps) {
        if (!step.is_object() || !step.contains("do") || !step["do"].is_string()) {
            throw std::runtime_error("every step needs \"do\": " + step.dump());
        }
    }
    m_timer.setInterval(10);
    connect(&m_timer, &QTimer::timeout, this, &ScriptRunner::tick);
    for (QWidget* top : {m_session.scriptedHost().localWindow(),
                         static_cast<QWidget*>(&m_session.windows().main())}) {
        for (PreviewWidget* view :
             top ? top->findChildren<PreviewWidget*>() : QList<PreviewWidget*>()) {
            m_firstFrames.emplace_back(view);
            connect(view, &PreviewWidget::framePresented, this, [this, view] {
                // A step waiting for this first frame goes now, not at the next poll.
                if (std::erase(m_firstFrames, QPointer<PreviewWidget>(view)) > 0 &&
                    m_timer.isActive()) {
                    QTimer::singleShot(0, this, &ScriptRunner::tick);
                }
            });
        }
    }
}

void ScriptRunner::start() {
    m_stepStarted = now();
    m_timer.start();
}

bool ScriptRunner::settled() const {
    // The host is asked last: a host in another process is asked with a request, which has no
    // place while an archive is written between its files.
    const bool framesShown =
        std::none_of(m_firstFrames.begin(), m_firstFrames.end(),
                     [](const QPointer<PreviewWidget>& view) { return view && view->isVisible(); });
    return now() >= m_waitUntil && framesShown && !archiveOperationRunning() &&
           !m_session.windows().main().isTimer1Enabled() && !m_session.scriptedHost().busy();
}

void ScriptRunner::tick() {
    if (!settled()) {
        if (now() - m_stepStarted > kSettleTimeoutMs) {
            fail("the session is still busy after " + std::to_string(kSettleTimeoutMs) + " ms");
        }
        return;
    }
    if (m_next >= m_steps.size()) {
        m_timer.stop();
        return;
    }
    const Json& step = m_steps[m_next++];
    m_stepStarted = now();
    if (HostJournal* journal = m_session.journal()) {
        journal->record({{"type", "script"},
                         {"step", m_next},
                         {"do", step["do"].get<std::string>()},
                         {"args", step}});
    }
    // A step that cannot be carried out ends the script: a user could not have done it either.
    try {
        runStep(step);
    } catch (const std::exception& error) {
        fail(error.what());
    }
}

void ScriptRunner::fail(const std::string& reason) {
    m_timer.stop();
    const std::string what = m_next == 0 ? "" : " (" + m_steps[m_next - 1]["do"].dump() + ")";
    std::cerr << "pluvarine: script step " << m_next << what << ": " << reason << '\n';
    m_exitCode = 2;
    QCoreApplication::exit(2);
}

void ScriptRunner::runStep(const Json& step) {
    const std::string action = step["do"].get<std::string>();
    if (action == "click") {
        click(step);
    } else if (action == "macroButton") {
        m_session.scriptedHost().pressMacroButton();
    } else if (action == "button") {
        pressButton(step);
    } else if (action == "type") {
        typeKeys(step);
    } else if (action == "material") {
        chooseMaterial(step);
    } else if (action == "answer") {
        answer(step);
    } else if (action == "newProject" || action == "openProject" || action == "saveProject" ||
               action == "closeProject") {
        project(action, step);
    } else if (action == "screenshot") {
        screenshot(step);
    } else if (action == "state") {
        writeState(step);
    } else if (action == "wait") {
        m_waitUntil = now() + static_cast<qint64>(number(step, "ms"));
    } else if (action == "partsList") {
        m_session.scriptedHost().exportPartsList(text(step, "file"));
    } else if (action == "exit") {
        // As the user closes the host: the host raises exe_ProgramExit and the macro ends.
        answerQuestions(step);
        m_session.scriptedHost().exit();
        m_timer.stop();
    } else {
        throw std::runtime_error("unknown step \"" + action + "\"");
    }
}

void ScriptRunner::click(const Json& step) {
    m_session.scriptedHost().click(number(step, "x"), number(step, "y"));
}

QWidget* ScriptRunner::window(const std::string& name) const {
    MacroWindows& windows = m_session.windows();
    if (name == "frmMain") {
        return &windows.main();
    }
    if (name == "frmDetails") {
        return &windows.details();
    }
    if (name == "frmMessage") {
        return &windows.message();
    }
    if (name == "help") {
        return &m_session.help();
    }
    if (name == "partsList") { // the host's parts list window, shown for the picture
        return m_session.scriptedHost().partsListWindow();
    }
    throw std::runtime_error("no window named " + name);
}

template <typename Widget> Widget* ScriptRunner::control(const Json& step) const {
    const QString name = QString::fromStdString(text(step, "name"));
    std::vector<std::string> windows{"frmMain", "frmDetails", "frmMessage"};
    if (step.contains("window")) {
        windows = {text(step, "window")};
    }
    for (const std::string& windowName : windows) {
        if (Widget* found = window(windowName)->findChild<Widget*>(name)) {
            return found;
        }
    }
    throw std::runtime_error("no control named " + name.toStdString());
}

void ScriptRunner::pressButton(const Json& step) {
    auto* button = control<QAbstractButton>(step);
    requireUsable(*button);
    button->click();
}

void ScriptRunner::typeKeys(const Json& step) {
    auto* field = control<QLineEdit>(step);
    requireUsable(*field);
    field->setFocus();
    field->end(false); // keys go after the text, as when a user clicks behind it
    if (step.value("clear", false)) {
        // As a user would: select everything, then backspace.
        field->selectAll();
        sendKey(*field, Qt::Key_Backspace, QStringLiteral("\b"));
    }
    const QString keys = QString::fromStdString(text(step, "keys"));
    for (const QChar character : keys) {
        sendKey(*field, keyFor(character), QString(character));
    }
}

void ScriptRunner::chooseMaterial(const Json& step) {
    auto* list = m_session.windows().main().findChild<QComboBox*>(QStringLiteral("cbmaterial"));
    if (list == nullptr) {
        throw std::runtime_error("no material list");
    }
    requireUsable(*list);
    const int index = static_cast<int>(number(step, "index"));
    if (index < 0 || index >= list->count()) {
        throw std::runtime_error("no material number " + std::to_string(index));
    }
    list->setCurrentIndex(index);
    emit list->activated(index); // a choice of the user, not a change of the program's
}

void ScriptRunner::answer(const Json& step) {
    QWidget& dialog = m_session.windows().message();
    if (!dialog.isVisible()) {
        throw std::runtime_error("the choice dialog is not shown");
    }
    const std::string choice = text(step, "choice");
    QString option;
    if (choice == "continuous") {
        option = QStringLiteral("OP1");
    } else if (choice == "bend") {
        option = QStringLiteral("OP2");
    } else if (choice != "cancel") {
        throw std::runtime_error("the choice is continuous, bend or cancel");
    }
    if (!option.isEmpty()) {
        auto* radio = dialog.findChild<QAbstractButton*>(option);
        requireUsable(*radio);
        radio->click();
    }
    auto* button = dialog.findChild<QAbstractButton*>(
        choice == "cancel" ? QStringLiteral("Command2") : QStringLiteral("Command1"));
    requireUsable(*button);
    button->click();
}

void ScriptRunner::answerQuestions(const Json& step) {
    if (RecordedMessages* recorded = m_session.recordedMessages()) {
        recorded->setAnswer(step.value("discard", false));
    }
}

void ScriptRunner::project(const std::string& action, const Json& step) {
    ScriptedHost& host = m_session.scriptedHost();
    answerQuestions(step);
    if (action == "newProject") {
        host.newProject();
    } else if (action == "closeProject") {
        host.closeProject();
    } else if (action == "openProject") {
        host.openProject(text(step, "path"), step.value("discard", false));
    } else {
        host.saveProject(step.value("path", std::string()));
    }
}

void ScriptRunner::screenshot(const Json& step) {
    const std::string file = text(step, "file");
    const std::string windowName = step.value("window", std::string("host"));
    QDir().mkpath(QFileInfo(QString::fromStdString(file)).absolutePath());
    if (windowName == "host") {
        m_session.scriptedHost().screenshot(file);
        return;
    }
    if (!window(windowName)->grab().save(QString::fromStdString(file), "PNG")) {
        throw std::runtime_error("cannot write the screenshot " + file);
    }
}

void ScriptRunner::writeState(const Json& step) {
    const double cpuBefore = processCpuMs();
    const std::string file = text(step, "file");
    Session& s = m_session;
    const Daten& daten = s.daten();
    const Macro& macro = s.macro();

    Json macroState{
        {"objectCounter", macro.objectCounter()},
        {"hostButtonId", macro.hostButtonId()},
        {"hostCompatible", macro.hostCompatible()},
        {"workFolder", daten.workFolder},
        {"settingsFile", macro.settingsFile()},
        {"mainWindowVisible", s.windows().main().isVisible()},
        {"overhangText", s.windows().view().overhangText()},
        {"click", Json::array({daten.roof.clickX, daten.roof.clickY})},
        {"roof",
         {{"roofOverhang", daten.roof.roofOverhang},
          {"gutterWidth", daten.roof.gutterWidth},
          {"roofPitch", daten.roof.roofPitch},
          {"roofingThickness", daten.roof.roofingThickness},
          {"roofDirection", daten.roof.roofDirection},
          {"roofLevel", daten.roof.roofLevel},
          {"groundLevel", daten.roof.groundLevel}}},
        {"design",
         {{"heightH", daten.design.heightH},
          {"wallOffset", daten.design.wallOffset},
          {"clampCount", daten.design.clampCount},
          {"modelBuilt", daten.design.modelBuilt},
          {"constructionAnswered", daten.design.constructionAnswered},
          {"bendChosen", daten.design.bendChosen}}},
        {"construction", static_cast<int>(s.windows().rebuild().lastConstruction())},
    };

    const Json hostState = s.scriptedHost().state();

    Json obj = Json::array();
    std::error_code error;
    const std::filesystem::path objFolder = std::filesystem::u8path(daten.workFolder) / "obj";
    std::vector<std::filesystem::directory_entry> files;
    for (const auto& entry : std::filesystem::directory_iterator(objFolder, error)) {
        if (entry.is_regular_file()) {
            files.push_back(entry);
        }
    }
    std::sort(files.begin(), files.end());
    for (const auto& entry : files) {
        QFile content(QString::fromStdString(entry.path().string()));
        QCryptographicHash hash(QCryptographicHash::Sha256);
        if (content.open(QIODevice::ReadOnly)) {
            hash.addData(&content);
        }
        obj.push_back({{"name", entry.path().filename().string()},
                       {"size", entry.file_size()},
                       {"sha256", hash.result().toHex().toStdString()}});
    }

    Json messages = Json::array();
    if (const RecordedMessages* recorded = s.recordedMessages()) {
        messages = recorded->messages();
    }
    const Json process{
        {"cpuMsBefore", cpuBefore}, {"cpuMsAfter", processCpuMs()}, {"residentKiB", residentKiB()}};
    const Json state{{"macro", macroState},
                     {"host", hostState},
                     {"obj", obj},
                     {"messages", messages},
                     {"process", process}};
    QDir().mkpath(QFileInfo(QString::fromStdString(file)).absolutePath());
    std::ofstream out(file, std::ios::trunc);
    out << state.dump(2) << '\n';
    if (!out) {
        throw std::runtime_error("cannot write the state " + file);
    }
}

} // namespace pluvarine
