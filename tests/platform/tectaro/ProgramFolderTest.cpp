#include "platform/tectaro/ProgramFolder.h"

#include "TectaroTestSupport.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

using namespace pluvarine;
namespace fs = std::filesystem;

namespace {

void writeFile(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

std::string readFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

} // namespace

TEST(ProgramFolder, TheHostLaysOutBothMacroFoldersAndHelpAndAReseedKeepsTheMacrosFiles) {
    QTemporaryDir scratch;
    const fs::path root = scratch.path().toStdString(), tree = root / "workfolder",
                   help = root / "help", program = root / "user" / "tectaro";
    writeFile(tree / "main.v3o", "base scene");
    writeFile(tree / "res" / "Fallrohr_100_500.v3o", "pipe");
    writeFile(tree / "obj" / "stale.tob", "not for users");
    fs::create_directories(tree / "destination");
    writeFile(help / "Pluvarine.htm", "<html>help</html>");
    TectaroOptions options;
    options.programFolder = program.string();
    options.workFolderTree = tree.string();
    options.helpFolder = help.string();
    TectaroHost host(options);
    EXPECT_FALSE(fs::exists(program / "Standard")) << "laid out when the macro connects";
    EXPECT_EQ(host.createConnection()->GetProgramFolder(), program.string() + "/");
    for (const char* macro : {"Standard/Macros/Pluvarine", "Standard/Makros/Pluvarine"}) {
        const fs::path work = program / macro;
        EXPECT_EQ(readFile(work / "main.v3o"), "base scene") << macro;
        EXPECT_EQ(readFile(work / "res" / "Fallrohr_100_500.v3o"), "pipe");
        EXPECT_TRUE(fs::is_directory(work / "destination"));
        EXPECT_TRUE(fs::is_directory(work / "obj"));
        EXPECT_FALSE(fs::exists(work / "obj" / "stale.tob")) << "obj/ holds the macro's files";
    }
    EXPECT_EQ(readFile(program / "Tectaro.chm" / "Pluvarine.htm"), "<html>help</html>");

    const fs::path work = program / "Standard/Macros/Pluvarine";
    writeFile(work / "obj" / "Data.ini", "[SEKTION]\r\nEINTRAG= 1\r\n");
    writeFile(tree / "res" / "Fallrohr_100_500.v3o", "pipe v2"); // a newer part catalogue
    fs::last_write_time(tree / "res" / "Fallrohr_100_500.v3o",
                        fs::last_write_time(work / "res" / "Fallrohr_100_500.v3o") +
                            std::chrono::seconds(5));
    ASSERT_TRUE(ProgramFolder::seed(program.string(), tree.string(), help.string()));
    EXPECT_EQ(readFile(work / "obj" / "Data.ini"), "[SEKTION]\r\nEINTRAG= 1\r\n");
    EXPECT_EQ(readFile(work / "res" / "Fallrohr_100_500.v3o"), "pipe v2");

    std::string error;
    EXPECT_FALSE(ProgramFolder::seed(program.string(), (tree / "nope").string(), {}, &error));
    EXPECT_NE(error.find("nope"), std::string::npos);
    EXPECT_TRUE(ProgramFolder::seed(program.string(), {}, {}, &error)) << "nothing to lay out";
    EXPECT_EQ(ProgramFolder::defaultPath().back(), '/');
}
