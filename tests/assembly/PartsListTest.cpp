#include "assembly/PartsList.h"

#include "AssemblyTestSupport.h"
#include "assembly/Construction.h"
#include "assembly/MaterialChoice.h"

#include <gmock/gmock.h>
#include <map>
#include <ostream>

namespace pluvarine::test {
namespace {

using enum Construction;

// One row as the examples give it: file, count, cut length (0: not cut).
struct Line {
    std::string file;
    int count;
    std::int32_t cut;
    bool operator==(const Line&) const = default;
    friend void PrintTo(const Line& l, std::ostream* os) {
        *os << l.file << " x" << l.count << " " << l.cut;
    }
};

std::vector<Line> lines(const PartsList& list) {
    std::vector<Line> result;
    for (const PartsListRow& row : list.rows) {
        result.push_back({row.file, row.count, row.cutLength.value_or(0)});
    }
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
    EXPECT_EQ(c.s == 0, [&] {
        try {
            buildConstruction(c.construction, daten, scene);
        } catch (const RuntimeError&) {
            return true;
        }
        return false;
    }());
    const PartsList list = PartsList::of(scene.objects());
    EXPECT_EQ(lines(list), c.rows);

    // Article for article what AddPart received, the dummy left out.
    std::map<std::string, int> added, listed;
    for (const SceneCall& call : scene.calls())
        if (call.op == "AddPart" && !std::get<std::string>(call.args[0]).ends_with("dummy.v3o"))
            ++added[std::get<std::string>(call.args[0])
                        .substr(std::string(kWorkFolder).size() + 5)];
    for (const PartsListRow& row : list.rows) {
        listed[row.file] += row.count;
        EXPECT_EQ(row.material, "grey"); // no material applied: the parts' own look
        EXPECT_EQ(row.warning, row.cutLength && *row.cutLength <= 0);
    }
    EXPECT_EQ(listed, added);
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

TEST(PartsList, ArticlesCarryTheirSizesTextsAndMaterial) {
    Daten daten = makeDaten(5000, 600, 300, 1800);
    RecordingScene scene;
    buildConstruction(Bend72, daten, scene);
    daten.design.modelBuilt = daten.design.bendPartsBuilt = true;
    chooseMaterial(daten, scene, 2);
    const PartsList list = PartsList::of(scene.objects());
    ASSERT_EQ(list.rows.size(), 8U);
    EXPECT_EQ(list.rows[0], (PartsListRow{"bendLeft", 9025, "Bogen_100_72_L.v3o", 100, 72, 0,
                                          "zinc", 9032, 1, std::nullopt, std::nullopt, false}));
    EXPECT_EQ(list.rows[3],
              (PartsListRow{"pipe", 9021, kPipe, 100, 0, 500, "zinc", 9032, 1, 4304, 4304, false}));
    EXPECT_EQ(list.rows[7].totalLength, std::nullopt);

    const FlatExtras extras = list.toExtras();
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

TEST(PartsList, TotalsSumPerArticleAndMaterial) {
    const auto row = [](const char* file, const char* material, int count,
                        std::optional<std::int32_t> cut, bool warning = false) {
        PartsListRow r{"", 0, file, 0, 0, 0, material, 0, count, cut, std::nullopt, warning};
        if (cut)
            r.totalLength = std::int64_t{*cut} * count;
        return r;
    };
    const std::vector<PartsList> lists{
        {{row("P", "grey", 1, 2814), row("C", "grey", 2, {})}},
        {{row("P", "grey", 1, 4304), row("P", "grey", 1, 178), row("C", "grey", 3, {})}},
        {{row("P", "zinc", 1, -104, true), row("P", "zinc", 1, 4341), row("C", "zinc", 3, {})}},
        {}};
    EXPECT_EQ(PartsList::totals(lists),
              (std::vector<PartsListRow>{
                  {"", 0, "P", 0, 0, 0, "grey", 0, 3, std::nullopt, 7296, false},
                  {"", 0, "C", 0, 0, 0, "grey", 0, 5, std::nullopt, std::nullopt, false},
                  {"", 0, "P", 0, 0, 0, "zinc", 0, 2, std::nullopt, 4237, true},
                  {"", 0, "C", 0, 0, 0, "zinc", 0, 3, std::nullopt, std::nullopt, false}}));
}

} // namespace
} // namespace pluvarine::test
