#pragma once

#include "assembly/Daten.h"
#include "assembly/Rebuild.h"
#include "ui/ProgramWindow.h"

class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace pluvarine {

class MainWindowView;

// The roof details dialog `frmDetails`: the roof values read at the picked wall and the height
// of the downpipe, editable, with the dimension sketch beside them. Modeless and topmost.
class FrmDetails : public ProgramWindow {
    Q_OBJECT
public:
    // Created hidden; fills its fields from the design record at once (its load handler).
    FrmDetails(Daten& daten, MainWindowView& mainWindow, Rebuild& rebuild,
               QWidget* parent = nullptr);

    // Title, group, caption and button texts of the active language.
    void applyLanguageTexts();
    // Fills the fields from the design record and the roof data.
    void fill();
    // The main window's details button: fill again and show without making it modal.
    void open();

    void Command1_Click(); // adopt changes
    void Command2_Click(); // close: hide

private:
    Daten& m_daten;
    MainWindowView& m_mainWindow;
    Rebuild& m_rebuild;

    QGroupBox* m_frame3 = nullptr;
    QGroupBox* m_frame1 = nullptr;
    QLabel* m_label1 = nullptr;
    QLabel* m_label2 = nullptr;
    QLabel* m_label3 = nullptr;
    QLabel* m_label4 = nullptr;
    QLabel* m_label9 = nullptr;
    QLabel* m_label11 = nullptr;
    QLineEdit* m_txtOverhang = nullptr; // txtDü
    QLineEdit* m_txtBd = nullptr;
    QLineEdit* m_txtFn = nullptr;
    QLineEdit* m_txtDe = nullptr;
    QLineEdit* m_txtH = nullptr;
    QLabel* m_lblDR = nullptr;
    QPushButton* m_command1 = nullptr;
    QPushButton* m_command2 = nullptr;
};

} // namespace pluvarine
