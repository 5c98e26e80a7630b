#include "TectaroTestSupport.h"
#include "platform/tectaro/TectaroProject.h"

#include <QByteArray>
#include <QFileInfo>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using namespace pluvarine;
using testing::HasSubstr, testing::ThrowsMessage;

TEST(TectaroProject, RoundTripsBuildingElementsMatricesAndDataBlocksByteForByte) {
    QTemporaryDir folder;
    TectaroProject project;
    project.building = test::sampleHouse();
    project.saveNumber = 4;
    // Three different parts of the catalogue: each element keeps its own bytes and bounds.
    const char* const parts[] = {"Fallrohr_100_500.v3o", "Knick_100_42.v3o", "Rohrschelle_100.v3o"};
    for (int i = 0; i < 3; ++i) {
        auto element = std::make_shared<PlacedElement>();
        element->object = ObjectFile::read(std::string(PLUVARINE_WORKFOLDER "/res/") + parts[i]);
        element->sourcePath = "/somewhere/obj/" + element->object.name;
        for (std::size_t k = 0; k < 16; ++k) { // values that need every bit of a float
            element->matrix.values[k] = 1.0f / 3.0f * static_cast<float>(k + 1) + 1e-7f * i;
        }
        element->prepared = i != 1;
        project.elements.push_back(element);
    }
    for (int b = 0; b < 256; ++b)
        project.macroData[0x20ACDCA8].push_back(static_cast<char>(b));
    project.macroData[-5] = std::string();
    const std::string file = folder.filePath("house.tproj").toStdString();
    std::string error;
    ASSERT_TRUE(project.save(file, &error)) << error;

    const TectaroProject loaded = TectaroProject::load(file);
    EXPECT_EQ(loaded.path, file);
    EXPECT_EQ(loaded.saveNumber, 4);
    EXPECT_EQ(loaded.building->toJson(), project.building->toJson());
    ASSERT_EQ(loaded.elements.size(), 3u);
    const auto kept = [](const PlacedElement& e) {
        return std::make_tuple(e.object.bytes(), e.object.name, e.sourcePath, e.matrix.values,
                               e.prepared, e.object.boundsMin);
    };
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_TRUE(kept(*loaded.elements[i]) == kept(*project.elements[i])) << i;
    EXPECT_EQ(loaded.macroData, project.macroData);

    // The bytes are stored as they are, not a third larger as base64; the earlier JSON files
    // with base64 read the same.
    std::size_t bytes = 256;
    for (const auto& element : project.elements)
        bytes += element->object.spooled->size();
    EXPECT_LT(QFileInfo(QString::fromStdString(file)).size(), qint64(bytes + 8000));
    nlohmann::json old = project.toJson();
    const auto base64 = [](const std::string& raw) {
        return QByteArray::fromStdString(raw).toBase64().toStdString();
    };
    for (std::size_t i = 0; i < 3; ++i)
        old["elements"][i]["object"] = base64(project.elements[i]->object.bytes());
    for (auto& block : old["macroData"])
        block["data"] = base64(project.macroData.at(block["id"].get<std::int32_t>()));
    test::writeFile(file, old.dump(1));
    const TectaroProject earlier = TectaroProject::load(file);
    ASSERT_EQ(earlier.elements.size(), 3u);
    EXPECT_TRUE(kept(*earlier.elements[2]) == kept(*project.elements[2]));
    EXPECT_EQ(earlier.macroData, project.macroData);
}

// A project or building file with one entry set to a bad value is refused with an error that
// names the entry; the building's entries are checked inside the project file.
TEST(TectaroProject, BadProjectAndBuildingFilesAreRefusedWithTheReason) {
    TectaroProject project;
    project.building = test::sampleHouse();
    using Json = nlohmann::json;
    const Json good = project.toJson();
    const auto pair = [](double a, double b) { return Json::array({a, b}); };
    const auto element = [](const char* object) {
        return Json::array({{{"name", "x"}, {"object", object}, {"matrix", Json::array()}}});
    };
    // clang-format off
    const std::tuple<const char*, Json, const char*> table[] = { // entry, bad value, the error says
        {"/format", "tectaro-building", "format"}, {"/version", 7, "version"},
        {"/elements", element("%%%"), "base64"}, {"/elements", element("AAAA"), "x"},
        {"/macroData", Json::array({{{"id", 1}, {"data", 5}}}), "macroData[0]"},
        {"/macroData", Json::array({{{"id", 5000000000}, {"data", ""}}}), "32-bit"},
        {"/building/format", "other", "format"}, {"/building/version", 2, "version"},
        {"/building/walls/0/height", 0, "walls[0]"}, {"/building/walls/0/closed", "yes", "closed"},
        {"/building/walls/0/line", Json::array({pair(1, 2)}), "line"},
        {"/building/walls/0/exterior", "up", "exterior"},
        {"/building/roofs/0/faces/1/pitch", 95, "faces[1]"},
        {"/building/roofs/0/faces/1/direction", 0, "square to the eaves"},
        {"/building/roofs/0/faces/0/eaves", {pair(1, 1), pair(1, 1)}, "eaves"},
        {"/building/roofs/0/gutterWidth", "wide", "gutterWidth"},
        {"/building/roofs/0/faces", Json::array(), "faces"}};
    // clang-format on
    for (const auto& [pointer, value, mentions] : table) {
        Json broken = good;
        broken[Json::json_pointer(pointer)] = value;
        EXPECT_THAT([&] { TectaroProject::fromJson(broken); },
                    ThrowsMessage<RuntimeError>(HasSubstr(mentions)))
            << pointer;
    }
    EXPECT_THROW(Building::load("/nonexistent/house.json"), RuntimeError);
    EXPECT_THROW(Building::load(PLUVARINE_SOURCE_DIR "/data/sample/README.md"), RuntimeError);
    std::string error;
    EXPECT_TRUE(!project.save("/nonexistent/dir/p.tproj", &error) && !error.empty());
}
