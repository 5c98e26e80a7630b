#include "platform/tectaro/ProjectPartsList.h"

#include "assembly/Construction.h"
#include "assembly/MaterialChoice.h"
#include "assembly/RecordingScene.h"
#include "store/text/LoadText.h"

#include <gtest/gtest.h>
#include <tuple>

namespace pluvarine::test {
namespace {

// An element whose object file carries the list of one construction, as the export writes it.
std::shared_ptr<PlacedElement> downpipe(const std::string& name, Construction construction,
                                        double H, double W, int material) {
    Daten daten;
    daten.workFolder = "/wf";
    daten.design.heightH = H;
    daten.design.wallOffset = W;
    daten.design.standpipeHeight = 300;
    daten.design.clampSpacing = 1800;
    RecordingScene scene;
    buildConstruction(construction, daten, scene);
    daten.design.modelBuilt = true;
    daten.design.bendPartsBuilt = construction != Construction::Continuous;
    chooseMaterial(daten, scene, material);
    auto content = std::make_shared<GlbContent>();
    content->sceneExtras = PartsList::of(scene.objects()).toExtras();
    auto element = std::make_shared<PlacedElement>();
    element->object.name = name;
    element->object.content = content;
    return element;
}

// Four downpipes: straight, 42-degree kinks, 42-degree bends in copper, 72-degree bends
// (the last with a negative inclined pipe, the offset too small), and an element without a list.
TEST(ProjectPartsList, FourDownpipesAndTheirTotalsAsCsv) {
    setActiveTextLanguage(TextLanguage::EnglishUnitedStates);
    TectaroProject project;
    project.elements = {downpipe(" 1.tob", Construction::Continuous, 3000, 90, 0),
                        downpipe(" 2.tob", Construction::Kink42, 3000, 240, 0),
                        downpipe(" 3.tob", Construction::Bend42, 5000, 500, 1),
                        downpipe(" 4.tob", Construction::Bend72, 3000, 400, 1),
                        std::make_shared<PlacedElement>()};
    const ProjectPartsList list = ProjectPartsList::of(project);
    ASSERT_EQ(list.downpipes.size(), 5U);
    EXPECT_TRUE(list.downpipes[4].list.rows.empty());
    // Each row: downpipe, the article's catalogue columns, material, then quantity, cut length,
    // total length and note.
    // clang-format off
    const std::string outlet = "Gutter outlet,Reinhangestutzen_100_218.v3o,100,,218,",
        pipe = "Downpipe,Fallrohr_100_500.v3o,100,,500,", stand = "Standpipe,Standrohr_125_500.v3o,125,,500,",
        cap = "Cover cap,Abdeckkappe_100_125.v3o,100,,,", clamp = "Pipe clamp,Rohrschelle_100.v3o,100,,,",
        elbow = "Elbow,Knick_100_42.v3o,100,42,,",
        left42 = R"("Pipe bend, left",Bogen_100_42_L.v3o,100,42,,)",
        right42 = R"("Pipe bend, right",Bogen_100_42_R.v3o,100,42,,)",
        left72 = R"("Pipe bend, left",Bogen_100_72_L.v3o,100,72,,)",
        right72 = R"("Pipe bend, right",Bogen_100_72_R.v3o,100,72,,)",
        grey = "Grey plastic,", copper = "Copper,",
        note = "Cut length not positive: the roof overhang is too small for this offset";
    const std::tuple<std::string, std::string, std::vector<std::pair<std::string, std::string>>> blocks[] = {
        {"1.tob", grey, {{outlet, "1,,,"}, {pipe, "1,2814,2814,"}, {stand, "1,300,300,"}, {cap, "1,,,"},
                         {clamp, "2,,,"}}},
        {"2.tob", grey, {{outlet, "1,,,"}, {pipe, "1,2631,2631,"}, {pipe, "1,185,185,"}, {elbow, "2,,,"},
                         {stand, "1,300,300,"}, {cap, "1,,,"}, {clamp, "2,,,"}}},
        {"3.tob", copper, {{left42, "1,,,"}, {right42, "1,,,"}, {pipe, "1,285,285,"}, {pipe, "1,4052,4052,"},
                           {stand, "1,300,300,"}, {outlet, "1,,,"}, {cap, "1,,,"}, {clamp, "3,,,"}}},
        {"4.tob", copper, {{left72, "1,,,"}, {right72, "1,,,"}, {pipe, "1,-32,-32," + note}, {pipe, "1,2369,2369,"},
                           {stand, "1,300,300,"}, {outlet, "1,,,"}, {cap, "1,,,"}, {clamp, "2,,,"}}},
        {"Total", grey, {{outlet, "2,,,"}, {pipe, "3,,5630,"}, {stand, "2,,600,"}, {cap, "2,,,"},
                         {clamp, "4,,,"}, {elbow, "2,,,"}}},
        {"Total", copper, {{left42, "1,,,"}, {right42, "1,,,"}, {pipe, "4,,6674," + note}, {stand, "2,,600,"},
                           {outlet, "2,,,"}, {cap, "2,,,"}, {clamp, "5,,,"}, {left72, "1,,,"}, {right72, "1,,,"}}}};
    // clang-format on
    std::string csv = "Downpipe,Article,Catalogue file,Diameter (mm),Angle (°),Nominal length "
                      "(mm),Material,Quantity,Cut length (mm),Total length (mm),Note\r\n";
    for (const auto& [downpipe, material, rows] : blocks)
        for (const auto& [article, figures] : rows)
            csv += downpipe + "," + article + material + figures + "\r\n";
    EXPECT_EQ(list.toCsv(), csv);
    // Headers, articles and materials in the interface language.
    setActiveTextLanguage(TextLanguage::German);
    EXPECT_EQ(list.cells()[0][8], "Zuschnittlänge (mm)");
    EXPECT_EQ(list.cells()[13][1], "Rohrbogen, links");
    EXPECT_EQ(list.cells()[13][6], "Kupfer");
    setActiveTextLanguage(TextLanguage::EnglishUnitedStates);
}

} // namespace
} // namespace pluvarine::test
