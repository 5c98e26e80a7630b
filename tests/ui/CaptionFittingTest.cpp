#include "UiTestSupport.h"
#include "ui/CaptionButton.h"
#include "ui/FittedText.h"
#include "ui/UiText.h"

namespace pluvarine::test {
namespace {

TEST(FittedText, TakesTheLargestFittingSizeDownToTheSmallestAndBack) {
    const int flags = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap;
    const QString text = QStringLiteral("Ширина водосточного желоба");
    const QSize room(108, 24);
    ASSERT_FALSE(textFits(windowFont(), text, room, flags));
    QFont fitted = fittingFont(windowFont(), text, room, flags);
    EXPECT_TRUE(textFits(fitted, text, room, flags));
    fitted.setPixelSize(fitted.pixelSize() + 1);
    EXPECT_FALSE(textFits(fitted, text, room, flags));
    EXPECT_EQ(fittingFont(windowFont(), QStringLiteral("Unbreakablewordthatisfartoolong"),
                          QSize(20, 10), flags)
                  .pixelSize(),
              smallestCaptionPixelSize);
    // A label returns to the window size for a short text.
    QWidget window;
    window.setFont(windowFont());
    auto* label = new QLabel(&window);
    label->setGeometry(0, 0, 108, 24);
    label->setWordWrap(true);
    setFittedText(label, QStringLiteral("Grubość pokrycia dachowego i jeszcze więcej"));
    EXPECT_LT(label->font().pixelSize(), windowFont().pixelSize());
    setFittedText(label, QStringLiteral("Nachylenie"));
    EXPECT_EQ(label->font().pixelSize(), windowFont().pixelSize());
}

TEST_F(WindowTest, LongCaptionsWrapAndThePictureStandsBeside) {
    LanguageScope scope("de_DE.UTF-8", TextLanguage::German);
    main->ApplyLanguage();
    auto* adopt = child<CaptionButton>(&main->frmDetails(), "Command1"); // 89 wide
    EXPECT_EQ(adopt->text(), QStringLiteral("Änderungen Übernehmen"));
    EXPECT_TRUE(adopt->captionFits() && !adopt->captionShrunk());
    EXPECT_GT(adopt->captionRect().height(), adopt->fontMetrics().height()); // two lines
    EXPECT_LE(adopt->captionRect().width(), 89);
    auto* refresh = child<CaptionButton>("Command1");
    const QRect beside = refresh->captionRect();
    refresh->setIcon(QIcon());
    EXPECT_LT(refresh->captionRect().left(), beside.left());
    EXPECT_EQ(refresh->captionRect().size(), beside.size());
}

TEST_F(WindowTest, AClickAnywhereOnAnOptionAreaSelects) {
    FrmMessage& message = main->frmMessage();
    message.show();
    auto* first = child<QRadioButton>(&message, "OP1");
    auto* second = child<QRadioButton>(&message, "OP2");
    QTest::mouseClick(second, Qt::LeftButton, {}, QPoint(180, 12)); // far right of a short text
    EXPECT_TRUE(second->isChecked());
    QTest::mouseClick(first, Qt::LeftButton, {}, QPoint(150, 3));
    EXPECT_TRUE(first->isChecked() && !second->isChecked());
}

} // namespace
} // namespace pluvarine::test
