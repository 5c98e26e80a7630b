#include "Assemblies.h"
#include "platform/viewer/GlbReader.h"
#include "platform/viewer/ViewerScene.h"

#include <QTemporaryDir>
#include <filesystem>
#include <gtest/gtest.h>
#include <sys/wait.h>

namespace pluvarine::test {
namespace {

// The object file of every construction holds one node per object, reads back, and passes the
// Khronos glTF validator when the tools for it are there.
class ConstructionExport : public ::testing::TestWithParam<AssemblyKind> {};

TEST_P(ConstructionExport, WritesAValidObjectFile) {
    static QTemporaryDir scratch;
    const std::string workFolder = partsWorkFolder(scratch.path().toStdString());
    ViewerScene scene;
    const Daten daten =
        composeAssembly(scene, workFolder, GetParam(), workFolder + "/mat/Kupfer.ini");
    ASSERT_TRUE(daten.design.modelBuilt);
    ASSERT_GE(daten.design.clampCount, 1);
    const std::string folder = std::string(PLUVARINE_BINARY_DIR) + "/exported";
    std::filesystem::create_directories(folder);
    const std::string file = folder + "/" + assemblyName(GetParam()) + ".tob";
    ASSERT_TRUE(scene.SaveScene(file, "Fallrohr", ""));

    const GlbContent content = GlbReader::readFile(file);
    EXPECT_EQ(content.sceneName, "Fallrohr");
    std::size_t drawnPieces = 0;
    for (const auto& object : scene.objects()) {
        drawnPieces += object.part->pieces.size();
    }
    EXPECT_EQ(content.items.size(), drawnPieces);
    std::cout << "object file: " << file << '\n';

    const std::string validator =
        std::string(PLUVARINE_SOURCE_DIR) + "/tools/validator/validate.sh";
    if (!std::filesystem::exists(validator)) {
        GTEST_SKIP() << "glTF validator not available";
    }
    const std::string command = "bash '" + validator + "' '" + file + "'";
    const int status = std::system(command.c_str());
    ASSERT_TRUE(WIFEXITED(status)) << command;
    if (WEXITSTATUS(status) == 77) {
        GTEST_SKIP() << "node/npm not available";
    }
    EXPECT_EQ(WEXITSTATUS(status), 0) << command;
}

INSTANTIATE_TEST_SUITE_P(All, ConstructionExport, ::testing::ValuesIn(kAllAssemblies),
                         [](const auto& param) { return std::string(assemblyName(param.param)); });

} // namespace
} // namespace pluvarine::test
