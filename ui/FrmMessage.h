#pragma once

#include "assembly/Rebuild.h"
#include "ui/ProgramWindow.h"

#include <cstdint>
#include <string>

class QLabel;
class QPushButton;
class QRadioButton;

namespace pluvarine {

class MainWindowView;

// The choice dialog `frmMessage`: a question with two exclusive options, OK and cancel. Its
// one use is the construction question (case 1). Modeless and topmost; the answer starts a
// rebuild of its own. A selection, once made, stays between showings.
class FrmMessage : public ProgramWindow {
    Q_OBJECT
public:
    FrmMessage(Rebuild& rebuild, MainWindowView& mainWindow, QWidget* parent = nullptr);

    // The cancel button's text of the active language (title and OK are the same everywhere).
    void applyLanguageTexts();
    // Shows the dialog without making it modal; the caller then sets the question.
    void showDialog();

    void Message_Initiate(std::int16_t Fall, const std::string& Message, bool OP,
                          const std::string& OP1, const std::string& OP2);
    void Command1_Click(); // OK
    void Command2_Click(); // cancel
    void EvaluateAnswer();

    std::int16_t fall() const { return m_fall; }
    bool doNot() const { return m_doNot; }

private:
    Rebuild& m_rebuild;
    MainWindowView& m_mainWindow;
    std::int16_t m_fall = 0;
    bool m_doNot = false;

    QLabel* m_lblMessage = nullptr;
    QRadioButton* m_op1 = nullptr;
    QRadioButton* m_op2 = nullptr;
    QPushButton* m_command1 = nullptr;
    QPushButton* m_command2 = nullptr;
};

} // namespace pluvarine
