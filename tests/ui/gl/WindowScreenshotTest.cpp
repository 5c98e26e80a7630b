#include "../UiTestSupport.h"
#include "platform/system/widgets/HelpWindow.h"
#include "platform/viewer/ViewerScene.h"
#include "platform/viewer/widget/PreviewWidget.h"
#include "ui/CaptionButton.h"
#include "ui/FittedText.h"

#include <functional>

namespace pluvarine::test {
namespace {

const QString screenshotFolder = QStringLiteral(PLUVARINE_BINARY_DIR "/screenshots");

// The captions of a window that do not fit their controls, and those that fit only in a type
// smaller than the window's, one "control: text" each.
void checkCaptions(QWidget* window, QStringList& clipped, QStringList& shrunk) {
    for (QWidget* widget : window->findChildren<QWidget*>()) {
        const QString text = shownText(widget);
        if (!widget->isVisibleTo(window) || text.isEmpty())
            continue;
        bool fits = true, smaller = false;
        if (auto* label = qobject_cast<QLabel*>(widget)) {
            const int flags = int(label->alignment()) | (label->wordWrap() ? Qt::TextWordWrap : 0);
            fits = textFits(label->font(), text, label->contentsRect().size(), flags);
            smaller =
                label->font().pixelSize() < window->font().pixelSize() && !label->font().bold();
        } else if (auto* button = qobject_cast<CaptionButton*>(widget)) {
            fits = button->captionFits();
            smaller = button->captionShrunk();
        } else if (auto* option = qobject_cast<QRadioButton*>(widget)) {
            const QStyle* style = option->style();
            fits = style->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth) +
                       style->pixelMetric(QStyle::PM_RadioButtonLabelSpacing) +
                       option->fontMetrics().horizontalAdvance(text) <=
                   option->width();
        } else if (auto* group = qobject_cast<QGroupBox*>(widget)) {
            QStyleOptionGroupBox styleOption;
            styleOption.initFrom(group);
            styleOption.text = text;
            styleOption.subControls = QStyle::SC_GroupBoxLabel;
            styleOption.textAlignment = group->alignment();
            fits = group->style()
                       ->subControlRect(QStyle::CC_GroupBox, &styleOption, QStyle::SC_GroupBoxLabel,
                                        group)
                       .right() <= group->width() - 4;
        }
        const QString entry = window->objectName() + QLatin1Char('/') + widget->objectName() +
                              QStringLiteral(": \"") + text + QLatin1Char('"');
        if (!fits)
            clipped << entry;
        else if (smaller)
            shrunk << entry;
    }
}

// The three windows on the real viewer and the generated part files, as the program has them
// after a wall pick at a roof 3 m high.
class MainWindowScreens : public ::testing::TestWithParam<Language> {
protected:
    MainWindowScreens() : m_scope(GetParam().systemLocale, GetParam().lcid) {
        daten.workFolder = PLUVARINE_WORKFOLDER;
        daten.design.heightH = 3000;
        daten.roof = RoofData{0, 120, 35, 40, 180, 3000, 0, 12.5f, 3.75f};
        main = std::make_unique<FrmMain>(daten, scene, new PreviewWidget(scene));
        main->ApplyLanguage();
        main->fillMaterialList();
        scene.LoadScene(daten.workFolder + "/main.v3o");
        main->setClickLabels("12.5", "3.75");
        main->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(main.get()));
    }
    void refresh(const char* overhang) {
        main->setOverhangText(overhang);
        main->Command1_Click();
    }
    void answer(const char* option) {
        FrmMessage& message = main->frmMessage();
        message.findChild<QRadioButton*>(QString::fromUtf8(option))->click();
        message.findChild<QPushButton*>(QStringLiteral("Command1"))->click();
    }
    QImage save(QWidget* window, const QString& name) {
        QTest::qWait(50);
        const QImage image = window->grab().toImage();
        QDir().mkpath(screenshotFolder);
        image.save(screenshotFolder + QStringLiteral("/%1-%2.png").arg(name, GetParam().tag));
        return image;
    }

