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
    void adopt() { QTest::mouseClick(child<QPushButton>(details, "Command1"), Qt::LeftButton); }

    FrmDetails* details = nullptr;
};

TEST_F(DetailsDialog, OpeningFillsTheOverhangWithASignPositionAndTheOthersPlain) {
    main->show();
    QTest::mouseClick(child<QPushButton>("Command6"), Qt::LeftButton);
    EXPECT_TRUE(details->isVisible());
    EXPECT_FALSE(details->isModal());
    EXPECT_TRUE(details->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(field("txtDü")->text(), QStringLiteral(" 500"));
    EXPECT_EQ(field("txtBd")->text(), QStringLiteral("150"));
    EXPECT_EQ(field("txtFn")->text(), QStringLiteral("35"));
    EXPECT_EQ(field("txtDe")->text(), QStringLiteral("40"));
    EXPECT_EQ(field("txtH")->text(), QStringLiteral("5600"));
    EXPECT_EQ(child<QLabel>(details, "lblDR")->text(), QStringLiteral("270"));
    // The main window stays usable.
    EXPECT_TRUE(main->isVisible());
}

TEST_F(DetailsDialog, FractionsFollowTheirOwnRules) {
    daten.roof.roofOverhang = 0.5;
    daten.roof.roofPitch = 22.5;
    daten.roof.roofDirection = -90;
    details->open();
    EXPECT_EQ(field("txtDü")->text(), QStringLiteral(" .5"));
    EXPECT_EQ(field("txtFn")->text().toStdString(), doubleToText(22.5));
    EXPECT_EQ(child<QLabel>(details, "lblDR")->text(), QStringLiteral("-90"));
}

TEST_F(DetailsDialog, OpeningAnOpenDialogFillsItAgain) {
    details->open();
    field("txtBd")->setText(QStringLiteral("999"));
    details->open();
    EXPECT_EQ(field("txtBd")->text(), QStringLiteral("150"));
}

TEST_F(DetailsDialog, AdoptingCopiesTheOverhangSetsTheValuesRebuildsOnceAndHides) {
    details->open();
    field("txtDü")->setText(QStringLiteral("350"));
    field("txtBd")->setText(QStringLiteral("120"));
    field("txtFn")->setText(QStringLiteral("30"));
    field("txtDe")->setText(QStringLiteral("+25"));
    field("txtH")->setText(QStringLiteral("4800"));
    adopt();
    EXPECT_EQ(main->overhangText(), "350");
    EXPECT_EQ(daten.roof.gutterWidth, 120);
    EXPECT_EQ(daten.roof.roofPitch, 30);
    EXPECT_EQ(daten.roof.roofingThickness, 25);
    EXPECT_EQ(daten.design.heightH, 4800);
    // The overhang and the direction reach the design only through the main window.
    EXPECT_EQ(daten.roof.roofOverhang, 500);
    EXPECT_EQ(daten.roof.roofDirection, 270);
    EXPECT_EQ(rebuilds(), 1);
    // The rebuild saw the new values: 350 + 120 - 60.
    EXPECT_EQ(daten.design.wallOffset, 410);
    EXPECT_FALSE(details->isVisible());
}

class EmptyField : public DetailsDialog, public ::testing::WithParamInterface<const char*> {};

TEST_P(EmptyField, BlocksAdoptingWithoutNotice) {
    details->open();
    field(GetParam())->clear();
    if (std::string(GetParam()) != "txtBd")
        field("txtBd")->setText(QStringLiteral("77"));
    adopt();
    EXPECT_EQ(main->overhangText(), "0");
    EXPECT_EQ(daten.roof.gutterWidth, 150);
    EXPECT_EQ(rebuilds(), 0);
    EXPECT_TRUE(details->isVisible());
}

INSTANTIATE_TEST_SUITE_P(Fields, EmptyField,
                         ::testing::Values("txtDü", "txtBd", "txtFn", "txtDe", "txtH"));

TEST_F(DetailsDialog, ATextThatIsNoNumberLeavesItsValue) {
    details->open();
    field("txtBd")->setText(QStringLiteral("1+2"));
    field("txtFn")->setText(QStringLiteral("20"));
    adopt();
    EXPECT_EQ(daten.roof.gutterWidth, 150);
    EXPECT_EQ(daten.roof.roofPitch, 20);
    EXPECT_EQ(rebuilds(), 1);
    EXPECT_FALSE(details->isVisible());
}

TEST_F(DetailsDialog, AnOverhangThatIsNoNumberBuildsNothing) {
    details->open();
    field("txtDü")->setText(QStringLiteral("1+2"));
    adopt();
    EXPECT_EQ(main->overhangText(), "1+2");
    EXPECT_EQ(rebuilds(), 1);
    EXPECT_FALSE(daten.design.modelBuilt);
}

TEST_F(DetailsDialog, CloseHidesAndChangesNothing) {
    details->open();
    field("txtBd")->setText(QStringLiteral("77"));
    QTest::mouseClick(child<QPushButton>(details, "Command2"), Qt::LeftButton);
    EXPECT_FALSE(details->isVisible());
    EXPECT_EQ(daten.roof.gutterWidth, 150);
    EXPECT_EQ(rebuilds(), 0);
}

TEST_F(DetailsDialog, ClosedThroughItsFrameItOpensAgainWithItsTexts) {
    LanguageScope scope("de_DE.UTF-8", TextLanguage::German);
    main->ApplyLanguage();
    details->open();
    details->close();
    EXPECT_FALSE(details->isVisible());
    details->open();
    EXPECT_TRUE(details->isVisible());
    EXPECT_EQ(details->windowTitle(), QStringLiteral("Details"));
    EXPECT_EQ(child<QPushButton>(details, "Command2")->text(), QStringLiteral("Schließen"));
}

TEST_F(DetailsDialog, TheSketchShowsItsSymbolsOverThePicture) {
    auto* picture = child<QLabel>(details, "Picture1");
    const QImage image = picture->pixmap().toImage();
    EXPECT_EQ(image.size(), QSize(249, 457));
    EXPECT_FALSE(image.hasAlphaChannel());
    // The places of the symbols are left free in the drawing.
    for (const QPoint at : {QPoint(24, 232), QPoint(120, 8), QPoint(200, 232), QPoint(24, 400)}) {
        for (int dx = 0; dx < 14; ++dx) {
            for (int dy = 0; dy < 12; ++dy)
                EXPECT_EQ(image.pixel(at + QPoint(dx, dy)), qRgb(255, 255, 255))
                    << at.x() << "," << at.y();
        }
    }
}

} // namespace
} // namespace pluvarine::test
