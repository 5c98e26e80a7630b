#include "ViewerFixture.h"
#include "base/RuntimeError.h"
#include "platform/viewer/GlbReader.h"
#include "platform/viewer/ObjectFileWriter.h"

#include <csignal>
#include <cstring>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <sys/resource.h>
#include <unistd.h>

namespace pluvarine::test {
namespace {

std::uint32_t le32(const std::string& bytes, std::size_t at) {
    std::uint32_t v;
    std::memcpy(&v, bytes.data() + at, 4);
    return v;
}

nlohmann::json jsonChunk(const std::string& glb) {
    return nlohmann::json::parse(glb.substr(20, le32(glb, 12)));
}

std::vector<std::string> filesIn(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

class ObjectFile : public ViewerFixture {
protected:
    // A small assembly: a turned pipe in copper, two clamps in their own look, the dummy.
    void compose() {
        m_scene.LoadScene(path("main.v3o"));
        m_pipe = m_scene.AddPart(path("pipe.v3o"));
        m_scene.CurrentObject(m_pipe);
        m_scene.ScaleObject(1, 1, 0.4f);
        m_scene.MoveObject(-0.3f, 0, 0.6f);
        m_scene.RotateObject(0, -1, 0, 72);
        m_scene.CommitObject(true);
        m_scene.ApplyMaterial(0, path("Kupfer.ini"));
        for (int i = 0; i < 2; ++i) {
            m_scene.CurrentObject(m_scene.AddPart(path("clamp.v3o")));
            m_scene.MoveObject(0.0127f, 0, -0.5f * i);
            m_scene.CommitObject(true);
        }
        m_scene.CurrentObject(m_scene.AddPart(path("dummy.v3o")));
        m_scene.ScaleObject(0.0009f, 0.1f, 0.1f);
        m_scene.CommitObject(true);
    }
    std::int32_t m_pipe = 0;
};

TEST_F(ObjectFile, IsAGlbWithOneNodePerObject) {
    compose();
    ASSERT_TRUE(m_scene.SaveScene(path(" 7.tob"), "Fallrohr", ""));
    const std::string glb = readBytes(path(" 7.tob"));
    ASSERT_GE(glb.size(), 28u);
    EXPECT_EQ(glb.substr(0, 4), "glTF");
    EXPECT_EQ(le32(glb, 4), 2u);
    EXPECT_EQ(le32(glb, 8), glb.size());
    EXPECT_EQ(glb.substr(16, 4), "JSON");
    const std::uint32_t jsonLength = le32(glb, 12);
    EXPECT_EQ(jsonLength % 4, 0u);
    EXPECT_EQ(glb.substr(20 + jsonLength + 4, 4), std::string("BIN\0", 4));

    const auto json = jsonChunk(glb);
    EXPECT_EQ(json["asset"]["version"], "2.0");
    EXPECT_EQ(json["scenes"][json["scene"].get<int>()]["name"], "Fallrohr");
    ASSERT_EQ(json["nodes"].size(), m_scene.objects().size()); // base scene + 4 objects
    EXPECT_EQ(json["scenes"][0]["nodes"].size(), 5u);
    EXPECT_EQ(json["nodes"][1]["name"], "pipe #1");
    EXPECT_EQ(json["nodes"][2]["name"], "clamp #2");
    EXPECT_EQ(json["nodes"][1]["extras"]["pluvarine"]["id"], 1);
    EXPECT_TRUE(json["nodes"][4]["extras"]["pluvarine"]["auxiliary"].get<bool>());
    // Final transforms, column-major.
    const auto& m = m_scene.object(m_pipe)->transform.columnMajor();
    ASSERT_EQ(json["nodes"][1]["matrix"].size(), 16u);
    for (int i = 0; i < 16; ++i) {
        EXPECT_EQ(json["nodes"][1]["matrix"][i].get<double>(), m[i]) << i;
    }
    EXPECT_FALSE(json["nodes"][0].contains("matrix")); // identity left out
    // The two clamps share one mesh; the pipe's copper is a material of its own.
    EXPECT_EQ(json["nodes"][2]["mesh"], json["nodes"][3]["mesh"]);
    EXPECT_EQ(json["meshes"].size(), 4u);
    const int pipeMaterial =
        json["meshes"][json["nodes"][1]["mesh"].get<int>()]["primitives"][0]["material"];
    const auto& pbr = json["materials"][pipeMaterial]["pbrMetallicRoughness"];
    EXPECT_EQ(json["materials"][pipeMaterial]["name"], "Kupfer");
    EXPECT_FLOAT_EQ(pbr["baseColorFactor"][0].get<float>(), srgbToLinear(154));
    EXPECT_EQ(pbr.value("metallicFactor", 1.0), 1.0); // glTF leaves out its default
    EXPECT_FLOAT_EQ(pbr["roughnessFactor"].get<float>(), 0.35f);
    // Positions carry their bounds, as glTF requires.
    const int position = json["meshes"][json["nodes"][1]["mesh"].get<int>()]["primitives"][0]
                             ["attributes"]["POSITION"];
    EXPECT_EQ(json["accessors"][position]["max"][2], 0.25);
}

TEST_F(ObjectFile, ReadsBackAsTheSceneItWasWrittenFrom) {
    compose();
    m_scene.SaveScene(path("a.tob"), "Fallrohr", "");
    const GlbContent content = GlbReader::readFile(path("a.tob"));
    EXPECT_EQ(content.sceneName, "Fallrohr");
    ASSERT_EQ(content.items.size(), 5u);
    for (std::size_t i = 0; i < content.items.size(); ++i) {
        const ViewerObject& object = m_scene.objects()[i];
        EXPECT_EQ(content.items[i].transform, object.transform) << i;
        EXPECT_EQ(content.items[i].look.baseColor, object.look(0).baseColor) << i;
        EXPECT_EQ(content.items[i].auxiliary, object.part->auxiliary) << i;
        EXPECT_EQ(content.items[i].mesh->positions, object.part->pieces[0].mesh->positions);
    }
    // The same scene gives the same bytes.
    m_scene.SaveScene(path("b.tob"), "Fallrohr", "");
    EXPECT_EQ(readBytes(path("a.tob")), readBytes(path("b.tob")));
}

TEST_F(ObjectFile, EmptySceneGivesAValidEmptyFile) {
    ViewerScene empty;
    ASSERT_TRUE(empty.SaveScene(path("empty.tob"), "Fallrohr", ""));
    const auto content = GlbReader::readFile(path("empty.tob"));
    EXPECT_TRUE(content.items.empty());
    EXPECT_EQ(content.sceneName, "Fallrohr");
}

TEST_F(ObjectFile, AnEmptyObjectNameTakesTheFilesName) {
    compose();
    m_scene.SaveScene(path("Haus 3.tob"), "", "");
    EXPECT_EQ(GlbReader::readFile(path("Haus 3.tob")).sceneName, "Haus 3");
}

TEST_F(ObjectFile, EmptyPathAsksTheSaveDialog) {
    compose();
    std::vector<std::string> asked;
    m_scene.setSaveDialog([&](const std::string& name) {
        asked.push_back(name);
        return asked.size() == 1 ? path("chosen.glb") : std::string();
    });
    EXPECT_TRUE(m_scene.SaveScene("", "", ""));
    EXPECT_TRUE(std::filesystem::exists(path("chosen.glb")));
    const auto before = filesIn(m_dir.path().toStdString());
    EXPECT_FALSE(m_scene.SaveScene("", "", "")); // cancelled: nothing written
    EXPECT_EQ(filesIn(m_dir.path().toStdString()), before);
    EXPECT_EQ(asked.size(), 2u);
}

TEST_F(ObjectFile, EmptyPathWithoutADialogWritesNothing) {
    const auto before = filesIn(m_dir.path().toStdString());
    EXPECT_FALSE(m_scene.SaveScene("", "", ""));
    EXPECT_EQ(filesIn(m_dir.path().toStdString()), before);
}

void expectViewerError(const std::function<void()>& step) {
    try {
        step();
        ADD_FAILURE() << "no error";
    } catch (const RuntimeError& e) {
        EXPECT_EQ(e.number(), RuntimeError::ViewerError);
    }
}

TEST_F(ObjectFile, AMissingFolderFailsAndCreatesNothing) {
    compose();
    expectViewerError([&] { m_scene.SaveScene(path("obj/ 1.tob"), "Fallrohr", ""); });
    EXPECT_FALSE(std::filesystem::exists(path("obj")));
}

TEST_F(ObjectFile, ATargetThatIsAFolderFailsAndStaysAsItWas) {
    compose();
    std::filesystem::create_directory(path("taken.tob"));
    const auto before = filesIn(m_dir.path().toStdString());
    expectViewerError([&] { m_scene.SaveScene(path("taken.tob"), "Fallrohr", ""); });
    EXPECT_TRUE(std::filesystem::is_directory(path("taken.tob")));
    EXPECT_EQ(filesIn(m_dir.path().toStdString()), before);
}

// A write that fails half-way (here: the file size limit) leaves the previous file as it was
// and no temporary file behind.
TEST_F(ObjectFile, AWriteThatFailsHalfWayKeepsThePreviousFile) {
    compose();
    writeText(path(" 1.tob"), "previous");
    const auto before = filesIn(m_dir.path().toStdString());
    rlimit old{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit small = old;
    small.rlim_cur = 1000;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    bool failed = false;
    try {
        m_scene.SaveScene(path(" 1.tob"), "Fallrohr", "");
    } catch (const RuntimeError& e) {
        failed = e.number() == RuntimeError::ViewerError;
    }
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_TRUE(failed);
    EXPECT_EQ(readBytes(path(" 1.tob")), "previous");
    EXPECT_EQ(filesIn(m_dir.path().toStdString()), before);
}

TEST_F(ObjectFile, AnUnwritableFolderKeepsThePreviousFile) {
    if (geteuid() == 0) {
        GTEST_SKIP() << "permissions do not bind root";
    }
    compose();
    std::filesystem::create_directory(path("locked"));
    writeText(path("locked/ 1.tob"), "previous");
    std::filesystem::permissions(path("locked"), std::filesystem::perms::owner_read |
                                                     std::filesystem::perms::owner_exec);
    expectViewerError([&] { m_scene.SaveScene(path("locked/ 1.tob"), "Fallrohr", ""); });
    std::filesystem::permissions(path("locked"), std::filesystem::perms::owner_all);
    EXPECT_EQ(readBytes(path("locked/ 1.tob")), "previous");
    EXPECT_EQ(filesIn(path("locked")), std::vector<std::string>{" 1.tob"});
}

} // namespace
} // namespace pluvarine::test
