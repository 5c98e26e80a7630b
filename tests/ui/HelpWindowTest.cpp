#include "platform/system/widgets/HelpWindow.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <gtest/gtest.h>

namespace pluvarine::test {
namespace {

class HelpWindowTest : public ::testing::Test {
protected:
    HelpWindowTest() {
        QDir(folder.path()).mkpath(QStringLiteral("Tectaro.chm"));
        QFile page(folder.filePath(QStringLiteral("Tectaro.chm/Pluvarine.htm")));
        page.open(QIODevice::WriteOnly);
        page.write(
            "<html><head><title>Downpipes</title></head><body><h1>Downpipe</h1></body></html>");
    }
    std::string address(const QString& topic) const {
        return (folder.path() + QStringLiteral("/Tectaro.chm::") + topic).toStdString();
    }
    QString shownText() const { return help.browser()->toPlainText(); }

    QTemporaryDir folder;
    HelpWindow help;
};

TEST_F(HelpWindowTest, OpensTheTopicOfTheHelpFolder) {
    help.HtmlHelp(address(QStringLiteral("/Pluvarine.htm")));
    EXPECT_TRUE(help.isVisible());
    EXPECT_EQ(help.shownPage(), folder.filePath(QStringLiteral("Tectaro.chm/Pluvarine.htm")));
    EXPECT_TRUE(shownText().contains(QStringLiteral("Downpipe")));
    EXPECT_EQ(help.windowTitle(), QStringLiteral("Downpipes"));
}

TEST_F(HelpWindowTest, AMissingTopicIsReportedInTheWindow) {
    help.HtmlHelp(address(QStringLiteral("/Missing.htm")));
    EXPECT_TRUE(help.isVisible());
    EXPECT_TRUE(help.shownPage().isEmpty());
    EXPECT_TRUE(shownText().contains(QStringLiteral("Missing.htm")));
    EXPECT_TRUE(shownText().contains(QStringLiteral("cannot be found")));
}

TEST_F(HelpWindowTest, AMissingHelpFileIsReportedInTheWindow) {
    help.HtmlHelp((folder.path() + QStringLiteral("/Nothing.chm::/Pluvarine.htm")).toStdString());
    EXPECT_TRUE(help.isVisible());
    EXPECT_TRUE(help.shownPage().isEmpty());
    EXPECT_TRUE(shownText().contains(QStringLiteral("Nothing.chm")));
}

TEST_F(HelpWindowTest, AHelpFileThatIsNoFolderIsReportedInTheWindow) {
    QFile packed(folder.filePath(QStringLiteral("Packed.chm")));
    packed.open(QIODevice::WriteOnly);
    packed.write("ITSF");
    packed.close();
    help.HtmlHelp((packed.fileName() + QStringLiteral("::/Pluvarine.htm")).toStdString());
    EXPECT_TRUE(help.shownPage().isEmpty());
    EXPECT_TRUE(shownText().contains(QStringLiteral("Pluvarine.htm")));
}

TEST_F(HelpWindowTest, AfterAProblemTheTopicOpensAgain) {
    help.HtmlHelp(address(QStringLiteral("/Missing.htm")));
    help.HtmlHelp(address(QStringLiteral("/Pluvarine.htm")));
    EXPECT_FALSE(help.shownPage().isEmpty());
    EXPECT_FALSE(shownText().contains(QStringLiteral("cannot be found")));
}

// The help page the program ships: it opens, and every picture and page it refers to is there.
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
    const QString text = help.browser()->toPlainText();
    for (const char* word : {"Üd", "hs", "dR", "200"})
        EXPECT_TRUE(text.contains(QString::fromUtf8(word))) << word;
}

} // namespace
} // namespace pluvarine::test
