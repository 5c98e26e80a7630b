#include "../UiTestSupport.h"
#include "CaptionFit.h"
#include "platform/system/widgets/HelpWindow.h"
#include "platform/viewer/ViewerScene.h"
#include "platform/viewer/widget/PreviewWidget.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace pluvarine::test {
namespace {

const QString screenshotFolder = QStringLiteral(PLUVARINE_BINARY_DIR "/screenshots");

struct Language {
    const char* tag;
    const char* systemLocale;
    int lcid;
};

const Language languages[] = {
    {"de", "de_DE.UTF-8", TextLanguage::German},
    {"en", "en_US.UTF-8", TextLanguage::EnglishUnitedStates},
    {"fr", "fr_FR.UTF-8", TextLanguage::French},
    {"pl", "pl_PL.UTF-8", TextLanguage::Polish},
    {"ru", "ru_RU.UTF-8", TextLanguage::Russian},
    {"hr", "hr_HR.UTF-8", TextLanguage::Croatian},
};

enum class Construction { Continuous, Bends42, Bends72, Kinks };

// The three windows on the real viewer and the generated part files, as the program has them
// after a wall pick at a roof 3 m high.
class Screens {
public:
    explicit Screens(const Language& language)
        : m_scope(language.systemLocale, language.lcid), m_tag(language.tag) {
        m_daten.workFolder = PLUVARINE_WORKFOLDER;
        m_daten.design.heightH = 3000;
        m_daten.roof = RoofData{0, 120, 35, 40, 180, 3000, 0, 12.5f, 3.75f};
        m_player = new PreviewWidget(m_scene);
        m_main = std::make_unique<FrmMain>(m_daten, m_scene, m_player);
        m_main->ApplyLanguage();
        m_main->fillMaterialList();
        m_scene.LoadScene(m_daten.workFolder + "/main.v3o");
        m_main->setClickLabels("12.5", "3.75");
        m_main->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(m_main.get()));
    }

    FrmMain& main() { return *m_main; }
    Daten& daten() { return m_daten; }
    ViewerScene& scene() { return m_scene; }

    void build(Construction construction) {
        auto* overhang = m_main->findChild<QLineEdit*>(QStringLiteral("txtÜd"));
        switch (construction) {
        case Construction::Continuous:
            overhang->setText(QStringLiteral("0"));
            m_main->Command1_Click();
            break;
        case Construction::Bends42:
            overhang->setText(QStringLiteral("300"));
            m_main->Command1_Click();
            break;
        case Construction::Bends72:
            overhang->setText(QStringLiteral("500"));
            QTest::mouseClick(m_main->findChild<QRadioButton*>(QStringLiteral("O72")),
                              Qt::LeftButton);
            break;
        case Construction::Kinks:
            overhang->setText(QStringLiteral("150"));
            m_main->Command1_Click();
            answer("OP2");
            break;
        }
    }
    void answer(const char* option) {
        FrmMessage& message = m_main->frmMessage();
        QTest::mouseClick(message.findChild<QRadioButton*>(QString::fromUtf8(option)),
                          Qt::LeftButton);
        QTest::mouseClick(message.findChild<QPushButton*>(QStringLiteral("Command1")),
                          Qt::LeftButton);
    }
    void chooseMaterial(int index) {
        auto* list = m_main->findChild<QComboBox*>(QStringLiteral("cbmaterial"));
        list->setCurrentIndex(index);
        emit list->activated(index);
    }

    // Saves the window's picture; returns it.
    QImage save(QWidget* window, const QString& name) {
        QTest::qWait(50);
        const QImage image = window->grab().toImage();
        QDir().mkpath(screenshotFolder);
        image.save(screenshotFolder + QStringLiteral("/%1-%2.png").arg(name, m_tag));
        return image;
    }

private:
    LanguageScope m_scope;
    QString m_tag;
    Daten m_daten;
    ViewerScene m_scene;
    PreviewWidget* m_player = nullptr;
    std::unique_ptr<FrmMain> m_main;
};

