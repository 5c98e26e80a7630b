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

TEST(WorkFolder, HasTheFoldersTheProgramExpects) {
    for (const char* folder : {"res", "mat", "obj", "destination"}) {
        EXPECT_TRUE(fs::is_directory(kRoot / folder)) << folder;
    }
}

TEST(WorkFolder, BaseSceneHoldsNoParts) {
    const GlbPart scene((kRoot / "main.v3o").string());
    EXPECT_TRUE(scene.model.meshes.empty() && scene.model.buffers.empty());
    ASSERT_EQ(scene.model.scenes.size(), 1u);
    ASSERT_EQ(scene.model.scenes[0].nodes.size(), 1u);
    const auto& marker = scene.model.nodes.at(scene.model.scenes[0].nodes[0]);
    EXPECT_TRUE(marker.mesh == -1 && marker.children.empty());
    EXPECT_TRUE(GlbPart::own(scene.model.asset.extras).Get("baseScene").Get<bool>());
}

TEST(WorkFolder, HoldsExactlyTheFourMaterialFiles) {
    const std::map<std::string, std::string> expected = {
        {"Grau.ini", "[Material]\r\nName=Grau\r\nBaseColor=144,144,144\r\nMetallic=0\r\n"
                     "Roughness=0.55\r\n"},
        {"Kupfer.ini", "[Material]\r\nName=Kupfer\r\nBaseColor=154,108,89\r\nMetallic=1\r\n"
                       "Roughness=0.35\r\n"},
        {"Zink.ini", "[Material]\r\nName=Zink\r\nBaseColor=117,117,117\r\nMetallic=0.85\r\n"
                     "Roughness=0.5\r\n"},
        {"Alu.ini", "[Material]\r\nName=Alu\r\nBaseColor=178,178,178\r\nMetallic=0.9\r\n"
                    "Roughness=0.3\r\n"}};
    std::map<std::string, std::string> present;
    for (const auto& entry : fs::directory_iterator(kRoot / "mat")) {
        std::ifstream in(entry.path(), std::ios::binary);
        present[entry.path().filename().string()] = (std::ostringstream() << in.rdbuf()).str();
    }
    EXPECT_EQ(present, expected);
}

} // namespace
} // namespace pluvarine
