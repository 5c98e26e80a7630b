#include "platform/system/widgets/HelpWindow.h"

#include "UiTestSupport.h"

#include <tuple>

namespace pluvarine::test {
namespace {

TEST(HelpWindowTest, OpensTheTopicOrReportsTheProblemInTheWindow) {
    QTemporaryDir folder;
    QDir(folder.path()).mkpath(QStringLiteral("Tectaro.chm"));
    const QString topic = folder.filePath(QStringLiteral("Tectaro.chm/Pluvarine.htm"));
    for (const auto& [file, bytes] :
         {std::pair{topic, "<html><head><title>Downpipes</title></head><body><h1>Downpipe</h1>"},
          std::pair{folder.filePath(QStringLiteral("Packed.chm")), "ITSF"}}) {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly) && out.write(bytes) > 0);
    }
    // Address in the folder, whether the page is found, and a text the window shows; the topic
    // opens after a problem, also when it was shown before the problem.
    const std::tuple<const char*, bool, const char*> cases[] = {
        {"Tectaro.chm::/Missing.htm", false, "Missing.htm"},
        {"Tectaro.chm::/Missing.htm", false, "cannot be found"},
        {"Tectaro.chm::/Pluvarine.htm", true, "Downpipe"},
        {"Nothing.chm::/Pluvarine.htm", false, "Nothing.chm"},
        {"Packed.chm::/Pluvarine.htm", false, "Pluvarine.htm"},
        {"Tectaro.chm::/Pluvarine.htm", true, "Downpipe"}};
    HelpWindow help;
    for (const auto& [address, found, shows] : cases) {
        SCOPED_TRACE(address);
        help.HtmlHelp((folder.path() + QLatin1Char('/') + QLatin1String(address)).toStdString());
        const QString text = help.browser()->toPlainText();
        EXPECT_TRUE(help.isVisible() && text.contains(QLatin1String(shows)));
        EXPECT_EQ(help.shownPage(), found ? topic : QString());
        EXPECT_TRUE(!found || (!text.contains(QStringLiteral("cannot be found")) &&
                               help.windowTitle() == QStringLiteral("Downpipes")));
    }
}

TEST(ShippedHelp, ThePageAndEverythingItRefersToExist) {
    const QString folder = QStringLiteral(PLUVARINE_SOURCE_DIR "/data/help");
    QFile page(folder + QStringLiteral("/Pluvarine.htm"));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QRegularExpression reference(QStringLiteral(R"re((?:src|href)="([^"#:]+)")re"));
    int references = 0;
    for (const auto& match : reference.globalMatch(QString::fromUtf8(page.readAll()))) {
        ++references;
        EXPECT_TRUE(QFile::exists(folder + QLatin1Char('/') + match.captured(1)))
            << match.captured(1).toStdString();
    }
    EXPECT_GE(references, 1);
}

} // namespace
} // namespace pluvarine::test
