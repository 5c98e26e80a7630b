#include "assembly/MaterialChoice.h"

#include "AssemblyTestSupport.h"

#include <ranges>

namespace pluvarine::test {
namespace {

using Rgb = std::array<int, 3>;

TEST(MaterialChoice, EachEntryStoresItsFileAndShowsItsSwatchOnceSomethingIsBuilt) {
    // clang-format off
    const std::pair<std::string, Rgb> expected[]{
        {"/wf/mat/Grau.ini", {144, 144, 144}}, {"/wf/mat/Kupfer.ini", {154, 108, 89}},
        {"/wf/mat/Zink.ini", {117, 117, 117}}, {"/wf/mat/Alu.ini", {178, 178, 178}}};
    // clang-format on
    for (int i = 0; i < 4; ++i) {
        const auto& [file, swatch] = expected[i];
        Daten daten = makeDaten(3000, 300, 300, 1800);
        RecordingScene scene;
        EXPECT_EQ(chooseMaterial(daten, scene, i), std::nullopt); // nothing built yet
        EXPECT_TRUE(scene.calls().empty());
        daten.design.modelBuilt = true;
        EXPECT_EQ(chooseMaterial(daten, scene, i), swatch);
        EXPECT_EQ(daten.design.materialFile, file);
        EXPECT_EQ(chooseMaterial(daten, scene, i == 0 ? -1 : 4), std::nullopt); // outside
        EXPECT_EQ(daten.design.materialFile, file);
    }
}

TEST(MaterialChoice, TheFirstBuildPassesNoMaterialAndAChoiceStaysForTheNextBuild) {
    Bench b;
    b.inputs.setClampSpacingText("600"); // 4 clamps
    b.rebuild.run();
    EXPECT_EQ(b.applied(), std::vector<SceneValue>(8, std::string())); // not the dummy
    EXPECT_EQ(chooseMaterial(b.daten, b.scene, 2), (Rgb{117, 117, 117}));
    for (const SceneObject& object : b.scene.objects()) {
        EXPECT_EQ(object.material.has_value(), !object.partFile.ends_with("dummy.v3o"));
        EXPECT_EQ(object.material.value_or("/wf/mat/Zink.ini"), "/wf/mat/Zink.ini");
    }
    const std::size_t before = b.scene.calls().size();
    b.rebuild.run();
    EXPECT_EQ(b.applied(before), std::vector<SceneValue>(8, std::string("/wf/mat/Zink.ini")));
    // A viewer error still shows the swatch.
    b.scene.failOperation(SceneMember::ApplyMaterial);
    EXPECT_EQ(chooseMaterial(b.daten, b.scene, 1), (Rgb{154, 108, 89}));
    EXPECT_EQ(b.daten.design.materialFile, "/wf/mat/Kupfer.ini");
}

TEST(MaterialStep, BendPartsThenMainPartsThenClampsCountingDown) {
    Bench b;
    b.inputs.setOverhangText("300");
    b.rebuild.run(); // the 42-degree bends: ids 1 to 7 as placed
    DesignRecord d = b.daten.design;
    d.lastClampId = 33;
    d.clampCount = 3;
    RecordingScene scene;
    materialStep(d, scene);
    auto ids = scene.calls() | std::views::filter([](auto& c) { return c.op == "CurrentObject"; }) |
               std::views::transform([](auto& c) { return c.args[0]; });
    EXPECT_EQ(std::vector(ids.begin(), ids.end()),
              (std::vector<SceneValue>{1, 2, 3, 6, 4, 5, 7, 33, 32, 31}));
    EXPECT_EQ(scene.calls().size(), 20U);
    d.bendPartsBuilt = false;
    for (const std::int16_t count : {0, -2}) { // the clamp loop runs zero times
        d.clampCount = count;
        RecordingScene plain;
        materialStep(d, plain);
        EXPECT_EQ(plain.calls().size(), 8U);
    }
}

TEST(MaterialStep, BendIdsOfAnEarlierSceneAreSkippedWithoutFailing) {
    Bench b;
    b.inputs.setOverhangText("300");
    b.rebuild.run();
    const std::int32_t oldFirstBend = b.daten.design.firstBendId;
    b.inputs.setOverhangText("0"); // continuous, but bendPartsBuilt stays set
    b.rebuild.run();
    ASSERT_EQ(b.scene.object(oldFirstBend), nullptr);
    const std::size_t before = b.scene.calls().size();
    EXPECT_EQ(chooseMaterial(b.daten, b.scene, 3), (Rgb{178, 178, 178}));
    EXPECT_EQ(b.applied(before).size(), 3U + 4U + 2U);
    EXPECT_EQ(b.scene.calls()[before].args[0], SceneValue(oldFirstBend));
    EXPECT_EQ(b.scene.calls()[before + 1].result, SceneValue(false));
    for (const SceneObject& object : b.scene.objects())
        EXPECT_EQ(object.material.value_or("/wf/mat/Alu.ini"), "/wf/mat/Alu.ini");
    EXPECT_TRUE(b.daten.design.viewerOk); // the last clamp's result
}

} // namespace
} // namespace pluvarine::test
