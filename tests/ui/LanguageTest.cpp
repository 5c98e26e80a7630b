#include "UiTestSupport.h"
#include "ui/text/LanguageM.h"

namespace pluvarine::test {
namespace {

// Where each text of the string table stands, "window/control:id" (no control: the title).
const QStringList captions =
    QStringLiteral(
        "frmMain/:112 frmMain/Frame5:113 frmMain/Label2:114 frmMain/Label4:115 "
        "frmMain/Frame2:116 frmMain/Frame4:121 frmMain/Label8:122 frmMain/Frame6:123 "
        "frmMain/Label9:124 frmMain/Frame8:125 frmMain/Label11:126 frmMain/Frame7:127 "
        "frmMain/Label10:128 frmMain/Command1:129 frmMain/Command3:130 frmMain/Command2:131 "
        "frmMain/Command4:132 frmMain/Command6:133 frmMain/Command7:8001 frmDetails/:1000 "
        "frmDetails/Frame3:1001 frmDetails/Label1:1002 frmDetails/Label2:1003 "
        "frmDetails/Label3:1004 frmDetails/Label4:1005 frmDetails/Label9:1006 "
        "frmDetails/Command1:1007 frmDetails/Command2:1008 frmDetails/Frame1:6000 "
        "frmDetails/Label11:6001 frmMessage/Command2:131")
        .split(QLatin1Char(' '));

// Texts as the user reads them, "language:window/control:text", quoted from the tables: a wrong
// id or language shows here. The Polish trailing blank belongs to the text.
const QStringList quoted =
    QStringLiteral("de:frmMain/:Pluvarine|de:frmMain/Label2:Dachüberstand|"
                   "de:frmMessage/Command2:Abbrechen|de:frmDetails/Command1:Änderungen Übernehmen|"
                   "en:frmMain/:downpipes|en:frmMain/Command4:add|"
                   "en:frmDetails/Label11:Height of downpipe (H)|en_GB:frmMain/Frame2:material|"
                   "fr:frmDetails/:Détails|pl:frmMain/Label2:Nawis dachowy |"
                   "pl:frmMain/Command7:Help|ru:frmMain/:Водосточная труба|"
                   "hr:frmMain/Frame4:Žlijeb|hr:frmMain/Command7:Help")
        .split(QLatin1Char('|'));

struct Language {
    const char* tag;
    const char* systemLocale;
    int lcid;
};

class LanguageTest : public WindowTest {
protected:
    QString shown(const QString& place) {
        const QString name = place.section(QLatin1Char('/'), 0, 0);
        const QString control = place.section(QLatin1Char('/'), 1);
        QWidget* window = name == QStringLiteral("frmMain")      ? main.get()
                          : name == QStringLiteral("frmDetails") ? &main->frmDetails()
                                                                 : (QWidget*)&main->frmMessage();
        if (control.isEmpty())
            return window->windowTitle();
        auto* widget = window->findChild<QWidget*>(control);
        return widget ? shownText(widget) : QStringLiteral("<missing>");
    }
    void expectShown(const QString& place, const QString& expected) {
        EXPECT_EQ(shown(place), expected) << place.toStdString();
    }
};

class EveryLanguage : public LanguageTest, public ::testing::WithParamInterface<Language> {};

TEST_P(EveryLanguage, EveryCaptionComesFromTheTableOfTheActiveLanguage) {
    const int lcid = GetParam().lcid;
    LanguageScope scope(GetParam().systemLocale, lcid);
    main->ApplyLanguage();
    for (const QString& entry : captions) {
        const int id = entry.section(QLatin1Char(':'), 1).toInt();
        expectShown(entry.section(QLatin1Char(':'), 0, 0),
                    QString::fromStdString(LoadText(id, lcid)));
    }
    for (const QString& entry : quoted) {
        if (entry.section(QLatin1Char(':'), 0, 0) == QLatin1String(GetParam().tag))
            expectShown(entry.section(QLatin1Char(':'), 1, 1), entry.section(QLatin1Char(':'), 2));
    }
    // The Russian table has no word of its own for the help button; ours is not empty.
    EXPECT_FALSE(shown(QStringLiteral("frmMain/Command7")).isEmpty());
    // The texts the layouts carry stay in every language.
    expectShown(QStringLiteral("frmMessage/"), QStringLiteral("Fallrohr"));
    expectShown(QStringLiteral("frmMessage/Command1"), QStringLiteral("OK"));
    expectShown(QStringLiteral("frmMain/Label16"), QStringLiteral("  df:"));
}

INSTANTIATE_TEST_SUITE_P(
    Tables, EveryLanguage,
    ::testing::Values(Language{"de", "de_DE.UTF-8", TextLanguage::German},
                      Language{"en", "en_US.UTF-8", TextLanguage::EnglishUnitedStates},
                      Language{"en_GB", "en_GB.UTF-8", TextLanguage::EnglishUnitedKingdom},
                      Language{"fr", "fr_FR.UTF-8", TextLanguage::French},
                      Language{"pl", "pl_PL.UTF-8", TextLanguage::Polish},
                      Language{"ru", "ru_RU.UTF-8", TextLanguage::Russian},
                      Language{"hr", "hr_HR.UTF-8", TextLanguage::Croatian}),
    [](const auto& language) { return std::string(language.param.tag); });

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
    EXPECT_EQ(help->text(), QStringLiteral("Help")); // set even when the button is hidden
    main->show();
    EXPECT_EQ(help->isVisible(), GetParam().helpShown);
    EXPECT_TRUE(child<QPushButton>("Command1")->isVisible());
}

INSTANTIATE_TEST_SUITE_P(Locales, SystemLanguageAdjustments,
                         ::testing::Values(Adjustment{"hr_HR.UTF-8", false, false},
                                           Adjustment{"hr_BA.UTF-8", false, false},
                                           Adjustment{"ru_RU.UTF-8", true, true},
                                           Adjustment{"ru_MD.UTF-8", true, true},
                                           Adjustment{"de_DE.UTF-8", true, false},
                                           Adjustment{"sr_RS@latin", true, false}));

TEST_F(LanguageTest, ApplyLanguageCreatesBothDialogsHiddenAndTheMaterialListFills) {
    LanguageScope scope("de_DE.UTF-8", TextLanguage::German);
    EXPECT_FALSE(main->dialogsCreated());
    main->ApplyLanguage();
    EXPECT_TRUE(main->dialogsCreated());
    for (QWidget* window :
         {static_cast<QWidget*>(&main->frmDetails()), static_cast<QWidget*>(&main->frmMessage())}) {
        EXPECT_FALSE(window->isVisible());
        EXPECT_TRUE(window->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    }
    EXPECT_FALSE(main->isVisible());
    EXPECT_EQ(systemLanguageCode(), "0407");
    main->fillMaterialList();
    auto* list = child<QComboBox>("cbmaterial");
    ASSERT_EQ(list->count(), 4);
    const char* names[] = {"Kunstoff-Grau", "Kupfer", "Zink", "Alu"};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(list->itemText(i), QString::fromUtf8(names[i]));
    EXPECT_EQ(list->currentIndex(), 0);
    // Nothing is built at load, so the selection applies nothing.
    EXPECT_TRUE(daten.design.materialFile.empty());
    EXPECT_TRUE(scene.calls().empty());
}

} // namespace
} // namespace pluvarine::test
