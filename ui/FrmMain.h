#pragma once

#include "assembly/Daten.h"
#include "assembly/Rebuild.h"
#include "assembly/RebuildInputs.h"
#include "assembly/SceneOperations.h"
#include "host/MainWindowView.h"
#include "ui/ProgramWindow.h"

#include <QColor>
#include <QTimer>
#include <functional>
#include <memory>

class QComboBox;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace pluvarine {

class FrmDetails;
class FrmMessage;
class MacroCommands;

// The program's main window `frmMain`: the dimension fields, the material list with its swatch,
// the bend-angle options, the preview `Player` and the button column. It is the rebuild's view
// of the inputs and the host link's view of the window, owns the rebuild and the two dialogs
// (created by ApplyLanguage, or when first asked for), and lives for the whole run.
class FrmMain : public ProgramWindow, public RebuildInputs, public MainWindowView {
    Q_OBJECT
public:
    // `player` becomes the preview control `Player` at (288, 8), 257 x 449: the viewer's OpenGL
    // widget in the program, any plain widget where there is no OpenGL (null: an empty frame).
    // The scene is the viewer's scene that `player` shows.
    FrmMain(Daten& daten, SceneOperations& scene, QWidget* player, QWidget* parent = nullptr);
    ~FrmMain() override;

    // The host link's handlers of the buttons cancel, insert, pick and help; null leaves those
    // buttons without effect.
    void setMacroCommands(MacroCommands* commands);
    // What Timer1 runs when it fires; by default the rebuild. The timer is off afterwards.
    void setTimer1Handler(std::function<void()> handler);

    Rebuild& rebuild() { return m_rebuild; }
    Daten& daten() { return m_daten; }
    SceneOperations& scene() { return m_scene; }
    FrmDetails& frmDetails();
    FrmMessage& frmMessage();
    bool dialogsCreated() const { return m_details != nullptr && m_message != nullptr; }

    QColor swatchColor() const;
    bool isTimer1Enabled() const { return m_timer1.isActive(); }

    // The click handlers, callable as a click would call them.
    void Command1_Click(); // refresh: rebuild
    void Command2_Click(); // cancel
    void Command3_Click(); // save through the viewer's own dialog
    void Command4_Click(); // insert into the building
    void Command5_Click(); // pick a new wall point
    void Command6_Click(); // roof details
    void Command7_Click(); // help
    void O42_Click();
    void O72_Click();
    void cbmaterial_Click();
    void Timer1_Timer();

    // RebuildInputs
    std::string overhangText() const override;
    std::string standpipeText() const override;
    std::string clampSpacingText() const override;
    bool isO42Selected() const override;
    bool isO72Selected() const override;
    void selectO42() override;
    void setBendOptionsEnabled(bool enabled) override;
    void askConstructionQuestion() override;

    // MainWindowView
    void showWindow() override;
    void hideWindow() override;
    void stayOnTop(bool on) override { StayOnTop(on); }
    void setClickLabels(const std::string& x, const std::string& y) override;
    void setOverhangText(const std::string& text) override;
    void enableTimer1() override;
    bool ApplyLanguage() override;
    void fillMaterialList() override;
    std::int32_t windowHandle() const override;
    QImage bildPicture() const override;
    QImage bild2Picture() const override;

private:
    void buildControls(QWidget* player);
    void setSwatch(const std::array<int, 3>& rgb);

    Daten& m_daten;
    SceneOperations& m_scene;
    Rebuild m_rebuild;
    MacroCommands* m_commands = nullptr;
    std::function<void()> m_timer1Handler;
    QTimer m_timer1;

    QGroupBox* m_frame5 = nullptr;
    QGroupBox* m_frame2 = nullptr;
    QGroupBox* m_frame4 = nullptr;
    QGroupBox* m_frame6 = nullptr;
    QGroupBox* m_frame8 = nullptr;
    QGroupBox* m_frame7 = nullptr;
    QLabel* m_label2 = nullptr;
    QLabel* m_label4 = nullptr;
    QLabel* m_label8 = nullptr;
    QLabel* m_label9 = nullptr;
    QLabel* m_label11 = nullptr;
    QLabel* m_label10 = nullptr;
    QLineEdit* m_txtOverhang = nullptr; // txtÜd
    QLineEdit* m_txths = nullptr;
    QLineEdit* m_txtdR = nullptr;
    QLabel* m_lblX = nullptr;
    QLabel* m_lblY = nullptr;
    QFrame* m_pmat = nullptr;
    QComboBox* m_cbmaterial = nullptr;
    QComboBox* m_combo2 = nullptr;
    QRadioButton* m_o42 = nullptr;
    QRadioButton* m_o72 = nullptr;
    QPushButton* m_command1 = nullptr;
    QPushButton* m_command2 = nullptr;
    QPushButton* m_command3 = nullptr;
    QPushButton* m_command4 = nullptr;
    QPushButton* m_command5 = nullptr;
    QPushButton* m_command6 = nullptr;
    QPushButton* m_command7 = nullptr;
    QLabel* m_bild = nullptr;
    QLabel* m_bild2 = nullptr;

    // Declared last: the dialogs refer to the rebuild and to this window.
    std::unique_ptr<FrmDetails> m_details;
    std::unique_ptr<FrmMessage> m_message;
};

} // namespace pluvarine