    LanguageScope m_scope;
    Daten daten;
    ViewerScene scene;
    std::unique_ptr<FrmMain> main;
};

// Share of the preview's pixels that differ from its corner (the background).
double drawnShare(const QImage& window) {
    const QImage preview = window.copy(QRect(288, 8, 257, 449));
    int drawn = 0;
    for (int y = 0; y < preview.height(); ++y)
        for (int x = 0; x < preview.width(); ++x)
            drawn += preview.pixel(x, y) != preview.pixel(2, 2) ? 1 : 0;
    return double(drawn) / (preview.width() * preview.height());
}

TEST_P(MainWindowScreens, EachConstructionInThePreview) {
    const std::function<void()> builds[] = {
        [this] { refresh("0"); }, [this] { refresh("300"); },
        [this] {
            main->setOverhangText("500");
            main->findChild<QRadioButton*>(QStringLiteral("O72"))->click();
            auto* list = main->findChild<QComboBox*>(QStringLiteral("cbmaterial"));
            list->setCurrentIndex(1); // copper
            emit list->activated(1);
        },
        [this] {
            refresh("150");
            answer("OP2");
        }};
    const char* names[] = {"main-continuous", "main-bends42", "main-bends72", "main-kinks"};
    double previous = -1;
    for (int i = 0; i < 4; ++i) {
        builds[i]();
        EXPECT_TRUE(daten.design.modelBuilt) << names[i];
        const QImage image = save(main.get(), QString::fromUtf8(names[i]));
        ASSERT_EQ(image.size(), QSize(692, 464) * main->devicePixelRatio());
        const double share = drawnShare(image);
        EXPECT_GT(share, 0.02) << names[i];
        EXPECT_NE(share, previous) << names[i];
        previous = share;
    }
}

TEST_P(MainWindowScreens, DialogsAndCaptions) {
    refresh("150");
    FrmMessage& message = main->frmMessage();
    ASSERT_TRUE(message.isVisible());
    save(&message, QStringLiteral("choice"));
    answer("OP1");
    FrmDetails& details = main->frmDetails();
    daten.roof.roofOverhang = 150;
    main->Command6_Click();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&details));
    save(&details, QStringLiteral("details"));
    save(details.findChild<QWidget*>(QStringLiteral("Picture1")), QStringLiteral("sketch"));
    // Every caption fits its control. The question is set when it is asked: ask again.
    daten.design.constructionAnswered = false;
    refresh("150");
    QStringList clipped, shrunk;
    for (QWidget* window : std::initializer_list<QWidget*>{main.get(), &details, &message})
        checkCaptions(window, clipped, shrunk);
    EXPECT_TRUE(clipped.isEmpty()) << clipped.join(QLatin1Char('\n')).toStdString();
    // Captions shown in a smaller type, for the record.
    QFile list(screenshotFolder + QStringLiteral("/smaller-type-%1.txt").arg(GetParam().tag));
    if (list.open(QIODevice::WriteOnly | QIODevice::Text))
        list.write(shrunk.join(QLatin1Char('\n')).toUtf8());
}

INSTANTIATE_TEST_SUITE_P(Languages, MainWindowScreens, ::testing::ValuesIn(languages),
                         [](const auto& language) { return std::string(language.param.tag); });

TEST(HelpScreen, TheShippedPageInTheHelpWindow) {
    HelpWindow help;
    help.resize(780, 600);
    help.HtmlHelp(PLUVARINE_SOURCE_DIR "/data/help::/Pluvarine.htm");
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&help));
    EXPECT_FALSE(help.shownPage().isEmpty());
    QDir().mkpath(screenshotFolder);
    EXPECT_TRUE(help.grab().save(screenshotFolder + QStringLiteral("/help.png")));
}

} // namespace
} // namespace pluvarine::test
