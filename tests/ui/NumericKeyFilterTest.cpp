#include "ui/NumericKeyFilter.h"

#include "UiTestSupport.h"

#include <QComboBox>
#include <QLineEdit>

namespace pluvarine::test {
namespace {

class NumericKeyFilterTest : public ::testing::Test {
protected:
    NumericKeyFilterTest() {
        field.setText(QStringLiteral("12"));
        NumericKeyFilter::install(&field);
        field.setCursorPosition(2);
    }
    QLineEdit field;
};

// Each row: what is typed, and the text of a field that held "12" with the cursor at its end.
struct TypedCase {
    const char16_t* typed;
    const char16_t* expected;
};

class TypedCharacters : public NumericKeyFilterTest,
                        public ::testing::WithParamInterface<TypedCase> {};

TEST_P(TypedCharacters, OnlyDigitsAndPlusReachTheField) {
    typeText(&field, QString::fromUtf16(GetParam().typed));
    EXPECT_EQ(field.text(), QString::fromUtf16(GetParam().expected));
}

INSTANTIATE_TEST_SUITE_P(
    Keys, TypedCharacters,
    ::testing::Values(TypedCase{u"a", u"12"}, TypedCase{u"Z", u"12"}, TypedCase{u"-", u"12"},
                      TypedCase{u",", u"12"}, TypedCase{u".", u"12"}, TypedCase{u" ", u"12"},
                      TypedCase{u"e", u"12"}, TypedCase{u"ü", u"12"}, TypedCase{u"°", u"12"},
                      TypedCase{u"\t", u"12"}, TypedCase{u"\r", u"12"}, TypedCase{u"\x1b", u"12"},
                      TypedCase{u"0123456789", u"120123456789"}, TypedCase{u"+", u"12+"},
                      TypedCase{u"3a+b4", u"123+4"}, TypedCase{u"-1.5,0", u"12150"}));

TEST_F(NumericKeyFilterTest, OnePlusTwoTypedIntoAnEmptyFieldGivesOnePlusTwo) {
    field.clear();
    QTest::keyClicks(&field, QStringLiteral("1+2"));
    EXPECT_EQ(field.text(), QStringLiteral("1+2"));
}

TEST_F(NumericKeyFilterTest, BackspaceDeletesTheCharacterBeforeTheCursor) {
    QTest::keyClick(&field, Qt::Key_Backspace);
    EXPECT_EQ(field.text(), QStringLiteral("1"));
}

TEST_F(NumericKeyFilterTest, DeleteAndArrowsWorkAsUsual) {
    QTest::keyClick(&field, Qt::Key_Left);
    QTest::keyClick(&field, Qt::Key_Left);
    EXPECT_EQ(field.cursorPosition(), 0);
    // X11 reports a character (0x7f) for Delete; the key still works.
    QKeyEvent del(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier, QStringLiteral("\x7f"));
    QApplication::sendEvent(&field, &del);
    EXPECT_EQ(field.text(), QStringLiteral("2"));
    QTest::keyClick(&field, Qt::Key_Right);
    EXPECT_EQ(field.cursorPosition(), 1);
    QTest::keyClick(&field, Qt::Key_Home);
    EXPECT_EQ(field.cursorPosition(), 0);
}

TEST_F(NumericKeyFilterTest, ControlCharactersAreDiscardedPasteWithoutTypingIsNot) {
    // Ctrl+V types the control character 0x16 and is discarded like any other character.
    QKeyEvent ctrlV(QEvent::KeyPress, Qt::Key_V, Qt::ControlModifier, QStringLiteral("\x16"));
    EXPECT_TRUE(QApplication::sendEvent(&field, &ctrlV));
    EXPECT_EQ(field.text(), QStringLiteral("12"));
    // Text that arrives without typing is not looked at.
    field.insert(QStringLiteral("a,-"));
    EXPECT_EQ(field.text(), QStringLiteral("12a,-"));
}

TEST(NumericKeyFilterRule, PassesExactlyBackspaceDigitsAndPlus) {
    for (char16_t c = 0; c < 0x250; ++c) {
        const bool expected = c == 8 || (c >= u'0' && c <= u'9') || c == u'+';
        EXPECT_EQ(NumericKeyFilter::charPasses(c), expected) << int(c);
    }
}

// The filter sits on every numeric field of the main window and of the details dialog.
class FilteredFields : public WindowTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(FilteredFields, LettersCommaFullStopAndMinusAreDiscarded) {
    QObject* window = main.get();
    if (window->findChild<QLineEdit*>(QString::fromUtf8(GetParam())) == nullptr)
        window = &main->frmDetails();
    auto* field = child<QLineEdit>(window, GetParam());
    ASSERT_NE(field, nullptr);
    field->clear();
    typeText(field, QStringLiteral("a1,.-+2x"));
    EXPECT_EQ(field->text(), QStringLiteral("1+2"));
    QTest::keyClick(field, Qt::Key_Backspace);
    EXPECT_EQ(field->text(), QStringLiteral("1+"));
}

INSTANTIATE_TEST_SUITE_P(Windows, FilteredFields,
                         ::testing::Values("txtÜd", "txths", "txtdR", "txtDü", "txtBd", "txtFn",
                                           "txtDe", "txtH"));

TEST_F(WindowTest, TheDiameterBoxIsNotFiltered) {
    auto* combo = child<QComboBox>("Combo2");
    ASSERT_NE(combo, nullptr);
    combo->lineEdit()->clear();
    QTest::keyClicks(combo->lineEdit(), QStringLiteral("1a"));
    EXPECT_EQ(combo->currentText(), QStringLiteral("1a"));
}

} // namespace
} // namespace pluvarine::test
