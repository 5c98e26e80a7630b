// Each construction designed on its side of the sample house and inserted into the host; the
// downpipes then travel with the host project: saved, closed, opened again.

#include "ScriptedSession.h"

#include <map>
#include <sstream>

namespace pluvarine::e2e {
namespace {

using namespace std::string_literals;

// The four sides of the sample house: where to pick and the plan axis along the wall (0 = x).
struct Side {
    const char* name;
    double x, y;
    std::size_t along;
};
constexpr Side kSides[] = {
    {"south", 5, -0.1, 0}, {"east", 10.1, 4, 1}, {"north", 5, 8.1, 0}, {"west", -0.1, 4, 1}};
constexpr const Side &kSouth = kSides[0], &kEast = kSides[1];

// The rebuild's constructions as the state reports them.
enum Construction { None = 0, Continuous = 1, Bend42 = 2, Bend72 = 3, Kink42 = 4, Kink72 = 5 };

TEST_F(E2e, EachSideGetsItsConstructionAndItsDownpipeWhichTravelsWithTheProject) {
    // A click inside the house is rejected; the main window's pick button starts again.
    button("Command5");
    click(5, 4);
    snapshot("inside");
    button("Command5");
    click(kSouth.x, kSouth.y);
    snapshot("south"); // no overhang: a continuous pipe
    button("Command4");
    // East, 150 mm, asks the question: answered "continuous", then picked again, "bend".
    add({{"do", "macroButton"}});
    click(kEast.x, kEast.y);
    snapshot("eastAsked");
    add({{"do", "answer"}, {"choice", "continuous"}});
    snapshot("eastContinuous");
    button("Command5");
    click(kEast.x, kEast.y);
    add({{"do", "answer"}, {"choice", "bend"}});
    snapshot("east");
    button("Command4");
    // North, 300 mm: bends of 42 degrees whatever is selected; west, 600 mm: the chosen angle.
    for (const Side& side : {kSides[2], kSides[3]}) {
        add({{"do", "macroButton"}});
        click(side.x, side.y);
        button("O72");
        snapshot(side.name);
        add({{"do", "screenshot"}, {"window", "frmMain"}, {"file", path(side.name + ".png"s)}});
        button("Command4");
    }
    add({{"do", "saveProject"}, {"path", path("house.tproj")}});
    snapshot("saved");
    add({{"do", "closeProject"}});
    snapshot("closed");
    add({{"do", "openProject"}, {"path", path("house.tproj")}});
    snapshot("opened");
    add({{"do", "screenshot"}, {"file", path("host.png")}});
    add({{"do", "partsList"}, {"file", path("list.csv")}});
    ASSERT_EQ(run(), 0) << read("stderr.txt");

    EXPECT_EQ(state("inside")["messages"], Json::parse(R"(["Error! Please try again!"])"));
    EXPECT_EQ(state("inside")["macro"]["click"], Json::parse("[0.0, 0.0]"));
    // The state, the overhang read there (mm), the construction.
    const std::tuple<const char*, double, int> expected[] = {
        {"south", 0, Continuous}, {"eastAsked", 150, None}, {"eastContinuous", 150, Continuous},
        {"east", 150, Kink42},    {"north", 300, Bend42},   {"west", 600, Bend72}};
    for (const auto& [name, overhang, construction] : expected) {
        const Json macro = state(name)["macro"];
        EXPECT_EQ(macro["construction"], construction) << name;
        EXPECT_DOUBLE_EQ(macro["roof"]["roofOverhang"].get<double>(), overhang) << name;
        EXPECT_TRUE(macro["mainWindowVisible"]) << name;
    }

    const Json saved = state("saved");
    const Json& elements = saved["host"]["elements"];
    ASSERT_EQ(elements.size(), 4U);
    // Each stands along its wall where it was picked (how it stands on the wall:
    // PlacementTest).
    for (std::size_t i = 0; i < 4; ++i) {
        const Side& side = kSides[i];
        EXPECT_EQ(elements[i]["name"], " " + std::to_string(i + 1) + ".tob");
        EXPECT_NEAR(elements[i]["plan"][side.along].get<double>(),
                    side.along == 0 ? side.x : side.y, 0.01)
            << side.name;
    }
    EXPECT_FALSE(saved["macro"]["mainWindowVisible"]);
    EXPECT_TRUE(saved["host"]["button"]["enabled"]);
    EXPECT_TRUE(state("west")["macro"]["design"]["modelBuilt"]);
    EXPECT_GT(std::filesystem::file_size(path("west.png")), 0U);

    // Saved: the four object files and Data.ini, the data block announced. Closed: obj emptied,
    // the counter in memory kept, the button shown but disabled. Opened: obj restored byte for
    // byte, the counter the stored number (4) plus 1, the button on, the downpipes where they
    // were.
    ASSERT_EQ(saved["obj"].size(), 5U);
    EXPECT_EQ(saved["obj"][0]["name"], " 1.tob");
    EXPECT_EQ(saved["obj"][4]["name"], "Data.ini");
    EXPECT_EQ(saved["host"]["lastChunkCount"], 1);
    const Json closed = state("closed");
    EXPECT_TRUE(closed["obj"].empty());
    EXPECT_EQ(closed["macro"]["objectCounter"], 5);
    EXPECT_TRUE(closed["host"]["button"]["shown"]);
    EXPECT_FALSE(closed["host"]["button"]["enabled"]);
    const Json opened = state("opened");
    EXPECT_EQ(opened["obj"], saved["obj"]);
    EXPECT_EQ(opened["macro"]["objectCounter"], 5);
    EXPECT_TRUE(opened["host"]["button"]["enabled"]);
    EXPECT_EQ(opened["host"]["elements"], elements);

    // The parts list of the reopened project, read from the object files: per downpipe the rows
    // of its construction (south straight, east 42-degree kinks, north 42-degree bends, west
    // 72-degree bends), then the totals.
    std::istringstream csv(read("list.csv"));
    std::string line;
    std::map<std::string, int> rows;
    std::getline(csv, line);
    EXPECT_EQ(line.substr(0, 31), "Downpipe,Article,Catalogue file");
    while (std::getline(csv, line))
        ++rows[line.substr(0, line.find(','))];
    EXPECT_EQ(rows, (std::map<std::string, int>{
                        {"1.tob", 5}, {"2.tob", 7}, {"3.tob", 8}, {"4.tob", 8}, {"Total", 10}}));
}

} // namespace
} // namespace pluvarine::e2e
