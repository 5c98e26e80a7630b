#include "platform/tectaro/widgets/TectaroWindow.h"

#include "platform/system/UserMessages.h"
#include "platform/system/UserQuestions.h"
#include "platform/tectaro/ProjectPartsList.h"
#include "platform/tectaro/TectaroHost.h"
#include "platform/tectaro/widgets/BuildingView3D.h"
#include "platform/tectaro/widgets/PartsListDialog.h"
#include "platform/tectaro/widgets/PlanView.h"
#include "store/text/LoadText.h"

#include <QAction>
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QGuiApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPixmap>
#include <QProgressBar>
#include <QSplitter>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>

namespace pluvarine {

namespace {
bool openGlAvailable() {
    return QGuiApplication::platformName() != QStringLiteral("offscreen") &&
           QGuiApplication::platformName() != QStringLiteral("minimal");
}
const QString kProjectFilter = QStringLiteral("Tectaro projects (*.tproj);;All files (*)");
} // namespace

TectaroWindow::TectaroWindow(TectaroHost& host, UserMessages& messages, UserQuestions& questions,
                             QWidget* parent)
    : TectaroWindow(host, messages, questions, openGlAvailable(), parent) {}

TectaroWindow::TectaroWindow(TectaroHost& host, UserMessages& messages, UserQuestions& questions,
                             bool with3D, QWidget* parent)
    : QMainWindow(parent), m_host(host), m_messages(messages), m_questions(questions) {
    setObjectName(QStringLiteral("tectaroWindow"));
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    m_plan = new PlanView(host, splitter);
    splitter->addWidget(m_plan);
    if (with3D) {
        m_view3D = new BuildingView3D(host, splitter);
        splitter->addWidget(m_view3D);
        splitter->setSizes({560, 560});
    }
    setCentralWidget(splitter);

    m_prompt = new QLabel(this);
    m_prompt->setObjectName(QStringLiteral("tectaroPrompt"));
    statusBar()->addWidget(m_prompt, 1);
    m_progress = new QProgressBar(this);
    m_progress->setObjectName(QStringLiteral("tectaroProgress"));
    m_progress->setRange(0, 100);
    m_progress->setMaximumWidth(240);
    m_progress->setFormat(QStringLiteral("%p%"));
    m_progress->hide();
    statusBar()->addPermanentWidget(m_progress);

    buildToolbar();
    connect(&host, &TectaroHost::promptChanged, m_prompt, &QLabel::setText);
    connect(&host, &TectaroHost::progressChanged, this, [this](const QString& text, int value) {
        m_progress->setValue(value);
        m_progress->setToolTip(text);
        m_progress->show();
        m_prompt->setText(text);
    });
    connect(&host, &TectaroHost::progressEnded, this, [this]() {
        m_progress->hide();
        m_prompt->setText(QString::fromStdString(m_host.prompt()));
    });
    connect(&host, &TectaroHost::macroButtonChanged, this, &TectaroWindow::updateMacroButton);
    connect(&host, &TectaroHost::projectChanged, this, &TectaroWindow::updateTitle);
    connect(&host, &TectaroHost::projectSaveFailed, this, [this](const QString& error) {
        m_messages.showMessage(
            tr("The project could not be saved: %1\nNothing on the disk has changed.")
                .arg(error)
                .toStdString(),
            UserMessages::Icon::Critical);
    });
    updateMacroButton();
    updateTitle();
    resize(with3D ? 1200 : 700, 640);
}

void TectaroWindow::buildToolbar() {
    QToolBar* bar = addToolBar(QStringLiteral("Project"));
    bar->setObjectName(QStringLiteral("tectaroToolbar"));
    bar->setMovable(false);
    struct Entry {
        const char* name;
        const char* text;
        QStyle::StandardPixmap icon;
        std::function<void()> run;
    };
    const Entry entries[] = {
        {"tectaroNew", "New project", QStyle::SP_FileIcon, [this]() { newProject(); }},
        {"tectaroOpen", "Open project...", QStyle::SP_DialogOpenButton, [this]() { askOpen(); }},
        {"tectaroSave", "Save project", QStyle::SP_DialogSaveButton, [this]() { askSave(); }},
        {"tectaroClose", "Close project", QStyle::SP_DialogCloseButton,
         [this]() { closeProject(); }},
    };
    for (const Entry& entry : entries) {
        QAction* action =
            bar->addAction(style()->standardIcon(entry.icon), tr(entry.text), this, entry.run);
        action->setObjectName(QString::fromLatin1(entry.name));
    }
    QAction* partsList =
        bar->addAction(style()->standardIcon(QStyle::SP_FileDialogDetailedView),
                       QString::fromStdString(LoadText(9000)), this, [this]() { showPartsList(); });
    partsList->setObjectName(QStringLiteral("tectaroPartsList"));
    bar->addSeparator();
    m_macroAction = bar->addAction(QString(), this, [this]() { pressMacroButton(); });
    m_macroAction->setObjectName(QStringLiteral("tectaroMacroButton"));
    bar->setIconSize(QSize(30, 30));
}

void TectaroWindow::updateMacroButton() {
    const auto& button = m_host.macroButton();
    m_macroAction->setVisible(button && button->shown);
    m_macroAction->setEnabled(button && button->enabled);
    if (button) {
        m_macroAction->setIcon(QIcon(QPixmap::fromImage(button->image)));
        m_macroAction->setToolTip(QString::fromStdString(button->tooltip));
        m_macroAction->setText(QString::fromStdString(button->tooltip));
    }
}

void TectaroWindow::updateTitle() {
    QString name = tr("no project");
    if (const TectaroProject* project = m_host.project()) {
        name = project->path.empty() ? tr("Untitled")
                                     : QFileInfo(QString::fromStdString(project->path)).fileName();
    }
    setWindowTitle(QStringLiteral("Tectaro \u2014 %1").arg(name));
}

bool TectaroWindow::clickAt(QPointF plan) {
    return m_plan->clickAt(plan);
}

bool TectaroWindow::pressMacroButton() {
    return m_host.pressMacroButton();
}

bool TectaroWindow::mayDiscardProject() {
    return !m_host.saveFailed() ||
           m_questions.askYesNo(tr("The project could not be saved, so its changes since the "
                                   "last save are on no disk. Close it anyway and lose them?")
                                    .toStdString());
}

bool TectaroWindow::newProject() {
    if (!mayDiscardProject()) {
        return false;
    }
    m_host.newProject();
    return true;
}

bool TectaroWindow::openProject(const std::string& path, std::string* error) {
    if (!mayDiscardProject()) {
        if (error) {
            *error = "the open project was kept";
        }
        return false;
    }
    return m_host.openProject(path, error);
}

bool TectaroWindow::saveProject(const std::string& path, std::string* error) {
    return m_host.saveProject(path, error);
}

bool TectaroWindow::closeProject() {
    if (!mayDiscardProject()) {
        return false;
    }
    m_host.closeProject();
    return true;
}

PartsListDialog& TectaroWindow::showPartsList() {
    if (!m_partsList) {
        m_partsList = new PartsListDialog(m_host, this);
    }
    m_partsList->refresh();
    m_partsList->show();
    m_partsList->raise();
    return *m_partsList;
}

bool TectaroWindow::exportPartsList(const std::string& path, std::string* error) {
    const TectaroProject* project = m_host.project();
    return (project ? ProjectPartsList::of(*project) : ProjectPartsList{}).writeCsv(path, error);
}

bool TectaroWindow::screenshot(const std::string& path) {
    return grab().save(QString::fromStdString(path), "PNG");
}

void TectaroWindow::askOpen() {
    if (!mayDiscardProject()) {
        return;
    }
    const QString file =
        QFileDialog::getOpenFileName(this, tr("Open project"), QString(), kProjectFilter);
    if (file.isEmpty()) {
        return;
    }
    std::string error;
    if (!m_host.openProject(file.toStdString(), &error)) {
        QMessageBox::warning(this, tr("Open project"), QString::fromStdString(error));
    }
}

void TectaroWindow::askSave() {
    const TectaroProject* project = m_host.project();
    if (!project) {
        statusBar()->showMessage(tr("No project is open."), 5000);
        return;
    }
    std::string path = project->path;
    if (path.empty()) {
        QString file = QFileDialog::getSaveFileName(this, tr("Save project"),
                                                    QStringLiteral("house.tproj"), kProjectFilter);
        if (file.isEmpty()) {
            return;
        }
        if (QFileInfo(file).suffix().isEmpty()) {
            file += QStringLiteral(".tproj");
        }
        path = file.toStdString();
    }
    std::string error;
    if (!saveProject(path, &error)) {
        QMessageBox::warning(this, tr("Save project"), QString::fromStdString(error));
    }
}

void TectaroWindow::closeEvent(QCloseEvent* event) {
    if (!mayDiscardProject()) {
        event->ignore();
        return;
    }
    m_host.exitProgram();
    event->accept();
}

} // namespace pluvarine
