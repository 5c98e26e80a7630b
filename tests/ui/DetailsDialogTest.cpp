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
    QLineEdit* field(const char* name) { return child<QLineEdit>(name, details); }
    QString shown() {
        QString text;
        for (const char* name : fields)
            text += field(name)->text() + QLatin1Char('|');
        return text + child<QLabel>("lblDR", details)->text();
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
    EXPECT_EQ(shown(), QStringLiteral(" 500|150|35|40|5600|270"));
    field("txtBd")->setText(QStringLiteral("77"));
    click("Command2", details);
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
    // The sketch leaves the places of its symbols free.
    const QImage image = child<QLabel>("Picture1", details)->pixmap().toImage();
    EXPECT_FALSE(image.hasAlphaChannel());
    for (const QPoint at : {QPoint(24, 232), QPoint(120, 8), QPoint(200, 232), QPoint(24, 400)}) {
        for (int d = 0; d < 14 * 12; ++d)
            EXPECT_EQ(image.pixel(at + QPoint(d % 14, d / 14)), qRgb(255, 255, 255)) << at.x();
    }
}

// Texts typed into the fields, then the values, the rebuilds so far and the wall offset the last
// rebuild saw; the dialog stays open while nothing was adopted. An empty field blocks adopting
// without notice; the overhang and the direction reach the design only through the main window; a
// text that is no number leaves its value, and as the overhang it builds nothing.
TEST_F(DetailsDialog, AdoptingSetsTheValuesRebuildsOnceAndHidesUnlessAFieldIsEmpty) {
    const char* const unchanged = "500 150 35 40 270 5600 0";
    const std::tuple<const char*, const char*, int, double> steps[] = {
        {"|77|35|40|5600", unchanged, 0, 0},
        {" 500||35|40|5600", unchanged, 0, 0},
        {" 500|77||40|5600", unchanged, 0, 0},
        {" 500|77|35||5600", unchanged, 0, 0},
        {" 500|77|35|40|", unchanged, 0, 0},
        {"350|120|30|+25|4800", "500 120 30 25 270 4800 350", 1, 410}, // 350 + 120 - 60
        {"1+2|1+2|20|25|4800", "500 120 20 25 270 4800 1+2", 2, 410}};
    for (const auto& [typed, expected, rebuilt, wallOffset] : steps) {
        SCOPED_TRACE(typed);
        details->open();
        for (int i = 0; i < 5; ++i)
            field(fields[i])->setText(QString::fromUtf8(typed).section(QLatin1Char('|'), i, i));
        click("Command1", details);
        EXPECT_EQ(values(), QString::fromUtf8(expected));
        EXPECT_EQ(rebuilds(), rebuilt);
        EXPECT_EQ(daten.design.wallOffset, wallOffset);
        EXPECT_EQ(details->isVisible(), rebuilt == 0);
    }
    EXPECT_FALSE(daten.design.modelBuilt);
}

} // namespace
} // namespace pluvarine::test
