#include "AssemblyTestSupport.h"
#include "assembly/Neu.h"
#include "assembly/PartPlacement.h"
#include "base/RuntimeError.h"

#include <gtest/gtest.h>
#include <limits>

namespace pluvarine::test {
namespace {

TEST(RecordingScene, IdsAreConsecutiveFromOneAndContinueAcrossLoadScene) {
    RecordingScene scene;
    EXPECT_EQ(scene.AddPart("a"), 1);
    EXPECT_EQ(scene.AddPart("b"), 2);
    scene.LoadScene("/wf/main.v3o");
    EXPECT_TRUE(scene.objects().empty());
    EXPECT_EQ(scene.AddPart("c"), 3);
    EXPECT_EQ(scene.objects().size(), 1U);
    EXPECT_EQ(scene.sceneFile(), "/wf/main.v3o");
    EXPECT_EQ(opNames(scene.callsSinceLoad()), (std::vector<std::string>{"LoadScene", "AddPart"}));
}

TEST(RecordingScene, KeepsEveryCallWithItsMemberArgumentsAndResult) {
    RecordingScene scene;
    const std::int32_t id = scene.AddPart("/wf/res/x.v3o");
    scene.CurrentObject(id);
    const float third = 0.1F;
    EXPECT_TRUE(scene.ScaleObject(1, 2, third));
    EXPECT_TRUE(scene.MoveObject(-0.05F, 0, 1.25F));
    EXPECT_TRUE(scene.RotateObject(0, -1, 0, 72));
    EXPECT_TRUE(scene.CommitObject(true));
    scene.UpdateView();
    EXPECT_TRUE(scene.ApplyMaterial(0, "/wf/mat/Zink.ini"));
    EXPECT_TRUE(scene.SaveScene("/wf/obj/1.tob", "1", ""));

    const auto& calls = scene.calls();
    ASSERT_EQ(calls.size(), 9U);
    const std::vector<std::pair<SceneMember, std::string>> identity{
        {SceneMember::AddPart, "AddPart"},           {SceneMember::CurrentObject, "CurrentObject"},
        {SceneMember::ScaleObject, "ScaleObject"},   {SceneMember::MoveObject, "MoveObject"},
        {SceneMember::RotateObject, "RotateObject"}, {SceneMember::CommitObject, "CommitObject"},
        {SceneMember::UpdateView, "UpdateView"},     {SceneMember::ApplyMaterial, "ApplyMaterial"},
        {SceneMember::SaveScene, "SaveScene"}};
    for (std::size_t i = 0; i < identity.size(); ++i) {
        EXPECT_EQ(calls[i].member, identity[i].first);
        EXPECT_EQ(calls[i].op, identity[i].second);
    }
    EXPECT_EQ(static_cast<int>(calls[0].member), 128);
    EXPECT_EQ(std::get<std::int32_t>(*calls[0].result), 1);
    EXPECT_EQ(calls[2].args, (std::vector<SceneValue>{1.0F, 2.0F, third}));
    EXPECT_EQ(calls[3].args, (std::vector<SceneValue>{-0.05F, 0.0F, 1.25F}));
    EXPECT_EQ(calls[4].args, (std::vector<SceneValue>{0.0F, -1.0F, 0.0F, 72.0F}));
    EXPECT_EQ(calls[7].args,
              (std::vector<SceneValue>{std::int32_t{0}, std::string("/wf/mat/Zink.ini")}));
    EXPECT_FALSE(calls[6].result.has_value());

    const SceneObject& object = scene.objects().front();
    EXPECT_EQ(object.scale, (std::array<float, 3>{1, 2, third}));
    EXPECT_EQ(object.position, (std::array<float, 3>{-0.05F, 0, 1.25F}));
    EXPECT_EQ(object.rotation, (std::array<float, 4>{0, -1, 0, 72}));
    EXPECT_EQ(object.material, "/wf/mat/Zink.ini");
    EXPECT_TRUE(object.committed);
    EXPECT_EQ(scene.viewUpdates(), 1);
}

TEST(RecordingScene, AnIdNoLongerInTheSceneIsSkippedNotAFailure) {
    RecordingScene scene;
    const std::int32_t old = scene.AddPart("a");
    scene.LoadScene("/wf/main.v3o");
    const std::int32_t present = scene.AddPart("b");
    scene.CurrentObject(present);
    scene.CurrentObject(old); // no target any more, not the previous one either
    EXPECT_FALSE(scene.ApplyMaterial(0, "/wf/mat/Alu.ini"));
    EXPECT_FALSE(scene.MoveObject(1, 1, 1));
    EXPECT_FALSE(scene.object(present)->material.has_value());
    EXPECT_FALSE(scene.object(present)->position.has_value());
    EXPECT_EQ(scene.currentObject(), std::nullopt);
    EXPECT_EQ(std::get<bool>(*scene.calls().back().result), false);
}

TEST(RecordingScene, FaultsThrowViewerErrorsAndAreRecorded) {
    RecordingScene scene;
    scene.failCall(2);
    scene.AddPart("a");
    try {
        scene.AddPart("b");
        FAIL() << "no fault";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(error.number(), RuntimeError::ViewerError);
    }
    EXPECT_TRUE(scene.calls()[1].failed);
    EXPECT_FALSE(scene.calls()[1].result.has_value());
    // A failed AddPart hands out no id.
    EXPECT_EQ(scene.AddPart("c"), 2);
    EXPECT_EQ(scene.objects().size(), 2U);

    scene.clearFaults();
    scene.failAddPartOf("Rohrschelle_100.v3o");
    EXPECT_THROW(scene.AddPart("/wf/res/Rohrschelle_100.v3o"), RuntimeError);
    EXPECT_NO_THROW(scene.AddPart("/wf/res/Rohrschelle_100.v3o.bak"));

    scene.failOperation(SceneMember::UpdateView);
    EXPECT_THROW(scene.UpdateView(), RuntimeError);
    EXPECT_EQ(scene.viewUpdates(), 0);
}

TEST(PartPlacement, ClampCountRoundsHalfToEvenAfterAddingAHalf) {
    struct Case {
        double span, spacing;
        int count;
    };
    for (const Case& c : std::vector<Case>{{1800, 1800, 2}, // x = 1: 1.5 -> 2
                                           {3600, 1800, 2}, // x = 2: 2.5 -> 2
                                           {5400, 1800, 4}, // x = 3: 3.5 -> 4
                                           {0, 1800, 0},    // x = 0: 0.5 -> 0
                                           {1, 1800, 1},
                                           {-1, 1800, 0},
                                           {-2700, 1800, -1}, // x = -1.5: -1.0
                                           {32766.5, 1, 32767}}) {
        EXPECT_EQ(clampCountFor(c.span, c.spacing), c.count) << c.span << " / " << c.spacing;
    }
    EXPECT_THROW(clampCountFor(32767, 1), RuntimeError); // 32767.5 -> 32768
    EXPECT_THROW(clampCountFor(1800, 0), RuntimeError);
    EXPECT_THROW(clampCountFor(-32769.5, 1), RuntimeError);
}

TEST(PartPlacement, RoundsEachNumberToSinglePrecisionAtItsCall) {
    Daten daten = makeDaten(0, 0, 0, 0);
    RecordingScene scene;
    std::int32_t id = 0;
    placePart(daten, scene, "p.v3o", id, {{{1, 1, 0.1}}, {1.0 / 3, 0, -2.0 / 3}, {{0, -1, 0, 42}}});
    EXPECT_EQ(id, 1);
    EXPECT_EQ(std::get<std::string>(scene.calls()[0].args[0]), "/wf/res/p.v3o");
    EXPECT_EQ(scene.calls()[3].args, (std::vector<SceneValue>{static_cast<float>(1.0 / 3), 0.0F,
                                                              static_cast<float>(-2.0 / 3)}));
    EXPECT_TRUE(daten.design.viewerOk);

    // Beyond single precision: the part stays added and current, the move fails.
    std::int32_t big = 0;
    EXPECT_THROW(
        placePart(daten, scene, "q.v3o", big, {{}, {std::numeric_limits<double>::max(), 0, 0}, {}}),
        RuntimeError);
    EXPECT_EQ(big, 2);
    EXPECT_EQ(scene.calls().back().op, "CurrentObject");
}

TEST(Neu, ClearsModelBuiltAndLoadsTheBaseScene) {
    Daten daten = makeDaten(0, 0, 0, 0);
    daten.design.modelBuilt = true;
    RecordingScene scene;
    scene.AddPart("a");
    Neu(daten, scene);
    EXPECT_FALSE(daten.design.modelBuilt);
    EXPECT_EQ(scene.sceneFile(), "/wf/main.v3o");
    EXPECT_TRUE(scene.objects().empty());
}

TEST(Neu, AFailingLoadEndsTheResetAfterClearingModelBuilt) {
    Daten daten = makeDaten(0, 0, 0, 0);
    daten.design.modelBuilt = true;
    RecordingScene scene;
    scene.failOperation(SceneMember::LoadScene);
    EXPECT_THROW(Neu(daten, scene), RuntimeError);
    EXPECT_FALSE(daten.design.modelBuilt);
}

} // namespace
} // namespace pluvarine::test
