#include "UiTestSupport.h"
#include "ui/text/LanguageM.h"

namespace pluvarine::test {
namespace {

// Where each text of the string table stands, "window/control:id" (no control: the title); the
// texts themselves are the string table's own concern.
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

// The caption or text at "window/control" (no control: the title).
QString shown(FrmMain& main, const QString& place) {
    const QString name = place.section(QLatin1Char('/'), 0, 0);
    const QString control = place.section(QLatin1Char('/'), 1);
    QWidget* window = name == QStringLiteral("frmMain")      ? &main
                      : name == QStringLiteral("frmDetails") ? (QWidget*)&main.frmDetails()
                                                             : &main.frmMessage();
    auto* widget = window->findChild<QWidget*>(control);
    return control.isEmpty() ? window->windowTitle()
           : widget          ? shownText(widget)
                             : QStringLiteral("<missing>");
}

TEST_F(WindowTest, EveryCaptionComesFromTheTableOfTheActiveLanguage) {
    const std::pair<const char*, int> languages[] = {
        {"de_DE.UTF-8", TextLanguage::German},
        {"en_US.UTF-8", TextLanguage::EnglishUnitedStates},
        {"en_GB.UTF-8", TextLanguage::EnglishUnitedKingdom},
        {"fr_FR.UTF-8", TextLanguage::French},
        {"pl_PL.UTF-8", TextLanguage::Polish},
        {"ru_RU.UTF-8", TextLanguage::Russian},
        {"hr_HR.UTF-8", TextLanguage::Croatian}};
    for (const auto& [locale, lcid] : languages) {
        SCOPED_TRACE(locale);
        LanguageScope scope(locale, lcid);
        FrmMain window(daten, scene, nullptr);
        window.ApplyLanguage();
        for (const QString& entry : captions) {
            const int id = entry.section(QLatin1Char(':'), 1).toInt();
            EXPECT_EQ(shown(window, entry.section(QLatin1Char(':'), 0, 0)),
                      QString::fromStdString(LoadText(id, lcid)))
                << entry.toStdString();
        }
        // The texts the layouts carry stay in every language.
        for (const auto& [place, text] : {std::pair{"frmMessage/", "Fallrohr"},
                                          {"frmMessage/Command1", "OK"},
                                          {"frmMain/Label16", "  df:"}})
            EXPECT_EQ(shown(window, QLatin1String(place)), QLatin1String(text));
        // The Russian table has no word of its own for the help button; ours is not empty.
        EXPECT_FALSE(shown(window, QStringLiteral("frmMain/Command7")).isEmpty());
    }
}

// The system default locale alone decides whether help is offered and the version check runs.
TEST_F(WindowTest, SystemLocaleHidesHelpOrSkipsTheVersionCheck) {
    const std::tuple<const char*, bool, bool> cases[] = {
        {"hr_HR.UTF-8", false, false}, {"hr_BA.UTF-8", false, false}, {"ru_RU.UTF-8", true, true},
        {"ru_MD.UTF-8", true, true},   {"de_DE.UTF-8", true, false},  {"sr_RS@latin", true, false}};
    for (const auto& [locale, helpShown, skipVersionCheck] : cases) {
        LanguageScope scope(locale, TextLanguage::EnglishUnitedStates);
        FrmMain window(daten, scene, nullptr);
        EXPECT_EQ(window.ApplyLanguage(), skipVersionCheck) << locale;
        auto* help = window.findChild<QPushButton*>(QStringLiteral("Command7"));
        EXPECT_EQ(help->text(), QStringLiteral("Help")); // set even when the button is hidden
        window.show();
        EXPECT_EQ(help->isVisible(), helpShown) << locale;
    }
}

TEST_F(WindowTest, ApplyLanguageCreatesBothDialogsHiddenAndTheMaterialListFills) {
    LanguageScope scope("de_DE.UTF-8", TextLanguage::German);
    EXPECT_FALSE(main->dialogsCreated());
    main->ApplyLanguage();
    EXPECT_TRUE(main->dialogsCreated() && !main->isVisible());
    EXPECT_FALSE(main->frmDetails().isVisible() || main->frmMessage().isVisible());
    EXPECT_TRUE(main->frmMessage().windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    main->fillMaterialList();
    auto* list = child<QComboBox>("cbmaterial");
    QStringList names;
    for (int i = 0; i < list->count(); ++i)
        names << list->itemText(i);
    EXPECT_EQ(names.join(QLatin1Char('|')), QStringLiteral("Kunstoff-Grau|Kupfer|Zink|Alu"));
    EXPECT_EQ(list->currentIndex(), 0);
    // Nothing is built at load, so the selection applies nothing.
    EXPECT_TRUE(daten.design.materialFile.empty() && scene.calls().empty());
}

} // namespace
} // namespace pluvarine::test
