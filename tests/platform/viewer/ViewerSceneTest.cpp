#include "ViewerFixture.h"
#include "base/RuntimeError.h"

#include <filesystem>

namespace pluvarine::test {
namespace {

using Scene = ViewerFixture;

int errorNumber(const std::function<void()>& step) {
    try {
        step();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

TEST_F(Scene, IdsStartAtOneAndKeepCountingAcrossLoadScene) {
    m_scene.LoadScene(path("main.v3o"));
    EXPECT_EQ(m_scene.AddPart(path("pipe.v3o")), 1);
    EXPECT_EQ(m_scene.AddPart(path("clamp.v3o")), 2);
    EXPECT_EQ(m_scene.AddPart(path("clamp.v3o")), 3);
    m_scene.LoadScene(path("main.v3o"));
    EXPECT_EQ(m_scene.AddPart(path("pipe.v3o")), 4);
    m_scene.clear();
    EXPECT_EQ(m_scene.AddPart(path("pipe.v3o")), 5);
    EXPECT_EQ(m_scene.nextId(), 6);
}

TEST_F(Scene, LoadSceneReplacesTheSceneByTheBaseScene) {
    m_scene.AddPart(path("pipe.v3o"));
    m_scene.AddPart(path("pipe.v3o"));
    m_scene.LoadScene(path("main.v3o"));
    ASSERT_EQ(m_scene.objects().size(), 1u);
    EXPECT_EQ(m_scene.objects()[0].id, 0); // base-scene content has no id
    EXPECT_EQ(m_scene.object(1), nullptr);
    EXPECT_EQ(m_scene.object(0), nullptr);
}

TEST_F(Scene, LoadSceneOfAMissingFileLeavesAnEmptySceneAndFails) {
    m_scene.AddPart(path("pipe.v3o"));
    EXPECT_EQ(errorNumber([&] { m_scene.LoadScene(path("nothing.v3o")); }),
              RuntimeError::ViewerError);
    EXPECT_TRUE(m_scene.objects().empty());
}

TEST_F(Scene, AddPartOfAMissingFileFailsWithoutTakingAnId) {
    EXPECT_EQ(m_scene.AddPart(path("pipe.v3o")), 1);
    EXPECT_EQ(errorNumber([&] { m_scene.AddPart(path("res/Bogen_100_72_L.v3o")); }),
              RuntimeError::ViewerError);
    EXPECT_EQ(errorNumber([&] { m_scene.AddPart(""); }), RuntimeError::ViewerError);
    EXPECT_EQ(m_scene.objects().size(), 1u);
    EXPECT_EQ(m_scene.AddPart(path("pipe.v3o")), 2);
}

TEST_F(Scene, AddPartOfAnUnreadableFileFails) {
    writeText(path("broken.v3o"), "glTF this is not");
    writeText(path("truncated.v3o"), readBytes(path("pipe.v3o")).substr(0, 100));
    EXPECT_EQ(errorNumber([&] { m_scene.AddPart(path("broken.v3o")); }), RuntimeError::ViewerError);
    EXPECT_EQ(errorNumber([&] { m_scene.AddPart(path("truncated.v3o")); }),
              RuntimeError::ViewerError);
    EXPECT_EQ(errorNumber([&] { m_scene.AddPart(m_dir.path().toStdString()); }),
              RuntimeError::ViewerError);
    EXPECT_TRUE(m_scene.objects().empty());
}

TEST_F(Scene, APartFileIsReadFromDiskOnce) {
    for (int i = 0; i < 5; ++i) {
        m_scene.LoadScene(path("main.v3o"));
        m_scene.AddPart(path("pipe.v3o"));
        m_scene.AddPart(path("clamp.v3o"));
        m_scene.AddPart(path("clamp.v3o"));
    }
    EXPECT_EQ(m_scene.partCache().diskReads(), 3);
    // Even when the file changes or goes away, the run keeps what it read.
    std::filesystem::remove(path("pipe.v3o"));
    EXPECT_NO_THROW(m_scene.AddPart(path("pipe.v3o")));
    EXPECT_EQ(m_scene.objects()[1].part, m_scene.objects().back().part);
}

TEST_F(Scene, AFailedReadIsNotRemembered) {
    EXPECT_ANY_THROW(m_scene.AddPart(path("late.v3o")));
    writeBoxPart(path("late.v3o"), 0.1, 0.1, 0.1);
    EXPECT_NO_THROW(m_scene.AddPart(path("late.v3o")));
    EXPECT_EQ(m_scene.partCache().diskReads(), 2);
}

TEST_F(Scene, ScenesCanShareOneCache) {
    auto cache = std::make_shared<PartCache>();
    ViewerScene a(cache), b(cache);
    a.AddPart(path("pipe.v3o"));
    b.AddPart(path("pipe.v3o"));
    EXPECT_EQ(cache->diskReads(), 1);
}

TEST_F(Scene, ObserversHearEveryKindOfChange) {
    std::vector<SceneChange> heard;
    const int handle = m_scene.addObserver([&](SceneChange c) { heard.push_back(c); });
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(id);
    m_scene.MoveObject(0, 0, 1);
    m_scene.ApplyMaterial(0, path("Kupfer.ini"));
    m_scene.UpdateView();
    EXPECT_EQ(heard, (std::vector<SceneChange>{SceneChange::Content, SceneChange::Placement,
                                               SceneChange::Look, SceneChange::FitView}));
    EXPECT_EQ(m_scene.fitRequests(), 1);
    m_scene.removeObserver(handle);
    m_scene.UpdateView();
    EXPECT_EQ(heard.size(), 4u);
}

TEST_F(Scene, BoundsCoverDrawnObjectsOnly) {
    m_scene.CurrentObject(m_scene.AddPart(path("pipe.v3o")));
    m_scene.ScaleObject(1, 1, 2);
    m_scene.MoveObject(-0.05f, 0, 0.5f);
    m_scene.CurrentObject(m_scene.AddPart(path("dummy.v3o")));
    m_scene.MoveObject(-5, 0, 1);
    const Box3 box = m_scene.bounds();
    ASSERT_FALSE(box.isEmpty());
    EXPECT_NEAR(box.min()[0], -0.1, 1e-7);
    EXPECT_NEAR(box.max()[0], 0.0, 1e-7);
    EXPECT_NEAR(box.min()[2], 0.0, 1e-7);
    EXPECT_NEAR(box.max()[2], 1.0, 1e-7);
    EXPECT_FALSE(m_scene.objects().back().drawn());
}

TEST_F(Scene, GeneralObjectsFromMeshesAndFiles) {
    const Matrix4d at = Matrix4d::translation(3, 4, 5);
    const SurfaceLook red{"red", {1, 0, 0}, 0, 0.5f};
    const std::int32_t a = m_scene.addMesh(std::make_shared<MeshData>(boxMesh(1, 1, 1)), at, red);
    const std::int32_t b = m_scene.addFile(path("pipe.v3o"), at, red);
    const std::int32_t c = m_scene.addFile(path("pipe.v3o"), at);
    EXPECT_EQ(m_scene.object(a)->look(0), red);
    EXPECT_EQ(m_scene.object(b)->look(0), red);
    EXPECT_EQ(m_scene.object(c)->look(0).name, "own");
    EXPECT_EQ(m_scene.object(c)->transform, at);
    EXPECT_EQ(m_scene.partCache().diskReads(), 0); // not part files: not cached
    EXPECT_ANY_THROW(m_scene.addFile(path("none.tob"), at));
}

} // namespace
} // namespace pluvarine::test
