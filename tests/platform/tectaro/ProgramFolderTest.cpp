#include "platform/tectaro/ProgramFolder.h"

#include "TectaroTestSupport.h"

using namespace pluvarine;
namespace fs = std::filesystem;

TEST(ProgramFolder, TheHostLaysOutBothMacroFoldersAndHelpAndAReseedKeepsTheMacrosFiles) {
    QTemporaryDir scratch;
    const fs::path root = scratch.path().toStdString(), tree = root / "workfolder",
                   program = root / "user" / "tectaro", part = "res/Fallrohr_100_500.v3o";
    using test::readFile, test::writeFile;
    writeFile(tree / part, "pipe");
    writeFile(tree / "obj" / "stale.tob", "not for users");
    writeFile(root / "help" / "Pluvarine.htm", "<html>help</html>");
    TectaroOptions options;
    options.programFolder = program.string();
    options.workFolderTree = tree.string();
    options.helpFolder = (root / "help").string();
    TectaroHost host(options);
    EXPECT_FALSE(fs::exists(program / "Standard")) << "laid out when the macro connects";
    EXPECT_EQ(host.createConnection()->GetProgramFolder(), program.string() + "/");
    for (const char* macro : {"Standard/Macros/Pluvarine", "Standard/Makros/Pluvarine"}) {
        EXPECT_EQ(readFile(program / macro / part), "pipe") << macro;
        EXPECT_TRUE(fs::is_directory(program / macro / "obj"));
        EXPECT_FALSE(fs::exists(program / macro / "obj" / "stale.tob")) << "obj/ is the macro's";
    }
    EXPECT_EQ(readFile(program / "Tectaro.chm" / "Pluvarine.htm"), "<html>help</html>");

    const fs::path work = program / "Standard/Macros/Pluvarine";
    writeFile(work / "obj" / "Data.ini", "[SEKTION]\r\nEINTRAG= 1\r\n");
    writeFile(tree / part, "pipe v2"); // a newer part catalogue
    fs::last_write_time(tree / part, fs::last_write_time(work / part) + std::chrono::seconds(5));
    ASSERT_TRUE(ProgramFolder::seed(program.string(), tree.string(), {}));
    EXPECT_EQ(readFile(work / "obj" / "Data.ini"), "[SEKTION]\r\nEINTRAG= 1\r\n");
    EXPECT_EQ(readFile(work / part), "pipe v2");
    std::string error;
    EXPECT_FALSE(ProgramFolder::seed(program.string(), (tree / "nope").string(), {}, &error));
    EXPECT_NE(error.find("nope"), std::string::npos);
}
