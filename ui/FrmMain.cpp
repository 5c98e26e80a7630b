#include "ui/FrmMain.h"

#include "assembly/MaterialChoice.h"
#include "base/ResumeNext.h"
#include "host/MacroCommands.h"
#include "store/text/LanguageM.h"
#include "ui/CaptionButton.h"
#include "ui/ControlFactory.h"
#include "ui/FittedText.h"
#include "ui/FrmDetails.h"
#include "ui/FrmMessage.h"
#include "ui/UiAssets.h"
#include "ui/UiText.h"

#include <QComboBox>
#include <QFrame>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>

namespace pluvarine {

namespace {
const QSize clientSize(692, 464);
const QRect playerGeometry(288, 8, 257, 449);
const std::array<int, 3> greyPlasticRgb{144, 144, 144};
} // namespace

FrmMain::FrmMain(Daten& daten, SceneOperations& scene, QWidget* player, QWidget* parent)
    : ProgramWindow(QStringLiteral("frmMain"), clientSize, parent), m_daten(daten), m_scene(scene),
      m_rebuild(daten, scene, *this), m_timer1(this) {
    buildControls(player);

    m_timer1.setObjectName(QStringLiteral("Timer1"));
    m_timer1.setInterval(100);
    m_timer1.setSingleShot(true);
    connect(&m_timer1, &QTimer::timeout, this, &FrmMain::Timer1_Timer);
}

FrmMain::~FrmMain() = default;

void FrmMain::buildControls(QWidget* player) {
    // Dimensions: the overhang and the last click position.
    m_frame5 = addGroup(this, QStringLiteral("Frame5"), QRect(8, 8, 273, 105));
    m_label2 = addLabel(m_frame5, QStringLiteral("Label2"), QString(), QRect(8, 24, 156, 30), true);
    addLabel(m_frame5, QStringLiteral("Label1"), QStringLiteral("Üd:"), QRect(168, 24, 24, 17));
    m_txtOverhang = addNumericField(m_frame5, QStringLiteral("txtÜd"), QStringLiteral("0"),
                                    QRect(192, 24, 49, 19));
    addLabel(m_frame5, QStringLiteral("Label3"), QStringLiteral("mm"), QRect(248, 24, 22, 17));
    m_label4 = addLabel(m_frame5, QStringLiteral("Label4"), QString(), QRect(8, 56, 132, 44), true);
    addLabel(m_frame5, QStringLiteral("Label5"), QStringLiteral("X:"), QRect(144, 56, 28, 17));
    m_lblX =
        addLabel(m_frame5, QStringLiteral("lblX"), QStringLiteral("....."), QRect(176, 48, 65, 17));
    m_lblX->setAlignment(Qt::AlignLeft | Qt::AlignBottom); // nearer the line of its "X:"

    addLabel(m_frame5, QStringLiteral("Label6"), QStringLiteral("Y:"), QRect(144, 72, 28, 17));
    m_lblY =
        addLabel(m_frame5, QStringLiteral("lblY"), QStringLiteral("....."), QRect(176, 72, 65, 17));
    m_command5 = addButton(m_frame5, QStringLiteral("Command5"), QStringLiteral(">"),
                           QRect(248, 56, 17, 33));

    // Material: swatch and list.
    m_frame2 = addGroup(this, QStringLiteral("Frame2"), QRect(8, 120, 273, 57));
    m_pmat = new QFrame(m_frame2);
    m_pmat->setObjectName(QStringLiteral("Pmat"));
    m_pmat->setGeometry(8, 16, 41, 33);
    m_pmat->setFrameStyle(QFrame::Panel | QFrame::Sunken);
    m_pmat->setAutoFillBackground(true);
    setSwatch(greyPlasticRgb);
    m_cbmaterial = new QComboBox(m_frame2);
    m_cbmaterial->setObjectName(QStringLiteral("cbmaterial"));
    m_cbmaterial->setGeometry(88, 16, 177, 22);
    connect(m_cbmaterial, &QComboBox::activated, this, [this] { cbmaterial_Click(); });

    // Standpipe.
    m_frame4 = addGroup(this, QStringLiteral("Frame4"), QRect(8, 184, 273, 65));
    m_label8 = addLabel(m_frame4, QStringLiteral("Label8"), QString(), QRect(8, 24, 164, 36), true);
    addLabel(m_frame4, QStringLiteral("Label7"), QStringLiteral("hs:"), QRect(176, 24, 22, 17));
    m_txths = addNumericField(m_frame4, QStringLiteral("txths"), QStringLiteral("300"),
                              QRect(200, 24, 41, 19));
    addLabel(m_frame4, QStringLiteral("Label3"), QStringLiteral("mm"), QRect(248, 24, 22, 17));

    // Downpipe: the diameter is shown, never read.
    m_frame6 = addGroup(this, QStringLiteral("Frame6"), QRect(8, 256, 273, 65));
    m_label9 = addLabel(m_frame6, QStringLiteral("Label9"), QString(), QRect(8, 24, 156, 36), true);
    addLabel(m_frame6, QStringLiteral("Label16"), QStringLiteral("  df:"), QRect(168, 24, 24, 17));
    m_combo2 = new QComboBox(m_frame6);
    m_combo2->setObjectName(QStringLiteral("Combo2"));
    m_combo2->setGeometry(192, 24, 49, 21);
    m_combo2->setEditable(true);
    m_combo2->setInsertPolicy(QComboBox::NoInsert);
    m_combo2->setEditText(QStringLiteral("100"));
    addLabel(m_frame6, QStringLiteral("Label3"), QStringLiteral("mm"), QRect(248, 24, 22, 17));

    // Clamps.
    m_frame8 = addGroup(this, QStringLiteral("Frame8"), QRect(8, 328, 273, 65));
    m_label11 =
        addLabel(m_frame8, QStringLiteral("Label11"), QString(), QRect(8, 24, 162, 36), true);
    addLabel(m_frame8, QStringLiteral("Label19"), QStringLiteral("dR:"), QRect(174, 24, 24, 17));
    m_txtdR = addNumericField(m_frame8, QStringLiteral("txtdR"), QStringLiteral("1800"),
                              QRect(198, 24, 41, 19));
    addLabel(m_frame8, QStringLiteral("Label3"), QStringLiteral("mm"), QRect(248, 24, 22, 17));

    // Pipe bends: `clicked`, not `toggled`, so the rebuild's own selection starts nothing.
    m_frame7 = addGroup(this, QStringLiteral("Frame7"), QRect(8, 400, 273, 57));
    m_label10 =
        addLabel(m_frame7, QStringLiteral("Label10"), QString(), QRect(8, 24, 100, 30), true);
    m_o42 =
        addOption(m_frame7, QStringLiteral("O42"), QStringLiteral("42°"), QRect(112, 16, 49, 33));
    m_o72 =
        addOption(m_frame7, QStringLiteral("O72"), QStringLiteral("72°"), QRect(192, 16, 49, 33));
    m_o42->setChecked(true);
    connect(m_o42, &QRadioButton::clicked, this, [this] { O42_Click(); });
    connect(m_o72, &QRadioButton::clicked, this, [this] { O72_Click(); });

    // The preview.
    if (player == nullptr) {
        auto* placeholder = new QFrame(this);
        placeholder->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        player = placeholder;
    }
    player->setParent(this);
    player->setObjectName(QStringLiteral("Player"));
    player->setGeometry(playerGeometry);

    // The button column.
    m_command4 = addButton(this, QStringLiteral("Command4"), QString(), QRect(552, 8, 129, 49),
                           QStringLiteral("insert.svg"), QSize(33, 17));
    m_command3 = addButton(this, QStringLiteral("Command3"), QString(), QRect(552, 72, 129, 49),
                           QStringLiteral("save.svg"), QSize(16, 16));
    m_command2 = addButton(this, QStringLiteral("Command2"), QString(), QRect(552, 136, 129, 49),
                           QStringLiteral("cancel.svg"), QSize(16, 16));
    m_command6 = addButton(this, QStringLiteral("Command6"), QString(), QRect(552, 200, 129, 49),
                           QStringLiteral("details.svg"), QSize(16, 16));
    m_command1 = addButton(this, QStringLiteral("Command1"), QString(), QRect(552, 264, 129, 49),
                           QStringLiteral("refresh.svg"), QSize(24, 24));
    m_command7 = addButton(this, QStringLiteral("Command7"), QString(), QRect(552, 400, 129, 49),
                           QStringLiteral("help.svg"), QSize(20, 20));
    connect(m_command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    connect(m_command2, &QPushButton::clicked, this, [this] { Command2_Click(); });
    connect(m_command3, &QPushButton::clicked, this, [this] { Command3_Click(); });
    connect(m_command4, &QPushButton::clicked, this, [this] { Command4_Click(); });
    connect(m_command5, &QPushButton::clicked, this, [this] { Command5_Click(); });
    connect(m_command6, &QPushButton::clicked, this, [this] { Command6_Click(); });
    connect(m_command7, &QPushButton::clicked, this, [this] { Command7_Click(); });

    // The pictures handed to the host; the window itself does not show them.
    m_bild = addLabel(this, QStringLiteral("Bild"), QString(), QRect(568, 336, 49, 41));
    m_bild->setPixmap(assetPixmap(QStringLiteral("bild.svg"), QSize(30, 30)));
    m_bild->hide();
    m_bild2 = addLabel(this, QStringLiteral("Bild2"), QString(), QRect(640, 360, 25, 25));
    m_bild2->setPixmap(assetPixmap(QStringLiteral("bild2.svg"), QSize(30, 30)));
    m_bild2->hide();
}

void FrmMain::setMacroCommands(MacroCommands* commands) {
    m_commands = commands;
}

void FrmMain::setTimer1Handler(std::function<void()> handler) {
    m_timer1Handler = std::move(handler);
}

FrmDetails& FrmMain::frmDetails() {
    if (!m_details)
        m_details = std::make_unique<FrmDetails>(m_daten, *this, m_rebuild);
    return *m_details;
}

FrmMessage& FrmMain::frmMessage() {
    if (!m_message)
        m_message = std::make_unique<FrmMessage>(m_rebuild, *this);
    return *m_message;
}

QColor FrmMain::swatchColor() const {
    return m_pmat->palette().color(QPalette::Window);
}

void FrmMain::setSwatch(const std::array<int, 3>& rgb) {
    QPalette palette = m_pmat->palette();
    palette.setColor(QPalette::Window, QColor(rgb[0], rgb[1], rgb[2]));
    m_pmat->setPalette(palette);
}

void FrmMain::Command1_Click() {
    m_rebuild.run();
}

void FrmMain::Command2_Click() {
    if (m_commands != nullptr)
        m_commands->Command2_Click();
}

void FrmMain::Command3_Click() {
    // The viewer offers its own saving; its answer is not looked at.
    tryStep([this] { m_scene.SaveScene("", "", ""); });
}

void FrmMain::Command4_Click() {
    if (m_commands != nullptr)
        m_commands->Command4_Click();
}

void FrmMain::Command5_Click() {
    if (m_commands != nullptr)
        m_commands->Command5_Click();
}

void FrmMain::Command6_Click() {
    frmDetails().open();
}

void FrmMain::Command7_Click() {
    if (m_commands != nullptr)
        m_commands->Command7_Click();
}

void FrmMain::O42_Click() {
    m_rebuild.run();
}

void FrmMain::O72_Click() {
    m_rebuild.run();
}

void FrmMain::cbmaterial_Click() {
    const int index = m_cbmaterial->currentIndex();
    const bool built = m_daten.design.modelBuilt;
    std::optional<std::array<int, 3>> rgb;
    // A viewer failure while recolouring must not end the program; the swatch still follows
    // the material that was chosen.
    if (!tryStep([&] { rgb = chooseMaterial(m_daten, m_scene, index); }) && built && index >= 0 &&
        index < static_cast<int>(materialEntries().size()))
        rgb = materialEntries()[static_cast<std::size_t>(index)].swatchRgb;
    if (rgb)
        setSwatch(*rgb);
}

void FrmMain::Timer1_Timer() {
    if (m_timer1Handler)
        m_timer1Handler();
    else
        m_rebuild.run();
    m_timer1.stop();
}

std::string FrmMain::overhangText() const {
    return m_txtOverhang->text().toStdString();
}

std::string FrmMain::standpipeText() const {
    return m_txths->text().toStdString();
}

std::string FrmMain::clampSpacingText() const {
    return m_txtdR->text().toStdString();
}

bool FrmMain::isO42Selected() const {
    return m_o42->isChecked();
}

bool FrmMain::isO72Selected() const {
    return m_o72->isChecked();
}

void FrmMain::selectO42() {
    m_o42->setChecked(true); // emits no `clicked`: no second rebuild
}

void FrmMain::setBendOptionsEnabled(bool enabled) {
    m_o42->setEnabled(enabled);
    m_o72->setEnabled(enabled);
}

void FrmMain::askConstructionQuestion() {
    FrmMessage& message = frmMessage();
    message.showDialog();
    message.Message_Initiate(1, LoadText(2002), true, LoadText(2003), LoadText(2004));
}

void FrmMain::showWindow() {
    show();
    raise();
}

void FrmMain::hideWindow() {
    hide();
}

void FrmMain::setClickLabels(const std::string& x, const std::string& y) {
    m_lblX->setText(QString::fromStdString(x));
    m_lblY->setText(QString::fromStdString(y));
}

void FrmMain::setOverhangText(const std::string& text) {
    setFieldText(m_txtOverhang, QString::fromStdString(text));
}

void FrmMain::enableTimer1() {
    m_timer1.start();
}

bool FrmMain::ApplyLanguage() {
    ReadSystemLanguage();
    const std::string& code = systemLanguageCode();
    bool skipVersionCheck = false;
    if (code == "041a" || code == "101a")
        m_command7->hide();
    else if (code == "0419" || code == "0819")
        skipVersionCheck = true;

    setWindowTitle(uiText(112));
    m_frame5->setTitle(uiText(113));
    setFittedText(m_label2, uiText(114));
    setFittedText(m_label4, uiText(115));
    m_frame2->setTitle(uiText(116));
    m_frame4->setTitle(uiText(121));
    setFittedText(m_label8, uiText(122));
    m_frame6->setTitle(uiText(123));
    setFittedText(m_label9, uiText(124));
    m_frame8->setTitle(uiText(125));
    setFittedText(m_label11, uiText(126));
    m_frame7->setTitle(uiText(127));
    setFittedText(m_label10, uiText(128));
    m_command1->setText(uiText(129));
    m_command3->setText(uiText(130));
    m_command2->setText(uiText(131));
    m_command4->setText(uiText(132));
    m_command6->setText(uiText(133));
    m_command7->setText(uiText(8001));

    // Setting a dialog's texts creates it, hidden.
    frmDetails().applyLanguageTexts();
    frmMessage().applyLanguageTexts();
    return skipVersionCheck;
}

void FrmMain::fillMaterialList() {
    m_cbmaterial->clear();
    for (const int id : {117, 118, 119, 120})
        m_cbmaterial->addItem(uiText(id));
    m_cbmaterial->setCurrentIndex(0);
    // Selecting the entry counts as a click of the list; nothing is built yet, so it applies
    // nothing.
    cbmaterial_Click();
}

std::int32_t FrmMain::windowHandle() const {
    return static_cast<std::int32_t>(winId());
}

QImage FrmMain::bildPicture() const {
    return assetImage(QStringLiteral("bild.svg"), QSize(30, 30));
}

QImage FrmMain::bild2Picture() const {
    return assetImage(QStringLiteral("bild2.svg"), QSize(30, 30));
}

} // namespace pluvarine
