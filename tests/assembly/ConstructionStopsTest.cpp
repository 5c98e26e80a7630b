#include "AssemblyTestSupport.h"
#include "assembly/Construction.h"
#include "base/RuntimeError.h"

#include <gtest/gtest.h>

namespace pluvarine::test {
namespace {

const std::vector<std::string> continuousParts{"Reinhangestutzen_100_218.v3o",
                                               "Fallrohr_100_500.v3o", "dummy.v3o",
                                               "Standrohr_125_500.v3o", "Abdeckkappe_100_125.v3o"};
const std::vector<std::string> bend42Parts{"Bogen_100_42_L.v3o",     "Bogen_100_42_R.v3o",
                                           "Fallrohr_100_500.v3o",   "Fallrohr_100_500.v3o",
                                           "Standrohr_125_500.v3o",  "Reinhangestutzen_100_218.v3o",
                                           "Abdeckkappe_100_125.v3o"};
const std::vector<std::string> bend72Parts{"Bogen_100_72_L.v3o",     "Bogen_100_72_R.v3o",
                                           "Fallrohr_100_500.v3o",   "Fallrohr_100_500.v3o",
                                           "Standrohr_125_500.v3o",  "Reinhangestutzen_100_218.v3o",
                                           "Abdeckkappe_100_125.v3o"};
const std::vector<std::string> kink72Parts{"Fallrohr_100_500.v3o",   "Fallrohr_100_500.v3o",
                                           "Knick_100_72.v3o",       "Knick_100_72.v3o",
                                           "Standrohr_125_500.v3o",  "Reinhangestutzen_100_218.v3o",
                                           "Abdeckkappe_100_125.v3o"};
const std::vector<std::string> kink42Parts{"Reinhangestutzen_100_218.v3o",
                                           "Fallrohr_100_500.v3o",
                                           "Fallrohr_100_500.v3o",
                                           "Knick_100_42.v3o",
                                           "Knick_100_42.v3o",
                                           "Standrohr_125_500.v3o",
                                           "Abdeckkappe_100_125.v3o"};

struct StopCase {
    const char* name;
    Construction construction;
    double H, D, s;
    int error;
    const std::vector<std::string>* parts; // what stays in the scene
};

class ConstructionStops : public ::testing::TestWithParam<StopCase> {};

// The clamp count fails: the parts before it stay, no clamp, no UpdateView, and the record's
// count keeps the value it had.
TEST_P(ConstructionStops, AtTheClampCount) {
    const StopCase& c = GetParam();
    Daten daten = makeDaten(c.H, c.D, 300, c.s);
    daten.design.clampCount = 7;
    daten.design.lastClampId = 99;
    RecordingScene scene;
    try {
        buildConstruction(c.construction, daten, scene);
        FAIL() << "the construction went on";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), c.error);
    }
    EXPECT_EQ(partFiles(scene), *c.parts);
    expectPlacementProtocol(scene.calls(), false);
    EXPECT_EQ(scene.viewUpdates(), 0);
    EXPECT_EQ(daten.design.clampCount, 7);
    EXPECT_EQ(daten.design.lastClampId, 99);
}

INSTANTIATE_TEST_SUITE_P(
    Faults, ConstructionStops,
    ::testing::Values(StopCase{"ContinuousSpacingZero", Construction::Continuous, 3000, 300, 0,
                               RuntimeError::DivisionByZero, &continuousParts},
                      // 0 / 0: the span is exactly zero as well
                      StopCase{"ContinuousZeroOverZero", Construction::Continuous, 754.2, 300, 0,
                               RuntimeError::Overflow, &continuousParts},
                      // 99245.8 / 3 clamps do not fit 16 bits
                      StopCase{"ContinuousBeyond16Bits", Construction::Continuous, 100000, 300, 3,
                               RuntimeError::Overflow, &continuousParts},
                      StopCase{"Bend42SpacingZero", Construction::Bend42, 5000, 600, 0,
                               RuntimeError::DivisionByZero, &bend42Parts},
                      StopCase{"Bend72SpacingZero", Construction::Bend72, 5000, 600, 0,
                               RuntimeError::DivisionByZero, &bend72Parts},
                      StopCase{"Bend72Beyond16Bits", Construction::Bend72, 100000, 600, 2,
                               RuntimeError::Overflow, &bend72Parts},
                      StopCase{"Kink42SpacingZero", Construction::Kink42, 3000, 300, 0,
                               RuntimeError::DivisionByZero, &kink42Parts},
                      StopCase{"Kink72SpacingZero", Construction::Kink72, 3000, 300, 0,
                               RuntimeError::DivisionByZero, &kink72Parts},
                      StopCase{"Kink72Beyond16Bits", Construction::Kink72, 100000, 300, 2,
                               RuntimeError::Overflow, &kink72Parts}),
    CaseName());

} // namespace
} // namespace pluvarine::test