// Share of the preview's pixels that differ from its corner (the background).
double drawnShare(const QImage& window) {
    const QImage preview = window.copy(QRect(288, 8, 257, 449));
    const QRgb background = preview.pixel(2, 2);
    int drawn = 0;
    for (int y = 0; y < preview.height(); ++y) {
        for (int x = 0; x < preview.width(); ++x)
            drawn += preview.pixel(x, y) != background ? 1 : 0;
    }
    return double(drawn) / (preview.width() * preview.height());
}

class MainWindowScreens : public ::testing::TestWithParam<Language> {};

TEST_P(MainWindowScreens, EachConstructionInThePreview) {
    Screens screens(GetParam());
    const std::pair<Construction, QString> constructions[] = {
        {Construction::Continuous, QStringLiteral("main-continuous")},
        {Construction::Bends42, QStringLiteral("main-bends42")},
        {Construction::Bends72, QStringLiteral("main-bends72")},
        {Construction::Kinks, QStringLiteral("main-kinks")},
    };
    double previous = -1;
    for (const auto& [construction, name] : constructions) {
        screens.build(construction);
        if (construction == Construction::Bends72)
            screens.chooseMaterial(1); // copper
        EXPECT_TRUE(screens.daten().design.modelBuilt) << name.toStdString();
        const QImage image = screens.save(&screens.main(), name);
        ASSERT_EQ(image.size(), QSize(692, 464) * screens.main().devicePixelRatio());
        const double share = drawnShare(image);
        EXPECT_GT(share, 0.02) << name.toStdString();
        EXPECT_NE(share, previous) << name.toStdString();
        previous = share;
    }
}

TEST_P(MainWindowScreens, DialogsAndCaptions) {
    Screens screens(GetParam());
    // The choice dialog as the question shows it.
    screens.main().findChild<QLineEdit*>(QStringLiteral("txtÜd"))->setText(QStringLiteral("150"));
    screens.main().Command1_Click();
    FrmMessage& message = screens.main().frmMessage();
    ASSERT_TRUE(message.isVisible());
    screens.save(&message, QStringLiteral("choice"));
    screens.answer("OP1");

    FrmDetails& details = screens.main().frmDetails();
    screens.daten().roof.roofOverhang = 150;
    screens.main().Command6_Click();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&details));
    screens.save(&details, QStringLiteral("details"));
    screens.save(details.findChild<QWidget*>(QStringLiteral("Picture1")), QStringLiteral("sketch"));

    // Every caption fits its control; what does not is listed.
    // The question of the choice dialog is set when it is asked: ask again for the report.
    screens.main().findChild<QLineEdit*>(QStringLiteral("txtÜd"))->setText(QStringLiteral("150"));
    screens.daten().design.constructionAnswered = false;
    screens.main().Command1_Click();
    QStringList clipped;
    QStringList shrunk;
    for (QWidget* window : {static_cast<QWidget*>(&screens.main()), static_cast<QWidget*>(&details),
                            static_cast<QWidget*>(&message)}) {
        const CaptionReport report = checkCaptions(window);
        for (const QString& entry : report.clipped)
            clipped << window->objectName() + QLatin1Char('/') + entry;
        for (const QString& entry : report.shrunk)
            shrunk << window->objectName() + QLatin1Char('/') + entry;
    }
    EXPECT_TRUE(clipped.isEmpty()) << GetParam().tag << ":\n"
                                   << clipped.join(QLatin1Char('\n')).toStdString();
    // Captions shown in a smaller type, for the record.
    QFile list(screenshotFolder + QStringLiteral("/smaller-type-%1.txt").arg(GetParam().tag));
    if (list.open(QIODevice::WriteOnly | QIODevice::Text))
        list.write(shrunk.join(QLatin1Char('\n')).toUtf8());
}

INSTANTIATE_TEST_SUITE_P(Languages, MainWindowScreens, ::testing::ValuesIn(languages),
                         [](const auto& language) { return std::string(language.param.tag); });

} // namespace
} // namespace pluvarine::test

namespace pluvarine::test {
namespace {

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
