#include "assembly/Construction.h"

#include "AssemblyTestSupport.h"
#include "assembly/Neu.h"
#include "assembly/PartPlacement.h"

#include <cmath>
#include <gmock/gmock.h>
#include <limits>
#include <map>
#include <numbers>
#include <ostream>

namespace pluvarine::test {
namespace {

using Files = std::vector<std::string>;
using V3 = std::array<float, 3>;
using ::testing::Property, ::testing::Throws;
using enum Construction;
const std::string kOutlet = "Reinhangestutzen_100_218.v3o", kPipe = "Fallrohr_100_500.v3o",
                  kStand = "Standrohr_125_500.v3o", kCap = "Abdeckkappe_100_125.v3o";
// The parts before the clamps, in placing order.
const std::map<Construction, Files> kParts{
    {Continuous, {kOutlet, kPipe, "dummy.v3o", kStand, kCap}},
    {Bend42, {"Bogen_100_42_L.v3o", "Bogen_100_42_R.v3o", kPipe, kPipe, kStand, kOutlet, kCap}},
    {Bend72, {"Bogen_100_72_L.v3o", "Bogen_100_72_R.v3o", kPipe, kPipe, kStand, kOutlet, kCap}},
    {Kink42, {kOutlet, kPipe, kPipe, "Knick_100_42.v3o", "Knick_100_42.v3o", kStand, kCap}},
    {Kink72, {kPipe, kPipe, "Knick_100_72.v3o", "Knick_100_72.v3o", kStand, kOutlet, kCap}}};

struct Example {
    const char* name;
    Construction construction;
    double H, D, hs, s;
    int clamps;
    // The inclined pipe's scale as the examples round it (unused for the straight pipe), the
    // vertical pipe's length, the top clamp's centre above the ground (the others follow s apart).
    double inclinedScale, verticalMm, topClampMm;
    // Where given, the ids the record keeps: outlet, pipe, offset pipe, the bends, standpipe,
    // cap, last clamp (each member's place in the placing order).
    std::vector<std::int32_t> ids = {};
    friend void PrintTo(const Example& c, std::ostream* os) { *os << c.name; }
};

class Examples : public ::testing::TestWithParam<Example> {};

TEST_P(Examples, PlaceTheDocumentedParts) {
    const Example& c = GetParam();
    Daten daten = makeDaten(c.H, c.D, c.hs, c.s);
    RecordingScene scene;
    buildConstruction(c.construction, daten, scene);
    const DesignRecord& d = daten.design;

    EXPECT_EQ(d.clampCount, c.clamps);
    if (!c.ids.empty()) {
        EXPECT_EQ((std::vector{d.outletId, d.pipeId, d.offsetPipeId, d.firstBendId, d.secondBendId,
                               d.standpipeId, d.capId, d.lastClampId}),
                  c.ids);
    }
    Files files = kParts.at(c.construction);
    files.insert(files.end(), std::max(c.clamps, 0), "Rohrschelle_100.v3o");
    EXPECT_EQ(partFiles(scene), files);
    expectPlacementProtocol(scene.calls(), true);
    EXPECT_NEAR((*scene.object(d.pipeId)->scale)[2] * 500, c.verticalMm, 0.01);
    if (c.construction != Continuous) {
        EXPECT_NEAR((*scene.object(d.offsetPipeId)->scale)[2], c.inclinedScale, 2e-6);
        // The outlet's axis lies D - 50 from the wall.
        EXPECT_NEAR((*scene.object(d.outletId)->position)[0], -(c.D - 50) / 1000, 1e-7);
    }
    for (int i = 0; i < c.clamps; ++i) {
        const SceneObject& clamp =
            scene.objects()[kParts.at(c.construction).size() + static_cast<std::size_t>(i)];
        EXPECT_NEAR(((*clamp.position)[2] + c.H / 2000) * 1000, c.topClampMm - i * c.s, 0.006) << i;
        EXPECT_EQ(clamp.scale, std::nullopt);
    }
}

constexpr double kNoClamp = 0;
// clang-format off
const Example kExamples[]{
    {"Ordinary", Continuous, 3000, 300, 300, 1800, 2, 0, 2813.5, 2545.8, {1, 2, 0, 0, 0, 4, 5, 7}},
    // x = 1 exactly: the tie goes to the even 2, the lowest clamp on the standpipe
    {"TieOddWhole", Continuous, 2554.2, 300, 300, 1800, 2, 0, 2367.7, 2100},
    // x = 2 exactly: 2.5 rounds to 2, not 3
    {"TieEvenWhole", Continuous, 4354.2, 300, 300, 1800, 2, 0, 4167.7, 3900},
    {"ZeroCount", Continuous, 754.2, 300, 300, 1800, 0, 0, 567.7, kNoClamp},
    {"StandpipeAboveTopClamp", Continuous, 3000, 300, 2600, 1800, 0, 0, 2813.5, kNoClamp},
    {"NegativeCount", Continuous, 3000, 300, 300, -400, -5, 0, 2813.5, kNoClamp},
    {"NarrowSpacing", Continuous, 3000, 300, 300, 300, 8, 0, 2813.5, 2545.8},
    {"Bend72Tall", Bend72, 5000, 600, 300, 1800, 3, 178.105 / 500, 4304.27, 4304.27,
     {6, 4, 3, 1, 2, 5, 7, 10}},
    // x = 1.0504: the second clamp ends up 95.73 below the top of the standpipe
    {"Bend72Short", Bend72, 2700, 600, 300, 1800, 2, 178.105 / 500, 2004.27, 2004.27},
    {"Bend42Tall", Bend42, 5000, 500, 300, 1800, 3, 284.604 / 500, 4052.44, 4052.44},
    // D below 2A - c_h: a negative inclined pipe, built as it comes
    {"Bend42NarrowOffset", Bend42, 5000, 240, 300, 1800, 3, -104.036 / 500, 4341.20, 4341.20},
    {"Kink72", Kink72, 3000, 300, 300, 1800, 2, 0.35308, 2672.75, 2491.25,
     {6, 1, 2, 3, 4, 5, 7, 9}},
    {"Kink42", Kink42, 3000, 300, 300, 1800, 2, 0.55019, 2563.96, 2363.66,
     {1, 2, 3, 4, 5, 6, 7, 9}},
    // hs above H - R - 454.2: no clamp, the view is still updated
    {"Kink72NoClamp", Kink72, 3000, 300, 2600, 1800, 0, 0.35308, 2672.75, kNoClamp},
    {"Kink42NoClamp", Kink42, 3000, 300, 2500, 1800, 0, 0.55019, 2563.96, kNoClamp},
    // W below a + 30: a negative inclined pipe, placed as computed
    {"Kink72SmallOffset", Kink72, 3000, 100, 300, 1800, 2, -0.067504, 2737.73, 2556.23}};
// clang-format on
INSTANTIATE_TEST_SUITE_P(Table, Examples, ::testing::ValuesIn(kExamples), byName);

// A few calls bit for bit: the numbers reach the viewer rounded to single precision once.
TEST(Construction, RepresentativeCallsCarryTheExactSingles) {
    const auto f = [](double v) { return static_cast<float>(v); };
    using V4 = std::array<float, 4>;
    Daten daten = makeDaten(3000, 300, 300, 1800);
    RecordingScene scene;
    buildConstruction(Continuous, daten, scene);
    const SceneObject* pipe = scene.object(daten.design.pipeId);
    EXPECT_EQ(pipe->scale, (V3{1, 1, f(2813.5 / 500)}));
    EXPECT_EQ(pipe->position, (V3{f(-0.05 - 0.3), 0, f(2813.5 / 2000 - 1.5)}));
    EXPECT_EQ(scene.objects()[2].scale, (V3{f(300.0 / 100000), 0.1F, 0.1F}));
    EXPECT_EQ(scene.objects()[5].position,
              (V3{f(0.1167 - 0.108 + 0.004 - 0.3), 0, f(2.5458 - 1.5)}));

    daten = makeDaten(5000, 600, 300, 1800);
    scene.LoadScene("/wf/main.v3o");
    buildConstruction(Bend72, daten, scene);
    const double L = (600 - 2 * 230.4 + 30) / 0.95;
    const SceneObject* inclined = scene.object(daten.design.offsetPipeId);
    EXPECT_EQ(inclined->scale, (V3{1, 1, f(L / 500)}));
    EXPECT_EQ(inclined->position,
              (V3{-0.3F, 0, f((5000 - 186.5 - 274.6 - (L * 0.309 - 95) / 2) / 1000 - 2.5)}));
    EXPECT_EQ(inclined->rotation, (V4{0, -1, 0, 72}));
    EXPECT_EQ(scene.object(daten.design.firstBendId)->scale, std::nullopt);

    daten = makeDaten(3000, 300, 300, 1800);
    scene.LoadScene("/wf/main.v3o");
    buildConstruction(Kink42, daten, scene);
    inclined = scene.object(daten.design.offsetPipeId);
    const double L42 = (300 - 106 - 30) / std::cos(48 * std::numbers::pi / 180) + 30;
    EXPECT_EQ(inclined->scale, (V3{1, 1, f(L42 / 500)}));
    EXPECT_EQ(inclined->rotation, (V4{0, -1, 0, 42}));
    const SceneObject* kink = scene.object(daten.design.secondBendId);
    EXPECT_EQ(kink->position, (V3{f(-0.3 + 0.053), 0, f(3 - 0.1865 - 0.0337 + 0.01 - 1.5)}));
    EXPECT_EQ(kink->rotation, (V4{0, -1, 0, 180}));
}

struct StopCase {
    const char* name;
    Construction construction;
    double H, D, s;
    int error;
    friend void PrintTo(const StopCase& c, std::ostream* os) { *os << c.name; }
};

constexpr int kDivision = RuntimeError::DivisionByZero, kOverflow = RuntimeError::Overflow;
class Stops : public ::testing::TestWithParam<StopCase> {};

// The clamp count fails: the parts before it stay; no clamp, no UpdateView; the record keeps
// the count and clamp id it had.
TEST_P(Stops, AtTheClampCount) {
    const StopCase& c = GetParam();
    Daten daten = makeDaten(c.H, c.D, 300, c.s);
    daten.design.clampCount = 7;
    daten.design.lastClampId = 99;
    RecordingScene scene;
    EXPECT_THAT([&] { buildConstruction(c.construction, daten, scene); },
                Throws<RuntimeError>(Property(&RuntimeError::number, c.error)));
    EXPECT_EQ(partFiles(scene), kParts.at(c.construction));
    expectPlacementProtocol(scene.calls(), false);
    EXPECT_EQ(daten.design.clampCount, 7);
    EXPECT_EQ(daten.design.lastClampId, 99);
}

const StopCase kStops[]{{"ContinuousSpacingZero", Continuous, 3000, 300, 0, kDivision},
                        // 0 / 0: the span is exactly zero as well
                        {"ContinuousZeroOverZero", Continuous, 754.2, 300, 0, kOverflow},
                        // 99245.8 / 3 clamps do not fit 16 bits
                        {"ContinuousBeyond16Bits", Continuous, 100000, 300, 3, kOverflow},
                        {"Bend42SpacingZero", Bend42, 5000, 600, 0, kDivision},
                        {"Bend72SpacingZero", Bend72, 5000, 600, 0, kDivision},
                        {"Bend72Beyond16Bits", Bend72, 100000, 600, 2, kOverflow},
                        {"Kink42SpacingZero", Kink42, 3000, 300, 0, kDivision},
                        {"Kink72SpacingZero", Kink72, 3000, 300, 0, kDivision},
                        {"Kink72Beyond16Bits", Kink72, 100000, 300, 2, kOverflow}};
INSTANTIATE_TEST_SUITE_P(Faults, Stops, ::testing::ValuesIn(kStops), byName);

TEST(PartPlacement, ClampCountRoundsHalfToEvenAfterAddingAHalf) {
    // span / spacing + 0.5, rounded: 1.5 -> 2, 2.5 -> 2, 3.5 -> 4, 0.5 -> 0
    const std::tuple<double, double, int> cases[] = {
        {1800, 1800, 2}, {3600, 1800, 2}, {5400, 1800, 4},   {0, 1800, 0},
        {1, 1800, 1},    {-1, 1800, 0},   {-2700, 1800, -1}, {32766.5, 1, 32767}};
    for (const auto& [span, spacing, count] : cases)
        EXPECT_EQ(clampCountFor(span, spacing), count) << span << " / " << spacing;
    EXPECT_THROW(clampCountFor(32767, 1), RuntimeError); // 32767.5 -> 32768
    EXPECT_THROW(clampCountFor(1800, 0), RuntimeError);
    EXPECT_THROW(clampCountFor(-32769.5, 1), RuntimeError);
}

TEST(PartPlacement, ANumberBeyondSinglePrecisionFailsItsCallAfterAddingThePart) {
    Daten daten = makeDaten(0, 0, 0, 0);
    RecordingScene scene;
    std::int32_t id = 0;
    EXPECT_THROW(
        placePart(daten, scene, "q.v3o", id, {{}, {std::numeric_limits<double>::max(), 0, 0}, {}}),
        RuntimeError);
    EXPECT_EQ(id, 1);
    EXPECT_EQ(std::get<std::string>(scene.calls()[0].args[0]), "/wf/res/q.v3o");
    EXPECT_EQ(scene.calls().back().op, "CurrentObject");
}

TEST(Neu, ClearsModelBuiltBeforeLoadingTheBaseScene) {
    Daten daten = makeDaten(0, 0, 0, 0);
    daten.design.modelBuilt = true;
    FaultyScene scene;
    scene.failOperation(SceneMember::LoadScene);
    EXPECT_THROW(Neu(daten, scene), RuntimeError);
    EXPECT_FALSE(daten.design.modelBuilt);
}

} // namespace
} // namespace pluvarine::test
