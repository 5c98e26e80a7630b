#include "UiTestSupport.h"
#include "base/Conversions.h"

namespace pluvarine::test {
namespace {

const char* const fields[] = {"txtDü", "txtBd", "txtFn", "txtDe", "txtH"};

class DetailsDialog : public WindowTest {
protected:
    DetailsDialog() {
        daten.roof = RoofData{500, 150, 35, 40, 270};
        daten.design.heightH = 5600;
    }
    QLineEdit* field(const char* name) { return child<QLineEdit>(details, name); }
    void type(const QString& texts) { // one text a field, split at "|"
        for (int i = 0; i < 5; ++i)
            field(fields[i])->setText(texts.section(QLatin1Char('|'), i, i));
    }
    QString shown() {
        QString text;
        for (const char* name : fields)
            text += field(name)->text() + QLatin1Char('|');
        return text + child<QLabel>(details, "lblDR")->text();
    }
    // Overhang, gutter width, pitch, roofing thickness, direction, height H; the window's overhang.
    QString values() const {
        const RoofData& r = daten.roof;
        QString text;
        for (const double value : {r.roofOverhang, r.gutterWidth, r.roofPitch, r.roofingThickness,
                                   r.roofDirection, daten.design.heightH})
            text += QString::number(value) + QLatin1Char(' ');
        return text + QString::fromStdString(main->overhangText());
    }

    FrmDetails* details = &main->frmDetails();
};

// Close changes nothing, opening again (also when open) fills the fields again.
TEST_F(DetailsDialog, OpeningFillsTheOverhangWithASignPositionAndTheOthersPlainCloseKeepsAll) {
    LanguageScope scope("de_DE.UTF-8", TextLanguage::German);
    main->ApplyLanguage();
    main->show();
    click("Command6");
    EXPECT_TRUE(details->isVisible() && main->isVisible() && !details->isModal());
    EXPECT_TRUE(details->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(shown(), QStringLiteral(" 500|150|35|40|5600|270"));
    field("txtBd")->setText(QStringLiteral("77"));
    click(details, "Command2");
    EXPECT_FALSE(details->isVisible());
    EXPECT_TRUE(values() == QStringLiteral("500 150 35 40 270 5600 0") && rebuilds() == 0);
    daten.roof = RoofData{0.5, 150, 22.5, 40, -90};
    details->open(); // fractions follow their own rules
    field("txtBd")->setText(QStringLiteral("999"));
    details->open();
    EXPECT_EQ(
        shown(),
        QStringLiteral(" .5|150|%1|40|5600|-90").arg(QString::fromStdString(doubleToText(22.5))));
    details->close(); // through its frame
    details->open();
    EXPECT_TRUE(details->isVisible());
    EXPECT_EQ(child<QPushButton>(details, "Command2")->text(), QStringLiteral("Schließen"));
    // The sketch leaves the places of its symbols free.
    const QImage image = child<QLabel>(details, "Picture1")->pixmap().toImage();
    EXPECT_FALSE(image.hasAlphaChannel());
    for (const QPoint at : {QPoint(24, 232), QPoint(120, 8), QPoint(200, 232), QPoint(24, 400)}) {
        for (int d = 0; d < 14 * 12; ++d)
            EXPECT_EQ(image.pixel(at + QPoint(d % 14, d / 14)), qRgb(255, 255, 255)) << at.x();
    }
}

// The overhang and the direction reach the design only through the main window; a text that is
// no number leaves its value, and as the overhang it builds nothing.
TEST_F(DetailsDialog, AdoptingCopiesTheOverhangSetsTheValuesRebuildsOnceAndHides) {
    details->open();
    type(QStringLiteral("350|120|30|+25|4800"));
    click(details, "Command1");
    EXPECT_EQ(values(), QStringLiteral("500 120 30 25 270 4800 350"));
    EXPECT_EQ(rebuilds(), 1);
    EXPECT_EQ(daten.design.wallOffset, 410); // the rebuild saw 350 + 120 - 60
    EXPECT_FALSE(details->isVisible());
    details->open();
    type(QStringLiteral("1+2|1+2|20|25|4800"));
    click(details, "Command1");
    EXPECT_EQ(values(), QStringLiteral("500 120 20 25 270 4800 1+2"));
    EXPECT_TRUE(rebuilds() == 2 && !daten.design.modelBuilt);
}

TEST_F(DetailsDialog, AnEmptyFieldBlocksAdoptingWithoutNotice) {
    for (const char* empty : fields) {
        details->open();
        field("txtBd")->setText(QStringLiteral("77"));
        field(empty)->clear();
        click(details, "Command1");
        EXPECT_EQ(values(), QStringLiteral("500 150 35 40 270 5600 0")) << empty;
        EXPECT_TRUE(rebuilds() == 0 && details->isVisible()) << empty;
    }
}

} // namespace
} // namespace pluvarine::test
