#include "platform/system/widgets/HelpWindow.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <gtest/gtest.h>
#include <tuple>

namespace pluvarine::test {
namespace {

TEST(HelpWindowTest, OpensTheTopicOrReportsTheProblemInTheWindow) {
    QTemporaryDir folder;
    QDir(folder.path()).mkpath(QStringLiteral("Tectaro.chm"));
    QFile page(folder.filePath(QStringLiteral("Tectaro.chm/Pluvarine.htm")));
    ASSERT_TRUE(page.open(QIODevice::WriteOnly));
    page.write("<html><head><title>Downpipes</title></head><body><h1>Downpipe</h1></body></html>");
    page.close();
    QFile packed(folder.filePath(QStringLiteral("Packed.chm")));
    ASSERT_TRUE(packed.open(QIODevice::WriteOnly));
    packed.write("ITSF");
    packed.close();
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
        help.HtmlHelp(
            (folder.path() + QLatin1Char('/') + QString::fromUtf8(address)).toStdString());
        EXPECT_TRUE(help.isVisible());
        const QString text = help.browser()->toPlainText();
        EXPECT_TRUE(text.contains(QString::fromUtf8(shows)));
        EXPECT_EQ(help.shownPage(),
                  found ? folder.filePath(QStringLiteral("Tectaro.chm/Pluvarine.htm")) : QString());
        if (found) {
            EXPECT_FALSE(text.contains(QStringLiteral("cannot be found")));
            EXPECT_EQ(help.windowTitle(), QStringLiteral("Downpipes"));
        }
    }
}

TEST(ShippedHelp, ThePageAndEverythingItRefersToExist) {
    const QString folder = QStringLiteral(PLUVARINE_SOURCE_DIR "/data/help");
    QFile page(folder + QStringLiteral("/Pluvarine.htm"));
    ASSERT_TRUE(page.open(QIODevice::ReadOnly));
    const QString html = QString::fromUtf8(page.readAll());
    const QRegularExpression reference(QStringLiteral(R"re((?:src|href)="([^"#:]+)")re"));
    int references = 0;
    for (const auto& match : reference.globalMatch(html)) {
        ++references;
        EXPECT_TRUE(QFile::exists(folder + QLatin1Char('/') + match.captured(1)))
            << match.captured(1).toStdString();
    }
    EXPECT_GE(references, 1);
    HelpWindow help;
    help.HtmlHelp((folder + QStringLiteral("::/Pluvarine.htm")).toStdString());
    EXPECT_FALSE(help.shownPage().isEmpty());
    for (const char* word : {"Üd", "hs", "dR", "200"})
        EXPECT_TRUE(help.browser()->toPlainText().contains(QString::fromUtf8(word))) << word;
}

} // namespace
} // namespace pluvarine::test
