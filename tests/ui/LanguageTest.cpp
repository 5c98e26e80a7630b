#include "UiTestSupport.h"
#include "ui/text/LanguageM.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <algorithm>

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
        return shown(Caption{windowName, control, 0});
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

// Texts as the user reads them, quoted from the table: a wrong id or language shows here.
struct Sample {
    const char* tag;
    const char* window;
    const char* control; // "" = the window's title
    const char* expected;
};

const Sample samples[] = {
    {"de", "frmMain", "", "Pluvarine"},
    {"de", "frmMain", "Frame5", "Abmessungen"},
    {"de", "frmMain", "Label2", "Dachüberstand"},
    {"de", "frmMain", "Label4", "Position Hausseite"},
    {"de", "frmMain", "Frame7", "Rohrbögen"},
    {"de", "frmMain", "Command1", "Aktualisieren"},
    {"de", "frmMain", "Command4", "Einfügen"},
    {"de", "frmMain", "Command7", "Hilfe"},
    {"de", "frmDetails", "", "Details"},
    {"de", "frmDetails", "Frame3", "Details aus Tectaro"},
    {"de", "frmDetails", "Command1", "Änderungen Übernehmen"},
    {"de", "frmDetails", "Command2", "Schließen"},
    {"de", "frmDetails", "Label11", "Höhe Fallrohr H"},
    {"de", "frmMessage", "Command2", "Abbrechen"},
    {"en", "frmMain", "", "downpipes"},
    {"en", "frmMain", "Label11", "distance bw. clamps"},
    {"en", "frmMain", "Command3", "save"},
    {"en", "frmMain", "Command4", "add"},
    {"en", "frmMain", "Command7", "Help"},
    {"en", "frmDetails", "Label3", "gradient"},
    {"en", "frmDetails", "Frame1", "Sketch"},
    {"en", "frmDetails", "Label11", "Height of downpipe (H)"},
    {"en", "frmMessage", "Command2", "cancel"},
    {"en-GB", "frmMain", "", "downpipes"},
    {"en-GB", "frmMain", "Frame2", "material"},
    {"fr", "frmMain", "", "Tuyaux de descente"},
    {"fr", "frmDetails", "", "Détails"},
    {"fr", "frmMessage", "Command2", "Annuler"},
    {"pl", "frmMain", "Label2", "Nawis dachowy "}, // the trailing blank belongs to the text
    {"pl", "frmMain", "Command7", "Help"},
    {"pl", "frmDetails", "Label3", "Nachylenie "},
    {"ru", "frmMain", "", "Водосточная труба"},
    {"ru", "frmMain", "Label9", "Диаметр водосточной трубы"},
    {"hr", "frmMain", "Frame4", "Žlijeb"},
    {"hr", "frmMain", "Command7", "Help"},
};

const LanguageCase* languageOf(const std::string& tag) {
    static const std::pair<const char*, LanguageCase> languages[] = {
        {"de", {"de_DE.UTF-8", TextLanguage::German}},
        {"en", {"en_US.UTF-8", TextLanguage::EnglishUnitedStates}},
        {"en-GB", {"en_GB.UTF-8", TextLanguage::EnglishUnitedKingdom}},
        {"fr", {"fr_FR.UTF-8", TextLanguage::French}},
        {"pl", {"pl_PL.UTF-8", TextLanguage::Polish}},
        {"ru", {"ru_RU.UTF-8", TextLanguage::Russian}},
        {"hr", {"hr_HR.UTF-8", TextLanguage::Croatian}},
    };
    for (const auto& [name, language] : languages) {
        if (tag == name)
            return &language;
    }
    return nullptr;
}

class QuotedTexts : public LanguageTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(QuotedTexts, ShowTheTextsOfTheLanguage) {
    const LanguageCase* language = languageOf(GetParam());
    ASSERT_NE(language, nullptr);
    LanguageScope scope(language->systemLocale, language->lcid);
    main->ApplyLanguage();
    int checked = 0;
    for (const Sample& sample : samples) {
        if (std::string(sample.tag) != GetParam())
            continue;
        ++checked;
        EXPECT_EQ(caption(sample.window, sample.control), QString::fromUtf8(sample.expected))
            << sample.window << "/" << sample.control;
    }
    EXPECT_GT(checked, 0);
    // The Russian table has no word of its own for the help button; ours is not empty.
    EXPECT_FALSE(caption("frmMain", "Command7").isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Languages, QuotedTexts,
                         ::testing::Values("de", "en", "en-GB", "fr", "pl", "ru", "hr"),
                         [](const auto& language) {
                             std::string name = language.param;
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

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
