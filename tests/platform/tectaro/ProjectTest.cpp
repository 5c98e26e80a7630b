#include "TectaroTestSupport.h"
#include "base/RuntimeError.h"
#include "platform/tectaro/TectaroProject.h"
#include "platform/viewer/ViewerScene.h"

#include <QTemporaryDir>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

using namespace pluvarine;

namespace {

// A small object file as the viewer writes it: one box.
std::string boxObjectFile(const std::string& folder, double depth) {
    auto mesh = std::make_shared<MeshData>();
    const float d = static_cast<float>(depth);
    mesh->positions = {-d, -0.05f, -1, 0, -0.05f, -1, 0, 0.05f, -1, -d, 0.05f, -1,
                       -d, -0.05f, 1,  0, -0.05f, 1,  0, 0.05f, 1,  -d, 0.05f, 1};
    mesh->normals.assign(mesh->positions.size(), 0.0f);
    mesh->indices = {0, 1, 2, 0, 2, 3, 4, 6, 5, 4, 7, 6};
    ViewerScene scene;
    scene.addMesh(mesh, Matrix4d(), SurfaceLook{});
    const std::string path = folder + "/box.tob";
    EXPECT_TRUE(scene.SaveScene(path, "Fallrohr", ""));
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

} // namespace

TEST(TectaroProject, RoundTripsBuildingElementsMatricesAndDataBlocksByteForByte) {
    QTemporaryDir folder;
    TectaroProject project;
    project.building = test::sampleHouse();
    project.saveNumber = 4;
    for (int i = 0; i < 3; ++i) {
        auto element = std::make_shared<PlacedElement>();
        element->object =
            ObjectFile::fromBytes(boxObjectFile(folder.path().toStdString(), 0.1 * (i + 1)),
                                  " " + std::to_string(i + 1) + ".tob");
        element->sourcePath = "/somewhere/obj/ " + std::to_string(i + 1) + ".tob";
        for (std::size_t k = 0; k < 16; ++k) {
            // Values that need every bit of a float.
            element->matrix.values[k] = 1.0f / 3.0f * static_cast<float>(k + 1) + 1e-7f * i;
        }
        element->prepared = i != 1;
        project.elements.push_back(element);
    }
    std::string block;
    for (int b = 0; b < 256; ++b) {
        block.push_back(static_cast<char>(b));
    }
    project.macroData[0x20ACDCA8] = block;
    project.macroData[-5] = std::string();

    const std::string file = folder.filePath("house.tproj").toStdString();
    std::string error;
    ASSERT_TRUE(project.save(file, &error)) << error;
    const TectaroProject loaded = TectaroProject::load(file);

    EXPECT_EQ(loaded.path, file);
    EXPECT_EQ(loaded.saveNumber, 4);
    EXPECT_EQ(loaded.building->toJson(), project.building->toJson());
    ASSERT_EQ(loaded.elements.size(), 3u);
    for (std::size_t i = 0; i < 3; ++i) {
        const PlacedElement& a = *project.elements[i];
        const PlacedElement& b = *loaded.elements[i];
        EXPECT_EQ(b.object.bytes, a.object.bytes);
        EXPECT_EQ(b.object.name, a.object.name);
        EXPECT_EQ(b.sourcePath, a.sourcePath);
        EXPECT_EQ(b.matrix.values, a.matrix.values);
        EXPECT_EQ(b.prepared, a.prepared);
        EXPECT_EQ(b.object.boundsMin, a.object.boundsMin);
    }
    EXPECT_EQ(loaded.macroData, project.macroData);
}

TEST(TectaroProject, BadFilesAreRefusedWithTheReason) {
    QTemporaryDir folder;
    TectaroProject project;
    project.building = test::sampleHouse();
    const nlohmann::json good = project.toJson();
    struct Case {
        const char* pointer;
        nlohmann::json value;
        const char* mentions;
    };
    const Case cases[] = {
        {"/format", "tectaro-building", "format"},
        {"/version", 7, "version"},
        {"/elements",
         nlohmann::json::array(
             {{{"name", "x"}, {"object", "%%%"}, {"matrix", nlohmann::json::array()}}}),
         "base64"},
        {"/elements",
         nlohmann::json::array(
             {{{"name", "x"}, {"object", "AAAA"}, {"matrix", nlohmann::json::array()}}}),
         "x"},
        {"/macroData", nlohmann::json::array({{{"id", 1}, {"data", 5}}}), "macroData[0]"},
        {"/macroData", nlohmann::json::array({{{"id", 5000000000}, {"data", ""}}}), "32-bit"},
        {"/building/walls/0/height", 0, "walls[0]"},
    };
    for (const Case& c : cases) {
        nlohmann::json broken = good;
        broken[nlohmann::json::json_pointer(c.pointer)] = c.value;
        try {
            TectaroProject::fromJson(broken);
            ADD_FAILURE() << c.pointer;
        } catch (const RuntimeError& error) {
            EXPECT_NE(error.description().find(c.mentions), std::string::npos)
                << c.pointer << ": " << error.description();
        }
    }
    std::string error;
    EXPECT_FALSE(project.save(folder.filePath("no/such/dir/p.tproj").toStdString(), &error));
    EXPECT_FALSE(error.empty());
}
