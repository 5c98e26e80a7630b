#include "ui/FrmDetails.h"

#include "base/Conversions.h"
#include "base/ResumeNext.h"
#include "host/MainWindowView.h"
#include "ui/CaptionButton.h"
#include "ui/ControlFactory.h"
#include "ui/FittedText.h"
#include "ui/UiAssets.h"
#include "ui/UiText.h"

#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>

namespace pluvarine {

namespace {
const QSize clientSize(512, 495);
const QSize sketchSize(249, 457);
const QColor dimensionColour(0x1f, 0x4e, 0x9c);

// A symbol over the sketch, in the colour of its dimension lines.
QLabel* addSketchSymbol(QWidget* picture, const QString& name, const QString& text, QPoint at) {
    QLabel* label = addLabel(picture, name, text, QRect(at, QSize(24, 16)));
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, dimensionColour);
    label->setPalette(palette);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}
} // namespace

FrmDetails::FrmDetails(Daten& daten, MainWindowView& mainWindow, Rebuild& rebuild, QWidget* parent)
    : ProgramWindow(QStringLiteral("frmDetails"), clientSize, parent), m_daten(daten),
      m_mainWindow(mainWindow), m_rebuild(rebuild) {

    // The values, one row each: caption at x 16, field at x 128, unit at x 184.
    m_frame3 = addGroup(this, QStringLiteral("Frame3"), QRect(8, 8, 225, 177));
    const auto caption = [this](const char* name, int y) {
        // Up to the next row, so a long caption can take two lines.
        QLabel* label =
            addLabel(m_frame3, QString::fromUtf8(name), QString(), QRect(16, y, 108, 24), true);
        label->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        return label;
    };
    const auto field = [this](const char* name, int y) {
        return addNumericField(m_frame3, QString::fromUtf8(name), QStringLiteral("0"),
                               QRect(128, y, 49, 19));
    };
    const auto unit = [this](const QString& text, int y) {
        addLabel(m_frame3, QStringLiteral("lblUnit%1").arg(y), text, QRect(184, y, 24, 19))
            ->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    };
    m_label1 = caption("Label1", 24);
    m_txtOverhang = field("txtDü", 24);
    unit(QStringLiteral("mm"), 24);
    m_label2 = caption("Label2", 48);
    m_txtBd = field("txtBd", 48);
    unit(QStringLiteral("mm"), 48);
    m_label3 = caption("Label3", 72);
    m_txtFn = field("txtFn", 72);
    unit(QStringLiteral("°"), 72);
    m_label4 = caption("Label4", 96);
    m_txtDe = field("txtDe", 96);
    unit(QStringLiteral("mm"), 96);
    m_label9 = caption("Label9", 120);
    m_lblDR = addLabel(m_frame3, QStringLiteral("lblDR"), QString(), QRect(128, 120, 49, 19));
    m_lblDR->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_label11 = caption("Label11", 144);
    m_txtH = field("txtH", 144);
    unit(QStringLiteral("mm"), 144);

    m_command1 = addButton(this, QStringLiteral("Command1"), QString(), QRect(8, 192, 89, 33));
    m_command2 = addButton(this, QStringLiteral("Command2"), QString(), QRect(144, 192, 89, 33));
    connect(m_command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    connect(m_command2, &QPushButton::clicked, this, [this] { Command2_Click(); });

    // The dimension sketch with its symbols.
    m_frame1 = addGroup(this, QStringLiteral("Frame1"), QRect(240, 8, 265, 481));
    QLabel* picture =
        addLabel(m_frame1, QStringLiteral("Picture1"), QString(), QRect(QPoint(8, 16), sketchSize));
    picture->setPixmap(QPixmap::fromImage(assetImage(QStringLiteral("sketch.svg"), sketchSize)
                                              .convertToFormat(QImage::Format_RGB888)));
    addSketchSymbol(picture, QStringLiteral("lblSketchdR"), QStringLiteral("dR"), QPoint(24, 232));
    addSketchSymbol(picture, QStringLiteral("lblSketchÜd"), QStringLiteral("Üd"), QPoint(120, 8));
    addSketchSymbol(picture, QStringLiteral("lblSketchH"), QStringLiteral("H"), QPoint(200, 232));
    addSketchSymbol(picture, QStringLiteral("lblSketchhs"), QStringLiteral("hs"), QPoint(24, 400));
    auto* line1 = new QWidget(picture);
    line1->setObjectName(QStringLiteral("Line1"));
    line1->setGeometry(152, 24, 1, 17);
    line1->setAutoFillBackground(true);
    QPalette linePalette = line1->palette();
    linePalette.setColor(QPalette::Window, dimensionColour);
    line1->setPalette(linePalette);

    // The load handler.
    StayOnTop(true);
    fill();
}

void FrmDetails::applyLanguageTexts() {
    setWindowTitle(uiText(1000));
    m_frame3->setTitle(uiText(1001));
    setFittedText(m_label1, uiText(1002));
    setFittedText(m_label2, uiText(1003));
    setFittedText(m_label3, uiText(1004));
    setFittedText(m_label4, uiText(1005));
    setFittedText(m_label9, uiText(1006));
    m_command1->setText(uiText(1007));
    m_command2->setText(uiText(1008));
    m_frame1->setTitle(uiText(6000));
    setFittedText(m_label11, uiText(6001));
}

void FrmDetails::fill() {
    const RoofData& roof = m_daten.roof;
    setFieldText(m_txtOverhang, QString::fromStdString(numberText(roof.roofOverhang)));
    setFieldText(m_txtBd, QString::fromStdString(doubleToText(roof.gutterWidth)));
    setFieldText(m_txtFn, QString::fromStdString(doubleToText(roof.roofPitch)));
    setFieldText(m_txtDe, QString::fromStdString(doubleToText(roof.roofingThickness)));
    setFieldText(m_txtH, QString::fromStdString(doubleToText(m_daten.design.heightH)));
    m_lblDR->setText(QString::fromStdString(doubleToText(roof.roofDirection)));
}

void FrmDetails::open() {
    fill();
    show();
    raise();
}

void FrmDetails::Command1_Click() {
    const std::string overhang = m_txtOverhang->text().toStdString();
    const std::string thickness = m_txtDe->text().toStdString();
    const std::string gutter = m_txtBd->text().toStdString();
    const std::string pitch = m_txtFn->text().toStdString();
    const std::string height = m_txtH->text().toStdString();
    for (const std::string* text : {&overhang, &thickness, &gutter, &pitch, &height}) {
        if (text->empty())
            return;
    }
    m_mainWindow.setOverhangText(overhang);
    // A text that is no number leaves its value as it was.
    RoofData& roof = m_daten.roof;
    resumeNext({
        [&] { roof.roofingThickness = textToDouble(thickness); },
        [&] { roof.gutterWidth = textToDouble(gutter); },
        [&] { roof.roofPitch = textToDouble(pitch); },
        [&] { m_daten.design.heightH = textToDouble(height); },
    });
    m_rebuild.run();
    hide();
}

void FrmDetails::Command2_Click() {
    hide();
}

} // namespace pluvarine
