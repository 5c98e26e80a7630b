#include "UiTestSupport.h"
#include "ui/text/LanguageM.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>

namespace pluvarine::test {
namespace {

// Where each text of the string table stands: window, control ("" = the window's title), id.
struct Caption {
    const char* window;
    const char* control;
    int id;
};

const Caption captions[] = {
    {"frmMain", "", 112},
    {"frmMain", "Frame5", 113},
    {"frmMain", "Label2", 114},
    {"frmMain", "Label4", 115},
    {"frmMain", "Frame2", 116},
    {"frmMain", "Frame4", 121},
    {"frmMain", "Label8", 122},
    {"frmMain", "Frame6", 123},
    {"frmMain", "Label9", 124},
    {"frmMain", "Frame8", 125},
    {"frmMain", "Label11", 126},
    {"frmMain", "Frame7", 127},
    {"frmMain", "Label10", 128},
    {"frmMain", "Command1", 129},
    {"frmMain", "Command3", 130},
    {"frmMain", "Command2", 131},
    {"frmMain", "Command4", 132},
    {"frmMain", "Command6", 133},
    {"frmMain", "Command7", 8001},
    {"frmDetails", "", 1000},
    {"frmDetails", "Frame3", 1001},
    {"frmDetails", "Label1", 1002},
    {"frmDetails", "Label2", 1003},
    {"frmDetails", "Label3", 1004},
    {"frmDetails", "Label4", 1005},
    {"frmDetails", "Label9", 1006},
    {"frmDetails", "Command1", 1007},
    {"frmDetails", "Command2", 1008},
    {"frmDetails", "Frame1", 6000},
    {"frmDetails", "Label11", 6001},
    {"frmMessage", "Command2", 131},
};

class LanguageTest : public WindowTest {
protected:
    QWidget* window(const char* name) {
        const std::string n = name;
        if (n == "frmMain")
            return main.get();
        if (n == "frmDetails")
            return &main->frmDetails();
        return &main->frmMessage();
    }
    QString shown(const Caption& c) {
        QWidget* w = window(c.window);
        if (std::string(c.control).empty())
            return w->windowTitle();
        auto* control = w->findChild<QWidget*>(QString::fromUtf8(c.control));
        if (control == nullptr)
            return QStringLiteral("<missing>");
        if (auto* group = qobject_cast<QGroupBox*>(control))
            return group->title();
        if (auto* label = qobject_cast<QLabel*>(control))
            return label->text();
        return qobject_cast<QAbstractButton*>(control)->text();
    }
    QString caption(const char* windowName, const char* control) {
        for (const Caption& c : captions) {
            if (std::string(c.window) == windowName && std::string(c.control) == control)
                return shown(c);
        }
        return {};
    }
};

struct LanguageCase {
    const char* systemLocale;
    int lcid;
};

class EveryLanguage : public LanguageTest, public ::testing::WithParamInterface<LanguageCase> {};

TEST_P(EveryLanguage, EveryCaptionComesFromTheTableOfTheActiveLanguage) {
    LanguageScope scope(GetParam().systemLocale, GetParam().lcid);
    main->ApplyLanguage();
    for (const Caption& c : captions) {
        EXPECT_EQ(shown(c).toStdString(), LoadText(c.id, GetParam().lcid))
            << c.window << "/" << c.control << " id " << c.id;
    }
    // The texts the layouts carry stay in every language.
    EXPECT_EQ(main->frmMessage().windowTitle(), QStringLiteral("Fallrohr"));
    EXPECT_EQ(child<QPushButton>(&main->frmMessage(), "Command1")->text(), QStringLiteral("OK"));
    EXPECT_EQ(child<QLabel>("Label16")->text(), QStringLiteral("  df:"));
}

INSTANTIATE_TEST_SUITE_P(
    Tables, EveryLanguage,
    ::testing::Values(LanguageCase{"de_DE.UTF-8", TextLanguage::German},
                      LanguageCase{"en_US.UTF-8", TextLanguage::EnglishUnitedStates},
                      LanguageCase{"en_GB.UTF-8", TextLanguage::EnglishUnitedKingdom},
                      LanguageCase{"fr_FR.UTF-8", TextLanguage::French},
                      LanguageCase{"pl_PL.UTF-8", TextLanguage::Polish},
                      LanguageCase{"ru_RU.UTF-8", TextLanguage::Russian},
                      LanguageCase{"hr_HR.UTF-8", TextLanguage::Croatian}));

TEST_F(LanguageTest, GermanCaptions) {
    LanguageScope scope("de_DE.UTF-8", TextLanguage::German);
    EXPECT_FALSE(main->ApplyLanguage());
    EXPECT_EQ(main->windowTitle(), QStringLiteral("Pluvarine"));
    EXPECT_EQ(caption("frmMain", "Frame5"), QStringLiteral("Abmessungen"));
    EXPECT_EQ(caption("frmMain", "Label2"), QStringLiteral("Dachüberstand"));
    EXPECT_EQ(caption("frmMain", "Label4"), QStringLiteral("Position Hausseite"));
    EXPECT_EQ(caption("frmMain", "Frame7"), QStringLiteral("Rohrbögen"));
    EXPECT_EQ(caption("frmMain", "Command1"), QStringLiteral("Aktualisieren"));
    EXPECT_EQ(caption("frmMain", "Command4"), QStringLiteral("Einfügen"));
    EXPECT_EQ(caption("frmMain", "Command7"), QStringLiteral("Hilfe"));
    EXPECT_EQ(main->frmDetails().windowTitle(), QStringLiteral("Details"));
    EXPECT_EQ(caption("frmDetails", "Frame3"), QStringLiteral("Details aus Tectaro"));
    EXPECT_EQ(caption("frmDetails", "Command1"), QStringLiteral("Änderungen Übernehmen"));
    EXPECT_EQ(caption("frmDetails", "Command2"), QStringLiteral("Schließen"));
    EXPECT_EQ(caption("frmDetails", "Label11"), QStringLiteral("Höhe Fallrohr H"));
    EXPECT_EQ(caption("frmMessage", "Command2"), QStringLiteral("Abbrechen"));
    EXPECT_FALSE(child<QPushButton>("Command7")->isHidden());
}

TEST_F(LanguageTest, EnglishCaptions) {
    LanguageScope scope("en_US.UTF-8", TextLanguage::EnglishUnitedStates);
    EXPECT_FALSE(main->ApplyLanguage());
    EXPECT_EQ(main->windowTitle(), QStringLiteral("downpipes"));
    EXPECT_EQ(caption("frmMain", "Label11"), QStringLiteral("distance bw. clamps"));
    EXPECT_EQ(caption("frmMain", "Command3"), QStringLiteral("save"));
    EXPECT_EQ(caption("frmMain", "Command4"), QStringLiteral("add"));
    EXPECT_EQ(caption("frmMain", "Command7"), QStringLiteral("Help"));
    EXPECT_EQ(caption("frmDetails", "Label3"), QStringLiteral("gradient"));
    EXPECT_EQ(caption("frmDetails", "Frame1"), QStringLiteral("Sketch"));
    EXPECT_EQ(caption("frmDetails", "Label11"), QStringLiteral("Height of downpipe (H)"));
    EXPECT_EQ(caption("frmMessage", "Command2"), QStringLiteral("cancel"));
}

TEST_F(LanguageTest, SamplesOfTheOtherLanguages) {
    {
        LanguageScope scope("fr_FR.UTF-8", TextLanguage::French);
        FrmMain window(daten, scene, nullptr);
        window.ApplyLanguage();
        EXPECT_EQ(window.windowTitle(), QStringLiteral("Tuyaux de descente"));
        EXPECT_EQ(window.frmDetails().windowTitle(), QStringLiteral("Détails"));
    }
    {
        // A trailing blank belongs to the text.
        LanguageScope scope("pl_PL.UTF-8", TextLanguage::Polish);
        FrmMain window(daten, scene, nullptr);
        window.ApplyLanguage();
        EXPECT_EQ(window.findChild<QLabel*>(QStringLiteral("Label2"))->text(),
                  QStringLiteral("Nawis dachowy "));
        EXPECT_EQ(window.findChild<QPushButton*>(QStringLiteral("Command7"))->text(),
                  QStringLiteral("Help"));
    }
    {
        LanguageScope scope("ru_RU.UTF-8", TextLanguage::Russian);
        FrmMain window(daten, scene, nullptr);
        window.ApplyLanguage();
        EXPECT_EQ(window.windowTitle(), QStringLiteral("Водосточная труба"));
        EXPECT_FALSE(window.findChild<QPushButton*>(QStringLiteral("Command7"))->text().isEmpty());
    }
    {
        LanguageScope scope("hr_HR.UTF-8", TextLanguage::Croatian);
        FrmMain window(daten, scene, nullptr);
        window.ApplyLanguage();
        EXPECT_EQ(window.findChild<QGroupBox*>(QStringLiteral("Frame4"))->title(),
                  QStringLiteral("Žlijeb"));
    }
    {
        LanguageScope scope("en_GB.UTF-8", TextLanguage::EnglishUnitedKingdom);
        FrmMain window(daten, scene, nullptr);
        window.ApplyLanguage();
        EXPECT_EQ(window.windowTitle(), QStringLiteral("downpipes"));
    }
}

// The system default locale decides the two adjustments, independently of the texts.
struct Adjustment {
    const char* systemLocale;
    bool helpShown;
    bool skipVersionCheck;
};

class SystemLanguageAdjustments : public LanguageTest,
                                  public ::testing::WithParamInterface<Adjustment> {};

TEST_P(SystemLanguageAdjustments, HelpButtonAndVersionCheck) {
    LanguageScope scope(GetParam().systemLocale, TextLanguage::EnglishUnitedStates);
    EXPECT_EQ(main->ApplyLanguage(), GetParam().skipVersionCheck);
    auto* help = child<QPushButton>("Command7");
    EXPECT_EQ(help->isHidden(), !GetParam().helpShown);
    // The caption is set even when the button is hidden.
    EXPECT_EQ(help->text(), QStringLiteral("Help"));
    main->show();
    EXPECT_EQ(help->isVisible(), GetParam().helpShown);
    // The rest of the window is the same.
    EXPECT_TRUE(child<QPushButton>("Command1")->isVisible());
}

INSTANTIATE_TEST_SUITE_P(Locales, SystemLanguageAdjustments,
                         ::testing::Values(Adjustment{"hr_HR.UTF-8", false, false},
                                           Adjustment{"hr_BA.UTF-8", false, false},
                                           Adjustment{"ru_RU.UTF-8", true, true},
                                           Adjustment{"ru_MD.UTF-8", true, true},
                                           Adjustment{"de_DE.UTF-8", true, false},
                                           Adjustment{"en_GB.UTF-8", true, false},
                                           Adjustment{"sr_RS@latin", true, false}));

TEST_F(LanguageTest, ApplyLanguageCreatesBothDialogsHidden) {
    LanguageScope scope("de_DE.UTF-8", TextLanguage::German);
    EXPECT_FALSE(main->dialogsCreated());
    main->ApplyLanguage();
    EXPECT_TRUE(main->dialogsCreated());
    EXPECT_FALSE(main->frmDetails().isVisible());
    EXPECT_FALSE(main->frmMessage().isVisible());
    EXPECT_FALSE(main->isVisible());
    EXPECT_TRUE(main->frmDetails().windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_TRUE(main->frmMessage().windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(systemLanguageCode(), "0407");
}

TEST_F(LanguageTest, MaterialListHoldsTheFourMaterialsWithTheFirstSelected) {
    LanguageScope scope("de_DE.UTF-8", TextLanguage::German);
    main->ApplyLanguage();
    main->fillMaterialList();
    auto* list = child<QComboBox>("cbmaterial");
    ASSERT_EQ(list->count(), 4);
    EXPECT_EQ(list->itemText(0), QStringLiteral("Kunstoff-Grau"));
    EXPECT_EQ(list->itemText(1), QStringLiteral("Kupfer"));
    EXPECT_EQ(list->itemText(2), QStringLiteral("Zink"));
    EXPECT_EQ(list->itemText(3), QStringLiteral("Alu"));
    EXPECT_EQ(list->currentIndex(), 0);
    // Nothing is built at load, so the selection applies nothing.
    EXPECT_TRUE(daten.design.materialFile.empty());
    EXPECT_TRUE(scene.calls().empty());
}

} // namespace
} // namespace pluvarine::test
