#include "ViewerFixture.h"
#include "platform/viewer/MaterialFile.h"

#include <filesystem>

namespace pluvarine::test {
namespace {

TEST(SrgbTransfer, KnownValues) {
    EXPECT_EQ(srgbToLinear(0), 0.0f);
    EXPECT_EQ(srgbToLinear(255), 1.0f);
    EXPECT_NEAR(srgbToLinear(144), 0.278894f, 1e-5);
    EXPECT_NEAR(srgbToLinear(10), 10 / 255.0 / 12.92, 1e-7); // the linear toe
    for (int c : {0, 1, 10, 89, 108, 117, 144, 154, 178, 255}) {
        EXPECT_EQ(linearToSrgb(srgbToLinear(c)), c);
    }
}

struct ParseCase {
    const char* text;
    bool valid;
    std::array<int, 3> srgb;
    float metallic;
    float roughness;
};

class MaterialParse : public ::testing::TestWithParam<ParseCase> {};

TEST_P(MaterialParse, ReadsTheViewersMaterialFormat) {
    const ParseCase& c = GetParam();
    const auto look = MaterialFile::parse(c.text);
    ASSERT_EQ(look.has_value(), c.valid);
    if (!c.valid) {
        return;
    }
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(look->baseColor[i], srgbToLinear(c.srgb[i]));
    }
    EXPECT_EQ(look->metallic, c.metallic);
    EXPECT_EQ(look->roughness, c.roughness);
}

INSTANTIATE_TEST_SUITE_P(
    Files, MaterialParse,
    ::testing::Values(
        ParseCase{"[Material]\r\nName=Kupfer\r\nBaseColor=154,108,89\r\nMetallic=1\r\n"
                  "Roughness=0.35\r\n",
                  true,
                  {154, 108, 89},
                  1.0f,
                  0.35f},
        ParseCase{"[material]\nbasecolor = 117 , 117 , 117 \nMETALLIC= 0.9\n",
                  true,
                  {117, 117, 117},
                  0.9f,
                  0.5f},
        ParseCase{"; comment\n[Other]\nBaseColor=1,2,3\n[Material]\nBaseColor=4,5,6\n"
                  "Metallic=7\nRoughness=-1\n",
                  true,
                  {4, 5, 6},
                  1.0f,
                  0.0f},
        ParseCase{"[Material]\nBaseColor=4,5,6\n[Material]\nBaseColor=7,8,9\n",
                  true,
                  {4, 5, 6},
                  0.0f,
                  0.5f},
        ParseCase{"[Material]\nBaseColor=4,5,6\nMetallic=lots\n", true, {4, 5, 6}, 0.0f, 0.5f},
        ParseCase{"[Material]\nName=x\n", false, {}, 0, 0},
        ParseCase{"[Material]\nBaseColor=1,2\n", false, {}, 0, 0},
        ParseCase{"[Material]\nBaseColor=1,2,3,4\n", false, {}, 0, 0},
        ParseCase{"[Material]\nBaseColor=1,2,300\n", false, {}, 0, 0},
        ParseCase{"[Material]\nBaseColor=a,b,c\n", false, {}, 0, 0},
        ParseCase{"BaseColor=1,2,3\n", false, {}, 0, 0}, ParseCase{"", false, {}, 0, 0}));

TEST(MaterialFileFormat, WritesWhatItReads) {
    const std::string text = MaterialFile::format("Zink", 117, 117, 117, 1.0f, 0.45f);
    EXPECT_EQ(text, "[Material]\r\nName=Zink\r\nBaseColor=117,117,117\r\nMetallic=1\r\n"
                    "Roughness=0.45\r\n");
    const auto look = MaterialFile::parse(text);
    ASSERT_TRUE(look);
    EXPECT_EQ(look->name, "Zink");
    EXPECT_EQ(look->roughness, 0.45f);
}

using ApplyMaterial = ViewerFixture;

TEST_F(ApplyMaterial, GivesTheCurrentObjectTheFilesLook) {
    const std::int32_t a = m_scene.AddPart(path("pipe.v3o"));
    const std::int32_t b = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(b);
    EXPECT_TRUE(m_scene.ApplyMaterial(0, path("Kupfer.ini")));
    ASSERT_TRUE(m_scene.object(b)->material);
    EXPECT_EQ(m_scene.object(b)->look(0).baseColor[0], srgbToLinear(154));
    EXPECT_EQ(m_scene.object(b)->look(0).metallic, 1.0f);
    EXPECT_FALSE(m_scene.object(a)->material);
    EXPECT_EQ(m_scene.object(a)->look(0).name, "own");
}

TEST_F(ApplyMaterial, EmptyOrMissingPathLeavesThePartsOwnLook) {
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(id);
    EXPECT_TRUE(m_scene.ApplyMaterial(0, ""));
    EXPECT_FALSE(m_scene.object(id)->material);
    m_scene.ApplyMaterial(0, path("Kupfer.ini"));
    EXPECT_FALSE(m_scene.ApplyMaterial(0, path("mat/Missing.ini")));
    EXPECT_FALSE(m_scene.object(id)->material);
    m_scene.ApplyMaterial(0, path("Kupfer.ini"));
    EXPECT_TRUE(m_scene.ApplyMaterial(0, ""));
    EXPECT_EQ(m_scene.object(id)->look(0).name, "own");
    writeText(path("Bad.ini"), "[Material]\nName=nothing\n");
    EXPECT_FALSE(m_scene.ApplyMaterial(0, path("Bad.ini")));
    EXPECT_FALSE(m_scene.object(id)->material);
}

TEST_F(ApplyMaterial, AnIdNoLongerInTheSceneIsSkipped) {
    const std::int32_t old = m_scene.AddPart(path("pipe.v3o"));
    m_scene.LoadScene(path("main.v3o"));
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    for (std::int32_t stale : {old, 0, -3, 99}) {
        m_scene.CurrentObject(stale);
        EXPECT_NO_THROW(EXPECT_FALSE(m_scene.ApplyMaterial(0, path("Kupfer.ini"))));
    }
    EXPECT_FALSE(m_scene.object(id)->material);
    EXPECT_FALSE(m_scene.objects().front().material); // the base scene is not touched
}

TEST_F(ApplyMaterial, AChangedFileIsReadAgain) {
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(id);
    m_scene.ApplyMaterial(0, path("Grau.ini"));
    EXPECT_EQ(m_scene.object(id)->look(0).name, "Grau");
    writeText(path("Grau.ini"), MaterialFile::format("Grau2", 10, 20, 30, 0, 0.7f));
    m_scene.ApplyMaterial(0, path("Grau.ini"));
    EXPECT_EQ(m_scene.object(id)->look(0).name, "Grau2");
}

} // namespace
} // namespace pluvarine::test
