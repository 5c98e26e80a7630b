#include "UiTestSupport.h"

namespace pluvarine::test {
namespace {

TEST_F(WindowTest, OnlyDigitsPlusAndTheEditingKeysReachTheNumericFields) {
    QLineEdit& field = *child<QLineEdit>("txtÜd");
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
    QTest::keyClick(&field, Qt::Key_Backspace);
    EXPECT_EQ(field.text(), QStringLiteral("1215"));
    QTest::keyClick(&field, Qt::Key_Home);
    // X11 reports a character (0x7f) for Delete; the key still works.
    QKeyEvent del(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, QStringLiteral("\x7f"));
    QApplication::sendEvent(&field, &del);
    EXPECT_EQ(field.text(), QStringLiteral("215"));
    QTest::keyClick(&field, Qt::Key_Right);
    EXPECT_EQ(field.cursorPosition(), 1);
    // Ctrl+V types the control character 0x16, discarded like any other; pasting is not looked at.
    QKeyEvent ctrlV(QEvent::KeyPress, Qt::Key_V, Qt::ControlModifier, QStringLiteral("\x16"));
    QApplication::sendEvent(&field, &ctrlV);
    field.insert(QStringLiteral("a,-"));
    EXPECT_EQ(field.text(), QStringLiteral("2a,-15"));
    // Every other numeric field is filtered too; the diameter box is not.
    for (const char* name : {"txths", "txtdR", "txtDü", "txtBd", "txtFn", "txtDe", "txtH"}) {
        auto* other = main->findChild<QLineEdit*>(QString::fromUtf8(name));
        other = other ? other : child<QLineEdit>(&main->frmDetails(), name);
        other->clear();
        typeText(other, QStringLiteral("a1,.-+2x"));
        EXPECT_EQ(other->text(), QStringLiteral("1+2")) << name;
    }
    auto* combo = child<QComboBox>("Combo2");
    combo->lineEdit()->clear();
    typeText(combo->lineEdit(), QStringLiteral("1a"));
    EXPECT_EQ(combo->currentText(), QStringLiteral("1a"));
}

} // namespace
} // namespace pluvarine::test
