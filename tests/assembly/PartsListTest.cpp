#include "assembly/PartsList.h"

#include "AssemblyTestSupport.h"
#include "assembly/Construction.h"

#include <gmock/gmock.h>
#include <ostream>
#include <tuple>

namespace pluvarine::test {
namespace {

using enum Construction;

// One row as the examples give it: file, count, cut length (0: not cut).
using Line = std::tuple<std::string, int, std::int32_t>;

std::vector<Line> lines(const PartsList& list) {
    std::vector<Line> result;
    for (const PartsListRow& row : list.rows)
        result.push_back({row.file, row.count, row.cutLength.value_or(0)});
    return result;
}

struct Case {
    const char* name;
    Construction construction;
    double H, D, hs, s;
    std::vector<Line> rows;
    friend void PrintTo(const Case& c, std::ostream* os) { *os << c.name; }
};

const std::string kOutlet = "Reinhangestutzen_100_218.v3o", kPipe = "Fallrohr_100_500.v3o",
                  kStand = "Standrohr_125_500.v3o", kCap = "Abdeckkappe_100_125.v3o",
                  kClamp = "Rohrschelle_100.v3o";

// The constructions' documented inputs: the cut lengths are the stretched lengths rounded
// half to even (2813.5 gives 2814), the inclined 42-degree kink pipe 30 mm longer than L.
// clang-format off
const Case kCases[]{
    {"ContinuousOrdinary", Continuous, 3000, 300, 300, 1800,
     {{kOutlet, 1, 0}, {kPipe, 1, 2814}, {kStand, 1, 300}, {kCap, 1, 0}, {kClamp, 2, 0}}},
    {"ContinuousTieOddWhole", Continuous, 2554.2, 300, 300, 1800,
     {{kOutlet, 1, 0}, {kPipe, 1, 2368}, {kStand, 1, 300}, {kCap, 1, 0}, {kClamp, 2, 0}}},
    {"ContinuousNoClamp", Continuous, 754.2, 300, 300, 1800,
     {{kOutlet, 1, 0}, {kPipe, 1, 568}, {kStand, 1, 300}, {kCap, 1, 0}}},
    {"ContinuousSpacingZero", Continuous, 3000, 300, 300, 0,
     {{kOutlet, 1, 0}, {kPipe, 1, 2814}, {kStand, 1, 300}, {kCap, 1, 0}}},
    {"Bend72Tall", Bend72, 5000, 600, 300, 1800,
     {{"Bogen_100_72_L.v3o", 1, 0}, {"Bogen_100_72_R.v3o", 1, 0}, {kPipe, 1, 178},
      {kPipe, 1, 4304}, {kStand, 1, 300}, {kOutlet, 1, 0}, {kCap, 1, 0}, {kClamp, 3, 0}}},
    {"Bend42SpacingZero", Bend42, 5000, 500, 300, 0,
     {{"Bogen_100_42_L.v3o", 1, 0}, {"Bogen_100_42_R.v3o", 1, 0}, {kPipe, 1, 285},
      {kPipe, 1, 4052}, {kStand, 1, 300}, {kOutlet, 1, 0}, {kCap, 1, 0}}},
    {"Bend42NarrowOffset", Bend42, 5000, 240, 300, 1800,
     {{"Bogen_100_42_L.v3o", 1, 0}, {"Bogen_100_42_R.v3o", 1, 0}, {kPipe, 1, -104},
      {kPipe, 1, 4341}, {kStand, 1, 300}, {kOutlet, 1, 0}, {kCap, 1, 0}, {kClamp, 3, 0}}},
    {"Kink72", Kink72, 3000, 300, 300, 1800,
     {{kPipe, 1, 2673}, {kPipe, 1, 177}, {"Knick_100_72.v3o", 2, 0}, {kStand, 1, 300},
      {kOutlet, 1, 0}, {kCap, 1, 0}, {kClamp, 2, 0}}},
    {"Kink42", Kink42, 3000, 300, 300, 1800,
     {{kOutlet, 1, 0}, {kPipe, 1, 2564}, {kPipe, 1, 275}, {"Knick_100_42.v3o", 2, 0},
      {kStand, 1, 300}, {kCap, 1, 0}, {kClamp, 2, 0}}},
    {"Kink72SmallOffset", Kink72, 3000, 100, 2600, 1800,
     {{kPipe, 1, 2738}, {kPipe, 1, -34}, {"Knick_100_72.v3o", 2, 0}, {kStand, 1, 2600},
      {kOutlet, 1, 0}, {kCap, 1, 0}}}};
// clang-format on

class Lists : public ::testing::TestWithParam<Case> {};

TEST_P(Lists, ListWhatTheConstructionPlaced) {
    const Case& c = GetParam();
    Daten daten = makeDaten(c.H, c.D, c.hs, c.s);
    RecordingScene scene;
    if (c.s == 0) // spacing zero fails the clamp step after every part is placed
        EXPECT_THROW(buildConstruction(c.construction, daten, scene), RuntimeError);
    else
        buildConstruction(c.construction, daten, scene);
    const PartsList list = PartsList::of(scene.objects());
    EXPECT_EQ(lines(list), c.rows);
    for (const PartsListRow& row : list.rows) {
        EXPECT_EQ(row.material, "grey"); // no material applied: the parts' own look
        EXPECT_EQ(row.warning, row.cutLength && *row.cutLength <= 0);
    }
    EXPECT_EQ(PartsList::fromExtras(list.toExtras()), list);
}

INSTANTIATE_TEST_SUITE_P(Constructions, Lists, ::testing::ValuesIn(kCases), byName);

TEST(PartsList, AStoppedConstructionListsWhatItPlacedAtTheSizeItReached) {
    Daten daten = makeDaten(3000, 300, 300, 1800);
    FaultyScene scene;
    scene.failCall(8); // the pipe's ScaleObject: the pipe stays a 500 mm piece
    EXPECT_THROW(buildConstruction(Continuous, daten, scene), RuntimeError);
    EXPECT_EQ(lines(PartsList::of(scene.objects())),
              (std::vector<Line>{{kOutlet, 1, 0}, {kPipe, 1, 500}}));
}

// The add-on reads the list by these keys, rows counted from 1.
TEST(PartsList, ExtrasKeys) {
    Daten daten = makeDaten(5000, 600, 300, 1800);
    RecordingScene scene;
    buildConstruction(Bend72, daten, scene);
    const FlatExtras extras = PartsList::of(scene.objects()).toExtras();
    EXPECT_EQ(extras.front(), (std::pair<std::string, FlatValue>{"pluvarine.partsList.count", 8}));
    EXPECT_THAT(extras, ::testing::Contains(std::pair<std::string, FlatValue>{
                            "pluvarine.partsList.4.cutLength", 4304}));
    EXPECT_THAT(extras, ::testing::Contains(std::pair<std::string, FlatValue>{
                            "pluvarine.partsList.8.article", std::string("clamp")}));
}

TEST(PartsList, ExtrasWithoutAListOrWithAWrongCountReadSafely) {
    EXPECT_TRUE(PartsList::fromExtras({}).rows.empty());
    EXPECT_TRUE(
        PartsList::fromExtras({{"pluvarine.partsList.count", std::string("7")}}).rows.empty());
    EXPECT_EQ(PartsList::fromExtras({{"pluvarine.partsList.count", 2147483647}}).rows.size(), 1U);
}

} // namespace
} // namespace pluvarine::test
