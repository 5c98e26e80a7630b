#include "platform/tectaro/ProgramFolder.h"

#include "TectaroTestSupport.h"

using namespace pluvarine;
namespace fs = std::filesystem;

TEST(ProgramFolder, TheHostLaysOutBothMacroFoldersAndHelpAndAReseedKeepsTheMacrosFiles) {
    QTemporaryDir scratch;
    const fs::path root = scratch.path().toStdString(), tree = root / "workfolder",
                   program = root / "user" / "tectaro";
    using test::readFile, test::writeFile;
    writeFile(tree / "res" / "Fallrohr_100_500.v3o", "pipe");
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
        EXPECT_EQ(readFile(program / macro / "res" / "Fallrohr_100_500.v3o"), "pipe") << macro;
        EXPECT_TRUE(fs::is_directory(program / macro / "obj"));
        EXPECT_FALSE(fs::exists(program / macro / "obj" / "stale.tob")) << "obj/ is the macro's";
    }
    EXPECT_EQ(readFile(program / "Tectaro.chm" / "Pluvarine.htm"), "<html>help</html>");

    const fs::path work = program / "Standard/Macros/Pluvarine";
    writeFile(work / "obj" / "Data.ini", "[SEKTION]\r\nEINTRAG= 1\r\n");
    writeFile(tree / "res" / "Fallrohr_100_500.v3o", "pipe v2"); // a newer part catalogue
    fs::last_write_time(tree / "res" / "Fallrohr_100_500.v3o",
                        fs::last_write_time(work / "res" / "Fallrohr_100_500.v3o") +
                            std::chrono::seconds(5));
    ASSERT_TRUE(ProgramFolder::seed(program.string(), tree.string(), {}));
    EXPECT_EQ(readFile(work / "obj" / "Data.ini"), "[SEKTION]\r\nEINTRAG= 1\r\n");
    EXPECT_EQ(readFile(work / "res" / "Fallrohr_100_500.v3o"), "pipe v2");
    std::string error;
    EXPECT_FALSE(ProgramFolder::seed(program.string(), (tree / "nope").string(), {}, &error));
    EXPECT_NE(error.find("nope"), std::string::npos);
}
