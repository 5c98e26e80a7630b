#include "AssemblyTestSupport.h"
#include "assembly/Neu.h"
#include "assembly/PartPlacement.h"

#include <limits>

namespace pluvarine::test {
namespace {

TEST(PartPlacement, ClampCountRoundsHalfToEvenAfterAddingAHalf) {
    struct Case {
        double span, spacing;
        int count;
    };
    for (const Case& c : std::vector<Case>{{1800, 1800, 2}, // 1.5 -> 2
                                           {3600, 1800, 2}, // 2.5 -> 2
                                           {5400, 1800, 4}, // 3.5 -> 4
                                           {0, 1800, 0},    // 0.5 -> 0
                                           {1, 1800, 1},
                                           {-1, 1800, 0},
                                           {-2700, 1800, -1},
                                           {32766.5, 1, 32767}}) {
        EXPECT_EQ(clampCountFor(c.span, c.spacing), c.count) << c.span << " / " << c.spacing;
    }
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
    RecordingScene scene;
    scene.failOperation(SceneMember::LoadScene);
    EXPECT_THROW(Neu(daten, scene), RuntimeError);
    EXPECT_FALSE(daten.design.modelBuilt);
}

} // namespace
} // namespace pluvarine::test
