#include "UiTestSupport.h"

namespace pluvarine::test {
namespace {

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
