#include "UiTestSupport.h"
#include "base/Conversions.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace pluvarine::test {
namespace {

class DetailsDialog : public WindowTest {
protected:
    DetailsDialog() {
        main->fillMaterialList();
        details = &main->frmDetails();
        daten.roof.roofOverhang = 500;
        daten.roof.gutterWidth = 150;
        daten.roof.roofPitch = 35;
        daten.roof.roofingThickness = 40;
        daten.roof.roofDirection = 270;
        daten.design.heightH = 5600;
    }
    QLineEdit* field(const char* name) { return child<QLineEdit>(details, name); }
    void press(const char* button) {
        QTest::mouseClick(child<QPushButton>(details, button), Qt::LeftButton);
    }

    FrmDetails* details = nullptr;
};

TEST_F(DetailsDialog, OpeningFillsTheOverhangWithASignPositionAndTheOthersPlain) {
    main->show();
    QTest::mouseClick(child<QPushButton>("Command6"), Qt::LeftButton);
    EXPECT_TRUE(details->isVisible());
    EXPECT_FALSE(details->isModal());
    EXPECT_TRUE(details->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    const std::pair<const char*, const char*> shown[] = {
        {"txtDü", " 500"}, {"txtBd", "150"}, {"txtFn", "35"}, {"txtDe", "40"}, {"txtH", "5600"}};
    for (const auto& [name, text] : shown)
        EXPECT_EQ(field(name)->text(), QString::fromUtf8(text)) << name;
    EXPECT_EQ(child<QLabel>(details, "lblDR")->text(), QStringLiteral("270"));
    EXPECT_TRUE(main->isVisible());
    // Fractions follow their own rules.
    daten.roof.roofOverhang = 0.5;
    daten.roof.roofPitch = 22.5;
    daten.roof.roofDirection = -90;
    details->open();
    EXPECT_EQ(field("txtDü")->text(), QStringLiteral(" .5"));
    EXPECT_EQ(field("txtFn")->text().toStdString(), doubleToText(22.5));
    EXPECT_EQ(child<QLabel>(details, "lblDR")->text(), QStringLiteral("-90"));
}

TEST_F(DetailsDialog, AdoptingCopiesTheOverhangSetsTheValuesRebuildsOnceAndHides) {
    details->open();
    const std::pair<const char*, const char*> typed[] = {
        {"txtDü", "350"}, {"txtBd", "120"}, {"txtFn", "30"}, {"txtDe", "+25"}, {"txtH", "4800"}};
    for (const auto& [name, text] : typed)
        field(name)->setText(QString::fromUtf8(text));
    press("Command1");
    EXPECT_EQ(main->overhangText(), "350");
    EXPECT_EQ(daten.roof.gutterWidth, 120);
    EXPECT_EQ(daten.roof.roofPitch, 30);
    EXPECT_EQ(daten.roof.roofingThickness, 25);
    EXPECT_EQ(daten.design.heightH, 4800);
    // The overhang and the direction reach the design only through the main window.
    EXPECT_EQ(daten.roof.roofOverhang, 500);
    EXPECT_EQ(daten.roof.roofDirection, 270);
    EXPECT_EQ(rebuilds(), 1);
    EXPECT_EQ(daten.design.wallOffset, 410); // the rebuild saw 350 + 120 - 60
    EXPECT_FALSE(details->isVisible());
}

class EmptyField : public DetailsDialog, public ::testing::WithParamInterface<const char*> {};

TEST_P(EmptyField, BlocksAdoptingWithoutNotice) {
    details->open();
    field(GetParam())->clear();
    if (std::string(GetParam()) != "txtBd")
        field("txtBd")->setText(QStringLiteral("77"));
    press("Command1");
    EXPECT_EQ(main->overhangText(), "0");
    EXPECT_EQ(daten.roof.gutterWidth, 150);
    EXPECT_EQ(rebuilds(), 0);
    EXPECT_TRUE(details->isVisible());
}

INSTANTIATE_TEST_SUITE_P(Fields, EmptyField,
                         ::testing::Values("txtDü", "txtBd", "txtFn", "txtDe", "txtH"));

TEST_F(DetailsDialog, ATextThatIsNoNumberLeavesItsValueAnOverhangBuildsNothing) {
    details->open();
    field("txtBd")->setText(QStringLiteral("1+2"));
    field("txtFn")->setText(QStringLiteral("20"));
    field("txtDü")->setText(QStringLiteral("1+2"));
    press("Command1");
    EXPECT_EQ(daten.roof.gutterWidth, 150);
    EXPECT_EQ(daten.roof.roofPitch, 20);
    EXPECT_EQ(main->overhangText(), "1+2");
    EXPECT_EQ(rebuilds(), 1);
    EXPECT_FALSE(daten.design.modelBuilt);
    EXPECT_FALSE(details->isVisible());
}

TEST_F(DetailsDialog, CloseChangesNothingAndOpeningFillsAgain) {
    LanguageScope scope("de_DE.UTF-8", TextLanguage::German);
    main->ApplyLanguage();
    details->open();
    field("txtBd")->setText(QStringLiteral("77"));
    press("Command2");
    EXPECT_FALSE(details->isVisible());
    EXPECT_EQ(daten.roof.gutterWidth, 150);
    EXPECT_EQ(rebuilds(), 0);
    details->open();
    EXPECT_EQ(field("txtBd")->text(), QStringLiteral("150"));
    field("txtBd")->setText(QStringLiteral("999"));
    details->open(); // already open
    EXPECT_EQ(field("txtBd")->text(), QStringLiteral("150"));
    details->close(); // through its frame
    details->open();
    EXPECT_TRUE(details->isVisible());
    EXPECT_EQ(details->windowTitle(), QStringLiteral("Details"));
    EXPECT_EQ(child<QPushButton>(details, "Command2")->text(), QStringLiteral("Schließen"));
}

TEST_F(DetailsDialog, TheSketchLeavesThePlacesOfItsSymbolsFree) {
    const QImage image = child<QLabel>(details, "Picture1")->pixmap().toImage();
    EXPECT_EQ(image.size(), QSize(249, 457));
    EXPECT_FALSE(image.hasAlphaChannel());
    for (const QPoint at : {QPoint(24, 232), QPoint(120, 8), QPoint(200, 232), QPoint(24, 400)}) {
        for (int d = 0; d < 14 * 12; ++d)
            EXPECT_EQ(image.pixel(at + QPoint(d % 14, d / 14)), qRgb(255, 255, 255)) << at.x();
    }
}

} // namespace
} // namespace pluvarine::test
