// The working-folder tree the build lays out: base scene, material files, empty folders.

#include "tests/data/GlbPart.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace pluvarine {
namespace {

namespace fs = std::filesystem;

const fs::path kRoot = PLUVARINE_WORKFOLDER;

std::string bytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream out;
    out << in.rdbuf();
    return out.str();
}

TEST(WorkFolder, HasTheFoldersTheProgramExpects) {
    for (const char* folder : {"res", "mat", "obj", "destination"}) {
        EXPECT_TRUE(fs::is_directory(kRoot / folder)) << folder;
    }
}

TEST(WorkFolder, BaseSceneHoldsNoParts) {
    const GlbPart scene((kRoot / "main.v3o").string());
    const auto& model = scene.model();
    EXPECT_TRUE(model.meshes.empty());
    EXPECT_TRUE(model.buffers.empty());
    ASSERT_EQ(model.scenes.size(), 1u);
    ASSERT_EQ(model.scenes[0].nodes.size(), 1u);
    const auto& marker = model.nodes.at(model.scenes[0].nodes[0]);
    EXPECT_EQ(marker.mesh, -1);
    EXPECT_TRUE(marker.children.empty());
    EXPECT_TRUE(scene.assetExtras().Get("baseScene").Get<bool>());
}

struct MaterialCase {
    const char* file;
    const char* content;
};

class MaterialFile : public ::testing::TestWithParam<MaterialCase> {};

TEST_P(MaterialFile, HasExactContent) {
    EXPECT_EQ(bytes(kRoot / "mat" / GetParam().file), GetParam().content);
}

INSTANTIATE_TEST_SUITE_P(
    Swatches, MaterialFile,
    ::testing::Values(
        MaterialCase{"Grau.ini",
                     "[Material]\r\nName=Grau\r\nBaseColor=144,144,144\r\nMetallic=0\r\n"
                     "Roughness=0.55\r\n"},
        MaterialCase{"Kupfer.ini",
                     "[Material]\r\nName=Kupfer\r\nBaseColor=154,108,89\r\nMetallic=1\r\n"
                     "Roughness=0.35\r\n"},
        MaterialCase{"Zink.ini",
                     "[Material]\r\nName=Zink\r\nBaseColor=117,117,117\r\nMetallic=0.85\r\n"
                     "Roughness=0.5\r\n"},
        MaterialCase{"Alu.ini",
                     "[Material]\r\nName=Alu\r\nBaseColor=178,178,178\r\nMetallic=0.9\r\n"
                     "Roughness=0.3\r\n"}),
    [](const auto& entry) {
        const std::string file = entry.param.file;
        return file.substr(0, file.find('.'));
    });

TEST(WorkFolder, HoldsOnlyTheFourMaterialFiles) {
    std::size_t count = 0;
    for ([[maybe_unused]] const auto& entry : fs::directory_iterator(kRoot / "mat")) {
        ++count;
    }
    EXPECT_EQ(count, 4u);
}

} // namespace
} // namespace pluvarine
