#include "ui/NumericKeyFilter.h"

#include "UiTestSupport.h"

namespace pluvarine::test {
namespace {

TEST(NumericKeyFilterTest, OnlyDigitsPlusAndTheEditingKeysReachTheField) {
    QLineEdit field;
    NumericKeyFilter::install(&field);
    // What is typed after "12", and the text that results.
    const std::pair<const char16_t*, const char16_t*> cases[] = {{u"aZ-,. e", u"12"},
                                                                 {u"ü°\t\r\x1b", u"12"},
                                                                 {u"0123456789", u"120123456789"},
                                                                 {u"3a+b4", u"123+4"},
                                                                 {u"-1.5,0", u"12150"}};
    for (const auto& [typed, expected] : cases) {
        field.setText(QStringLiteral("12"));
        typeText(&field, QString::fromUtf16(typed));
        EXPECT_EQ(field.text(), QString::fromUtf16(expected));
    }
    field.setText(QStringLiteral("12"));
    QTest::keyClick(&field, Qt::Key_Backspace);
    EXPECT_EQ(field.text(), QStringLiteral("1"));
    field.setText(QStringLiteral("12"));
    QTest::keyClick(&field, Qt::Key_Home);
    // X11 reports a character (0x7f) for Delete; the key still works.
    QKeyEvent del(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, QStringLiteral("\x7f"));
    QApplication::sendEvent(&field, &del);
    EXPECT_EQ(field.text(), QStringLiteral("2"));
    QTest::keyClick(&field, Qt::Key_Right);
    EXPECT_EQ(field.cursorPosition(), 1);
    // Ctrl+V types the control character 0x16, discarded like any other; pasting is not looked at.
    QKeyEvent ctrlV(QEvent::KeyPress, Qt::Key_V, Qt::ControlModifier, QStringLiteral("\x16"));
    QApplication::sendEvent(&field, &ctrlV);
    field.insert(QStringLiteral("a,-"));
    EXPECT_EQ(field.text(), QStringLiteral("2a,-"));
}

TEST_F(WindowTest, EveryNumericFieldOfTheWindowsIsFilteredTheDiameterBoxIsNot) {
    for (const char* name :
         {"txtÜd", "txths", "txtdR", "txtDü", "txtBd", "txtFn", "txtDe", "txtH"}) {
        auto* field = main->findChild<QLineEdit*>(QString::fromUtf8(name));
        field = field ? field : child<QLineEdit>(&main->frmDetails(), name);
        field->clear();
        typeText(field, QStringLiteral("a1,.-+2x"));
        EXPECT_EQ(field->text(), QStringLiteral("1+2")) << name;
    }
    auto* combo = child<QComboBox>("Combo2");
    combo->lineEdit()->clear();
    typeText(combo->lineEdit(), QStringLiteral("1a"));
    EXPECT_EQ(combo->currentText(), QStringLiteral("1a"));
}

} // namespace
} // namespace pluvarine::test
