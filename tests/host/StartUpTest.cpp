// Start-up of the macro: the load handler's order, the connection, the version verdict and
// the toolbar button.

#include "MacroFixture.h"

#include <tuple>

namespace pluvarine::test {
namespace {

using StartUpTest = MacroFixture;

TEST_F(StartUpTest, RunsTheLoadStepsInOrderAgainstACompatibleHost) {
    DesignRecord& d = daten.design;
    d.modelBuilt = d.bendPartsBuilt = d.constructionAnswered = d.bendChosen = true;
    daten.roof = RoofData{5, 6, 7, 8, 9, 10, 11, 0, 0};

    macro->Form_Load();

    EXPECT_THAT(log.entries,
                ElementsAre("ApplyLanguage()", "createConnection()",
                            "ConnectMacro(4711, '', " + std::string(Macro::MacroGuid) + ")",
                            "GetVersionText()",
                            "AddMacroButton(30x30, 16974340, " + LoadText(5005) + ", 4733)",
                            "SetMacroButtonState(7, 1, 0, true, true)", "GetProgramFolder()",
                            "LoadScene(" + work.string() + "/main.v3o)", "fillMaterialList()",
                            "setOverhangText(0)"));
    EXPECT_TRUE(macro->hostCompatible() && !macro->skipVersionCheck() && !ended);
    EXPECT_EQ(host->sink, macro.get());
    EXPECT_EQ(host->buttonPicture.image.format(), QImage::Format_ARGB32_Premultiplied); // converted
    EXPECT_EQ(host->buttonPicture.image.pixelColor(15, 15), QColor(Qt::blue));          // Bild
    EXPECT_EQ(daten.workFolder, work.string());
    EXPECT_EQ(daten.oldObjectFile, objFile("fallrohr.tob"));
    EXPECT_FALSE(d.bendPartsBuilt || d.bendChosen || d.constructionAnswered || d.modelBuilt);
    EXPECT_EQ(roof(), std::make_tuple(0.0, 0.0, 0.0, 0.0, 0.0, 0.0F, 0.0F));
}

// The start-up paths that end the program with one message before the work folder is resolved;
// message 5000 comes after the version verdict, so after the button was created.
TEST_F(StartUpTest, EndingPathsShowOneMessageAndEnd) {
    // Russian system, the failing operation, the one returning nothing, the version text, message.
    const std::tuple<bool, const char*, const char*, const char*, int> table[] = {
        {false, "createConnection", "", "", 5001},
        {false, "", "ConnectMacro", "", 5001},
        {false, "ConnectMacro", "", "", 5001},
        {true, "", "ConnectMacro", "", 5001},
        {false, "", "", "Tectaro +2004", 5000},
        {false, "", "", "Tectaro 2010", 5000},
        {false, "GetVersionText", "", "Tectaro +2010", 5000}};
    for (const auto& [russian, failing, empty, version, message] : table) {
        SCOPED_TRACE(std::string(failing) + "|" + empty + "|" + version + (russian ? "|ru" : ""));
        makeMacro();
        russianSystem = russian;
        host->versionText = version;
        log.failing = {failing};
        log.empty = {empty};
        macro->Form_Load();
        EXPECT_THAT(log.only({"message", "criticalMessage"}),
                    ElementsAre("message(" + LoadText(message) + ")"));
        const std::vector<std::string> names = log.only(); // the message, then the end
        EXPECT_THAT(std::vector(names.end() - 2, names.end()),
                    ElementsAre("message", "endProgram"));
        for (const char* op : {"GetVersionText", "AddMacroButton", "SetMacroButtonState"}) {
            EXPECT_EQ(log.contains(op), message == 5000) << op;
        }
        EXPECT_FALSE(log.contains("GetProgramFolder") || log.contains("LoadScene"));
    }
}

TEST_F(StartUpTest, ARussianSystemSkipsTheVersionCheckAndAFailingStepIsSkipped) {
    russianSystem = true;
    host->versionText = "no version at all";
    log.failing = {"AddMacroButton", "GetProgramFolder"};
    macro->Form_Load();
    EXPECT_TRUE(macro->skipVersionCheck() && macro->hostCompatible());
    EXPECT_FALSE(log.contains("GetVersionText") || log.contains("SetMacroButtonState") || ended);
    EXPECT_EQ(macro->hostButtonId(), 0);
    EXPECT_TRUE(log.contains("LoadScene") && log.contains("fillMaterialList"));
    EXPECT_EQ(overhang, "0");
}

// The version test: the host family by name (case-sensitive, anywhere), the number read after
// "+" signs (-1: no verdict, the number cannot be read). A blank ends the number: 2010.5, and
// 200 (with the 5 appended it would read 2005); other characters are skipped; a later "+"
// appends to the same number text.
TEST(VersionCheckTest, Table) {
    const std::pair<const char*, int> table[] = {
        {"Tectaro Vorex +2010", 1},     {"Tectaro Vorex +2004", 0},  {"Tectaro Vorex 2010", -1},
        {"Tectaro +2005", 1},           {"Vorex +2005.9", 1},        {"Vorex +2004.99", 0},
        {"Tectaro +2010.5 build 7", 1}, {"Tectaro +200 build 5", 0}, {"Tectaro +20a10", 1},
        {"Tectaro +20(04)", 0},         {"Tectaro +20 and +10", 1},  {"Tectaro+2010", 1},
        {"MyVorexBuild +2011", 1},      {"tectaro +2010", 0},        {"VOREX +2010", 0},
        {"Archicad +2010", 0},          {"Archicad 2010", -1},       {"Tectaro +", -1},
        {"Tectaro + 2010", -1},         {"Tectaro +1.2.3", -1},      {"", -1}};
    for (const auto& [text, verdict] : table) {
        if (verdict < 0) {
            EXPECT_THROW(Macro::Versionspruefung(text), RuntimeError) << text;
        } else {
            EXPECT_EQ(Macro::Versionspruefung(text), verdict == 1) << text;
        }
    }
}

} // namespace
} // namespace pluvarine::test
