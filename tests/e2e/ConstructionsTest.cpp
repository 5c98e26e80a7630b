// Each construction designed on its side of the sample house and inserted into the host.

#include "ScriptedSession.h"

#include <algorithm>

namespace pluvarine::e2e {
namespace {

// The four sides of the sample house: where to pick, the overhang there, the wall face.
struct Side {
    const char* name;
    double x;
    double y;
    double overhang; // mm
    int axis;        // the plan axis across the wall: 0 = x, 1 = y
    double face;     // the exterior face's coordinate on that axis
    double outward;  // +1 or -1: the outside's direction on that axis
};

constexpr Side kSouth{"south", 5, -0.1, 0, 1, 0, -1};
constexpr Side kEast{"east", 10.1, 4, 150, 0, 10, 1};
constexpr Side kNorth{"north", 5, 8.1, 300, 1, 8, 1};
constexpr Side kWest{"west", -0.1, 4, 600, 0, 0, -1};

// The rebuild's constructions as the state reports them.
enum Construction { None = 0, Continuous = 1, Bend42 = 2, Bend72 = 3, Kink42 = 4, Kink72 = 5 };

// An inserted downpipe stands outside its wall, held by the clamps whose brackets reach into
// the wall: across the wall its box begins inside the wall (not through it) and reaches out.
void expectOnWall(const Json& element, const Side& side) {
    const auto axis = static_cast<std::size_t>(side.axis);
    const double a = (element["worldMin"][axis].get<double>() - side.face) * side.outward;
    const double b = (element["worldMax"][axis].get<double>() - side.face) * side.outward;
    const double inner = std::min(a, b);
    const double outer = std::max(a, b);
    EXPECT_LT(inner, 0) << side.name << ": " << element.dump();
    EXPECT_GT(inner, -0.15) << side.name << ": " << element.dump(); // the wall is 0.3 m thick
    EXPECT_GT(outer, 0.15) << side.name;
    // Along the wall it stands where it was picked.
    const double along = element["plan"][1 - axis].get<double>();
    const double picked = side.axis == 0 ? side.y : side.x;
    EXPECT_NEAR(along, picked, 0.01) << side.name;
}

class E2eConstructionsTest : public ::testing::Test {
protected:
    void pick(const Side& side) {
        session.add({{"do", "macroButton"}});
        session.add({{"do", "click"}, {"x", side.x}, {"y", side.y}});
    }
    void insert() { session.add({{"do", "button"}, {"name", "Command4"}}); }

    ScriptedSession session;
};

TEST_F(E2eConstructionsTest, EachSideGetsItsConstructionAndItsDownpipe) {
    PLUVARINE_NEEDS_DISPLAY();
    // South: no overhang, a continuous pipe. The main window's pick button starts here.
    session.add({{"do", "button"}, {"name", "Command5"}});
    session.add({{"do", "click"}, {"x", kSouth.x}, {"y", kSouth.y}});
    session.snapshot("south");
    insert();
    // East: 150 mm asks the question; the bend construction gives kinks.
    pick(kEast);
    session.snapshot("eastAsked");
    session.add({{"do", "answer"}, {"choice", "bend"}});
    session.snapshot("east");
    insert();
    // North: 300 mm, bends of 42 degrees whatever is selected.
    pick(kNorth);
    session.add({{"do", "button"}, {"name", "O72"}});
    session.snapshot("north");
    insert();
    // West: 600 mm, bends of the chosen angle.
    pick(kWest);
    session.add({{"do", "button"}, {"name", "O72"}});
    session.snapshot("west");
    session.add({{"do", "screenshot"}, {"window", "frmMain"}, {"file", session.path("west.png")}});
    insert();
    session.snapshot("end");
    session.add({{"do", "screenshot"}, {"file", session.path("host.png")}});
    session.add({{"do", "exit"}});

    ASSERT_EQ(session.run(), 0) << session.read("stderr.txt");

    const struct {
        const char* state;
        const Side& side;
        int construction;
    } expected[] = {{"south", kSouth, Continuous},
                    {"eastAsked", kEast, None},
                    {"east", kEast, Kink42},
                    {"north", kNorth, Bend42},
                    {"west", kWest, Bend72}};
    for (const auto& e : expected) {
        const Json state = session.state(e.state);
        EXPECT_EQ(state["macro"]["construction"], e.construction) << e.state;
        EXPECT_DOUBLE_EQ(state["macro"]["roof"]["roofOverhang"].get<double>(), e.side.overhang)
            << e.state;
        EXPECT_EQ(state["macro"]["overhangText"], std::to_string(int(e.side.overhang))) << e.state;
        EXPECT_TRUE(state["macro"]["mainWindowVisible"]) << e.state;
    }

    const Json end = session.state("end");
    const Json& elements = end["host"]["elements"];
    ASSERT_EQ(elements.size(), 4U);
    const Side* sides[] = {&kSouth, &kEast, &kNorth, &kWest};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(elements[i]["name"], " " + std::to_string(i + 1) + ".tob");
        expectOnWall(elements[i], *sides[i]);
    }
    EXPECT_EQ(end["macro"]["objectCounter"], 5);
    EXPECT_FALSE(end["macro"]["mainWindowVisible"]);
    EXPECT_TRUE(end["host"]["button"]["enabled"]);
    EXPECT_TRUE(session.state("west")["macro"]["design"]["modelBuilt"]);
    EXPECT_TRUE(std::filesystem::file_size(session.path("west.png")) > 0);
}

TEST_F(E2eConstructionsTest, TheQuestionAnsweredContinuousGivesAStraightPipe) {
    PLUVARINE_NEEDS_DISPLAY();
    pick(kEast);
    session.add({{"do", "answer"}, {"choice", "continuous"}});
    session.snapshot("east");
    insert();
    session.snapshot("end");
    session.add({{"do", "exit"}});

    ASSERT_EQ(session.run(), 0) << session.read("stderr.txt");
    EXPECT_EQ(session.state("east")["macro"]["construction"], Continuous);
    const Json end = session.state("end");
    const Json& elements = end["host"]["elements"];
    ASSERT_EQ(elements.size(), 1U);
    expectOnWall(elements[0], kEast);
}

TEST_F(E2eConstructionsTest, AClickInsideTheHouseIsRejectedAndNothingIsBuiltThere) {
    PLUVARINE_NEEDS_DISPLAY();
    session.add({{"do", "button"}, {"name", "Command5"}});
    session.add({{"do", "click"}, {"x", 5}, {"y", 4}});
    session.snapshot("after");
    session.add({{"do", "exit"}});

    ASSERT_EQ(session.run(), 0) << session.read("stderr.txt");
    const Json after = session.state("after");
    ASSERT_EQ(after["messages"].size(), 1U);
    EXPECT_EQ(after["messages"][0], "Error! Please try again!");
    EXPECT_EQ(after["macro"]["click"], Json::parse("[0.0, 0.0]"));
}

} // namespace
} // namespace pluvarine::e2e
