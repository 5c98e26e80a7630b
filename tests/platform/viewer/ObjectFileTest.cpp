#include "Assemblies.h"
#include "ViewerFixture.h"
#include "assembly/PartsList.h"
#include "assembly/RecordingScene.h"
#include "platform/viewer/GlbReader.h"
#include "platform/viewer/GltfAxes.h"
#include "tests/support/WriteFaults.h"

#include <csignal>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <numeric>

namespace pluvarine::test {
namespace {

std::uint32_t le32(const std::string& bytes, std::size_t at) {
    std::uint32_t v;
    std::memcpy(&v, bytes.data() + at, 4);
    return v;
}

class ObjectFile : public ViewerFixture {
protected:
    // A turned pipe in copper, two clamps in their own look, the dummy.
    void SetUp() override {
        ViewerFixture::SetUp();
        m_scene.LoadScene(path("main.v3o"));
        current("pipe");
        m_scene.ScaleObject(1, 1, 0.4f);
        m_scene.MoveObject(-0.3f, 0, 0.6f);
        m_scene.RotateObject(0, -1, 0, 72);
        m_scene.ApplyMaterial(0, path("Kupfer.ini"));
        current("clamp");
        current("clamp");
        m_scene.MoveObject(0.0127f, 0, -0.5f);
        current("dummy");
        m_scene.ScaleObject(0.0009f, 0.1f, 0.1f);
    }
};

// A GLB with one node per object, that reads back as the scene it was written from.
TEST_F(ObjectFile, IsAGlbWithOneNodePerObjectThatReadsBack) {
    ASSERT_TRUE(m_scene.SaveScene(path(" 7.tob"), "Fallrohr", ""));
    const std::string glb = readFile(path(" 7.tob"));
    ASSERT_GE(glb.size(), 28u);
    EXPECT_EQ(glb.substr(0, 4), "glTF");
    EXPECT_EQ(le32(glb, 4), 2u);
    EXPECT_EQ(le32(glb, 8), glb.size());
    EXPECT_EQ(glb.substr(16, 4), "JSON");
    const std::uint32_t jsonLength = le32(glb, 12);
    EXPECT_EQ(jsonLength % 4, 0u);
    EXPECT_EQ(glb.substr(20 + jsonLength + 4, 4), std::string("BIN\0", 4));

    const auto json = nlohmann::json::parse(glb.substr(20, jsonLength));
    const auto& nodes = json["nodes"];
    EXPECT_EQ(json["scenes"][json["scene"].get<int>()]["name"], "Fallrohr");
    // No catalogue part here: the parts list is empty, flat in the scene's extras.
    EXPECT_EQ(json["scenes"][0]["extras"],
              nlohmann::json::parse(R"({"pluvarine.partsList.count": 0})"));
    ASSERT_EQ(nodes.size(), 5u);                        // base scene + 4 objects
    EXPECT_EQ(nodes[1]["name"], "Fallrohr_100_500 #1"); // the part file's own name
    EXPECT_EQ(nodes[2]["name"], "Rohrschelle_100 #2");
    EXPECT_EQ(nodes[1]["extras"]["id"], 1);
    EXPECT_TRUE(nodes[4]["extras"]["auxiliary"].get<bool>());
    // The object's transform, turned +Y up.
    const Matrix4d turned =
        Matrix4d::fromColumnMajor(gltfFromSceneFrame) * m_scene.objects()[1].transform;
    const auto& matrix = turned.columnMajor();
    EXPECT_EQ(nodes[1]["matrix"].get<std::vector<double>>(),
              std::vector<double>(matrix.begin(), matrix.end()));
    // The two clamps share one mesh; the pipe's copper is a material of its own.
    EXPECT_EQ(nodes[2]["mesh"], nodes[3]["mesh"]);
    EXPECT_EQ(json["meshes"].size(), 4u);
    const auto& primitive = json["meshes"][nodes[1]["mesh"].get<int>()]["primitives"][0];
    const auto& material = json["materials"][primitive["material"].get<int>()];
    EXPECT_EQ(material["name"], "Kupfer");
    EXPECT_FLOAT_EQ(material["pbrMetallicRoughness"]["baseColorFactor"][0].get<float>(),
                    srgbToLinear(154));
    EXPECT_FLOAT_EQ(material["pbrMetallicRoughness"]["roughnessFactor"].get<float>(), 0.35f);

    ASSERT_TRUE(m_scene.SaveScene(path("a.tob"), "", ""));
    const GlbContent content = GlbReader::readFile(path("a.tob"));
    EXPECT_EQ(content.sceneName, "a"); // an empty object name takes the file's name
    ASSERT_EQ(content.items.size(), 5u);
    for (std::size_t i = 0; i < content.items.size(); ++i) {
        const ViewerObject& object = m_scene.objects()[i];
        EXPECT_EQ(content.items[i].transform, object.transform) << i;
        EXPECT_EQ(content.items[i].look.baseColor, object.look(0).baseColor) << i;
        EXPECT_EQ(content.items[i].auxiliary, object.part->auxiliary) << i;
        EXPECT_EQ(content.items[i].mesh->positions, object.part->pieces[0].mesh->positions);
    }
}

// A missing folder, a folder in the way, or a write that fails half-way (here: the file size
// limit) leave the previous file as it was and no temporary file behind.
TEST_F(ObjectFile, AFailedWriteKeepsThePreviousFile) {
    writeText(path(" 1.tob"), "previous");
    std::filesystem::create_directory(path("taken.tob"));
    const std::vector<std::string> before = namesIn(path(""));
    expectViewerError([&] { m_scene.SaveScene(path("obj/ 1.tob"), "Fallrohr", ""); });
    expectViewerError([&] { m_scene.SaveScene(path("taken.tob"), "Fallrohr", ""); });
    {
        const FileSizeLimit full(1000);
        expectViewerError([&] { m_scene.SaveScene(path(" 1.tob"), "Fallrohr", ""); });
    }
    EXPECT_EQ(readFile(path(" 1.tob")), "previous");
    EXPECT_EQ(namesIn(path("")), before);
}

// A program that dies while it writes an object file (here: stopped by the file size limit)
// leaves no file that the project archive would pack, only a hidden temporary file, which the
// next write in the folder removes.
TEST_F(ObjectFile, AWriterThatDiesLeavesNothingVisibleAndTheNextWriteCleansUp) {
    const std::filesystem::path folder = path("obj");
    std::filesystem::create_directory(folder);
    const int ended = runInDyingChild([&] {
                          const FileSizeLimit full(1000);
                          std::signal(SIGXFSZ, SIG_DFL);
                          try {
                              m_scene.SaveScene((folder / " 1.tob").string(), "Fallrohr", "");
                          } catch (...) {
                          }
                      }).second;
    ASSERT_EQ(ended, SIGXFSZ);
    const std::vector<std::string> left = namesIn(folder);
    ASSERT_EQ(left.size(), 1u);
    EXPECT_TRUE(left[0].starts_with(".pluvarine-")) << left[0];
    m_scene.SaveScene((folder / " 2.tob").string(), "Fallrohr", "");
    EXPECT_EQ(namesIn(folder), std::vector<std::string>{" 2.tob"});
}

// Object files of the same parts share their meshes however often they are read: one in memory
// for each distinct mesh, also across nodes of one file (the two clamps).
TEST_F(ObjectFile, ReadingItAgainSharesTheMeshes) {
    ASSERT_TRUE(m_scene.SaveScene(path(" 1.tob"), "Fallrohr", ""));
    m_scene.RotateObject(0, 0, 1, 90); // the dummy turned: other nodes, the same meshes
    ASSERT_TRUE(m_scene.SaveScene(path(" 2.tob"), "Fallrohr", ""));
    const GlbContent first = GlbReader::readFile(path(" 1.tob"));
    const GlbContent second = GlbReader::readFile(path(" 2.tob"));
    ASSERT_EQ(first.items.size(), second.items.size());
    for (std::size_t i = 0; i < first.items.size(); ++i) {
        EXPECT_EQ(first.items[i].mesh, second.items[i].mesh) << i;
    }
    ASSERT_EQ(first.items[2].nodeName, "Rohrschelle_100 #2");
    EXPECT_EQ(first.items[2].mesh, first.items[3].mesh);
}

// Every construction's object file holds one node per drawn piece, reads back, is read by
// Assimp and passes the Khronos glTF validator when the tools for them are there.
class ConstructionExport : public ::testing::TestWithParam<Assembly> {};

TEST_P(ConstructionExport, WritesAValidObjectFile) {
    ViewerScene scene;
    ASSERT_TRUE(composeAssembly(scene, GetParam(), PLUVARINE_WORKFOLDER "/mat/Kupfer.ini")
                    .design.modelBuilt);
    std::filesystem::create_directories(PLUVARINE_BINARY_DIR "/exported");
    const std::string file =
        PLUVARINE_BINARY_DIR "/exported/" + std::string(GetParam().name) + ".tob";
    ASSERT_TRUE(scene.SaveScene(file, "Fallrohr", ""));
    const GlbContent content = GlbReader::readFile(file);
    EXPECT_EQ(content.sceneName, "Fallrohr");
    EXPECT_EQ(
        content.items.size(),
        std::accumulate(scene.objects().begin(), scene.objects().end(), std::size_t(0),
                        [](std::size_t n, const auto& o) { return n + o.part->pieces.size(); }));
    // The parts list in the scene's extras: what a recording of the same design lists.
    RecordingScene recording;
    composeAssembly(recording, GetParam(), PLUVARINE_WORKFOLDER "/mat/Kupfer.ini");
    const PartsList list = PartsList::fromExtras(content.sceneExtras);
    EXPECT_EQ(list, PartsList::of(recording.objects()));
    EXPECT_EQ(list.rows.back().file, "Rohrschelle_100.v3o");
    EXPECT_EQ(list.rows.back().material, "copper");
    // A second glTF client, Assimp, reads and converts it.
    const std::string assimp =
        "bash '" PLUVARINE_SOURCE_DIR "/tests/data/read-with-assimp.sh' '" + file + "'";
    const int read = std::system(assimp.c_str());
    EXPECT_TRUE(WIFEXITED(read) && (WEXITSTATUS(read) == 0 || WEXITSTATUS(read) == 77)) << assimp;
    const std::string command =
        "bash '" PLUVARINE_SOURCE_DIR "/tools/validator/validate.sh' '" + file + "'";
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status)) << command;
    if (WEXITSTATUS(status) == 77) {
        GTEST_SKIP() << "node/npm not available";
    }
    EXPECT_EQ(WEXITSTATUS(status), 0) << command;
}

INSTANTIATE_TEST_SUITE_P(All, ConstructionExport, ::testing::ValuesIn(kAllAssemblies),
                         ::testing::PrintToStringParamName());

} // namespace
} // namespace pluvarine::test
