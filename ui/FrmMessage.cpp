#include "ui/FrmMessage.h"

#include "host/MainWindowView.h"
#include "ui/CaptionButton.h"
#include "ui/ControlFactory.h"
#include "ui/FittedText.h"
#include "ui/UiText.h"

#include <QLabel>
#include <QRadioButton>

namespace pluvarine {

FrmMessage::FrmMessage(Rebuild& rebuild, MainWindowView& mainWindow, QWidget* parent)
    : ProgramWindow(QStringLiteral("frmMessage"), QSize(288, 119), parent), m_rebuild(rebuild),
      m_mainWindow(mainWindow) {
    setWindowTitle(QStringLiteral("Fallrohr"));

    m_lblMessage = addLabel(this, QStringLiteral("lblMessage"), QStringLiteral("Message"),
                            QRect(8, 8, 177, 41), true);
    // Same parent, so they exclude each other; neither is selected at first.
    m_op1 =
        addOption(this, QStringLiteral("OP1"), QStringLiteral("Option1"), QRect(8, 56, 177, 25));
    m_op2 =
        addOption(this, QStringLiteral("OP2"), QStringLiteral("Option2"), QRect(8, 88, 185, 25));
    m_command1 =
        addButton(this, QStringLiteral("Command1"), QStringLiteral("OK"), QRect(192, 8, 89, 41));
    m_command2 = addButton(this, QStringLiteral("Command2"), QString(), QRect(192, 64, 89, 41));
    connect(m_command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    connect(m_command2, &QPushButton::clicked, this, [this] { Command2_Click(); });

    // The load handler. Its request to hide the main window comes while that window is still
    // loading and has no lasting effect, so it is not made.
    StayOnTop(true);
}

void FrmMessage::applyLanguageTexts() {
    m_command2->setText(uiText(131));
}

void FrmMessage::showDialog() {
    show();
    raise();
}

void FrmMessage::Message_Initiate(std::int16_t Fall, const std::string& Message, bool OP,
                                  const std::string& OP1, const std::string& OP2) {
    setFittedText(m_lblMessage, QString::fromStdString(Message));
    m_fall = Fall;
    // Without options the dialog offers no choice of its own.
    m_op1->setVisible(OP);
    m_op2->setVisible(OP);
    if (OP) {
        m_op1->setText(QString::fromStdString(OP1));
        m_op2->setText(QString::fromStdString(OP2));
    }
}

void FrmMessage::Command1_Click() {
    m_doNot = false;
    EvaluateAnswer();
    hide();
}

void FrmMessage::Command2_Click() {
    m_doNot = true;
    EvaluateAnswer();
    hide();
}

void FrmMessage::EvaluateAnswer() {
    if (m_fall == 1 && !m_doNot) {
        if (m_op1->isChecked())
            m_rebuild.answerContinuous();
        if (m_op2->isChecked())
            m_rebuild.answerBend();
    }
    m_mainWindow.showWindow();
}

} // namespace pluvarine
