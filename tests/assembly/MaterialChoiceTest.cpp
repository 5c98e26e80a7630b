#include "assembly/MaterialChoice.h"

#include "AssemblyTestSupport.h"
#include "assembly/PlainRebuildInputs.h"
#include "assembly/Rebuild.h"

#include <gtest/gtest.h>

namespace pluvarine::test {
namespace {

struct EntryCase {
    const char* name;
    int index;
    int stringId;
    const char* file;
    std::array<int, 3> rgb;
};

class MaterialEntries : public ::testing::TestWithParam<EntryCase> {};

TEST_P(MaterialEntries, ChoosingOneStoresItsFileAndShowsItsSwatch) {
    const EntryCase& c = GetParam();
    const MaterialEntry& entry = materialEntries()[static_cast<std::size_t>(c.index)];
    EXPECT_EQ(entry.stringId, c.stringId);
    EXPECT_STREQ(entry.file, c.file);
    EXPECT_EQ(entry.swatchRgb, c.rgb);

    Daten daten = makeDaten(3000, 300, 300, 1800);
    daten.design.modelBuilt = true;
    RecordingScene scene;
    EXPECT_EQ(chooseMaterial(daten, scene, c.index), c.rgb);
    EXPECT_EQ(daten.design.materialFile, std::string("/wf") + c.file);
}

INSTANTIATE_TEST_SUITE_P(
    List, MaterialEntries,
    ::testing::Values(EntryCase{"Grey", 0, 117, "/mat/Grau.ini", {144, 144, 144}},
                      EntryCase{"Copper", 1, 118, "/mat/Kupfer.ini", {154, 108, 89}},
                      EntryCase{"Zinc", 2, 119, "/mat/Zink.ini", {117, 117, 117}},
                      EntryCase{"Alu", 3, 120, "/mat/Alu.ini", {178, 178, 178}}),
    CaseName());

struct Session {
    Daten daten;
    RecordingScene scene;
    PlainRebuildInputs inputs;
    Rebuild rebuild{daten, scene, inputs};
    Session() {
        daten.workFolder = kWorkFolder;
        daten.design.heightH = 3000;
    }
    // (id, material) of every ApplyMaterial in the calls from `from` on.
    std::vector<std::pair<std::int32_t, std::string>> applied(std::size_t from = 0) const {
        std::vector<std::pair<std::int32_t, std::string>> result;
        const auto& calls = scene.calls();
        for (std::size_t i = from + 1; i < calls.size(); ++i) {
            if (calls[i].op == "ApplyMaterial") {
                EXPECT_EQ(calls[i - 1].op, "CurrentObject");
                EXPECT_EQ(std::get<std::int32_t>(calls[i].args[0]), 0); // slot
                result.emplace_back(std::get<std::int32_t>(calls[i - 1].args[0]),
                                    std::get<std::string>(calls[i].args[1]));
            }
        }
        return result;
    }
};

TEST(MaterialChoice, BeforeAnythingIsBuiltNothingChanges) {
    Session s;
    EXPECT_EQ(chooseMaterial(s.daten, s.scene, 1), std::nullopt);
    EXPECT_TRUE(s.daten.design.materialFile.empty());
    EXPECT_TRUE(s.scene.calls().empty());
    s.rebuild.run();
    // The first build passes the empty file name to every part.
    const auto applied = s.applied();
    ASSERT_EQ(applied.size(), 6U);
    for (const auto& [id, file] : applied) {
        EXPECT_EQ(file, "");
    }
}

TEST(MaterialChoice, AnIndexOutsideTheListDoesNothing) {
    Session s;
    s.rebuild.run();
    const std::size_t before = s.scene.calls().size();
    EXPECT_EQ(chooseMaterial(s.daten, s.scene, -1), std::nullopt);
    EXPECT_EQ(chooseMaterial(s.daten, s.scene, 4), std::nullopt);
    EXPECT_EQ(s.scene.calls().size(), before);
    EXPECT_TRUE(s.daten.design.materialFile.empty());
}

TEST(MaterialChoice, ZincRecoloursEveryPartAndStaysForTheNextBuild) {
    Session s;
    s.inputs.setClampSpacingText("600"); // 4 clamps
    s.rebuild.run();
    ASSERT_EQ(s.daten.design.clampCount, 4);
    EXPECT_EQ(chooseMaterial(s.daten, s.scene, 2), (std::array<int, 3>{117, 117, 117}));
    for (const SceneObject& object : s.scene.objects()) {
        if (object.partFile.ends_with("dummy.v3o")) {
            EXPECT_FALSE(object.material.has_value()); // the dummy gets no material
        } else {
            EXPECT_EQ(object.material, "/wf/mat/Zink.ini") << object.partFile;
        }
    }
    const std::size_t before = s.scene.calls().size();
    s.rebuild.run(); // refresh
    for (const auto& [id, file] : s.applied(before)) {
        EXPECT_EQ(file, "/wf/mat/Zink.ini");
    }
    EXPECT_EQ(s.applied(before).size(), 8U);
}

TEST(MaterialStep, OrderBendPartsThenMainPartsThenClampsCountingDown) {
    DesignRecord d;
    d.bendPartsBuilt = true;
    d.firstBendId = 11;
    d.secondBendId = 12;
    d.offsetPipeId = 13;
    d.outletId = 21;
    d.pipeId = 22;
    d.standpipeId = 23;
    d.capId = 24;
    d.lastClampId = 33;
    d.clampCount = 3;
    d.materialFile = "/wf/mat/Kupfer.ini";
    RecordingScene scene;
    materialStep(d, scene);
    std::vector<std::int32_t> ids;
    for (const SceneCall& call : scene.calls()) {
        if (call.op == "CurrentObject") {
            ids.push_back(std::get<std::int32_t>(call.args[0]));
        }
    }
    EXPECT_EQ(ids, (std::vector<std::int32_t>{11, 12, 13, 21, 22, 23, 24, 33, 32, 31}));
    EXPECT_EQ(scene.calls().size(), 20U);

    d.bendPartsBuilt = false;
    d.clampCount = 0; // the clamp loop runs zero times
    RecordingScene plain;
    materialStep(d, plain);
    EXPECT_EQ(plain.calls().size(), 8U);
    d.clampCount = -2;
    RecordingScene negative;
    materialStep(d, negative);
    EXPECT_EQ(negative.calls().size(), 8U);
}

TEST(MaterialStep, BendIdsOfAnEarlierSceneAreSkippedWithoutFailing) {
    Session s;
    s.inputs.setOverhangText("300");
    s.rebuild.run();
    const std::int32_t oldFirstBend = s.daten.design.firstBendId;
    s.inputs.setOverhangText("0"); // continuous, but bendPartsBuilt stays set
    s.rebuild.run();
    ASSERT_TRUE(s.daten.design.bendPartsBuilt);
    ASSERT_EQ(s.daten.design.firstBendId, oldFirstBend);
    ASSERT_EQ(s.scene.object(oldFirstBend), nullptr);

    const std::size_t before = s.scene.calls().size();
    EXPECT_EQ(chooseMaterial(s.daten, s.scene, 3), (std::array<int, 3>{178, 178, 178}));
    const auto applied = s.applied(before);
    ASSERT_EQ(applied.size(), 3U + 4U + 2U);
    EXPECT_EQ(applied[0].first, oldFirstBend);
    // The stale ids reach no object; the present parts all carry the material.
    const auto& calls = s.scene.calls();
    EXPECT_EQ(std::get<bool>(*calls[before + 1].result), false);
    for (const SceneObject& object : s.scene.objects()) {
        if (!object.partFile.ends_with("dummy.v3o")) {
            EXPECT_EQ(object.material, "/wf/mat/Alu.ini");
        }
    }
    EXPECT_TRUE(s.daten.design.viewerOk); // the last clamp's result
}

TEST(MaterialChoice, AViewerErrorStillShowsTheSwatch) {
    Session s;
    s.rebuild.run();
    s.scene.failOperation(SceneMember::ApplyMaterial);
    EXPECT_EQ(chooseMaterial(s.daten, s.scene, 1), (std::array<int, 3>{154, 108, 89}));
    EXPECT_EQ(s.daten.design.materialFile, "/wf/mat/Kupfer.ini");
}

} // namespace
} // namespace pluvarine::test
