#include "platform/tectaro/ProjectPartsList.h"

#include "assembly/Construction.h"
#include "assembly/MaterialChoice.h"
#include "assembly/RecordingScene.h"
#include "store/text/LoadText.h"

#include <gtest/gtest.h>

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
    // clang-format off
    const char* expected[] = {
        R"(Downpipe,Article,Catalogue file,Diameter (mm),Angle (°),Nominal length (mm),Material,Quantity,Cut length (mm),Total length (mm),Note)",
        R"(1.tob,Gutter outlet,Reinhangestutzen_100_218.v3o,100,,218,Grey plastic,1,,,)",
        R"(1.tob,Downpipe,Fallrohr_100_500.v3o,100,,500,Grey plastic,1,2814,2814,)",
        R"(1.tob,Standpipe,Standrohr_125_500.v3o,125,,500,Grey plastic,1,300,300,)",
        R"(1.tob,Cover cap,Abdeckkappe_100_125.v3o,100,,,Grey plastic,1,,,)",
        R"(1.tob,Pipe clamp,Rohrschelle_100.v3o,100,,,Grey plastic,2,,,)",
        R"(2.tob,Gutter outlet,Reinhangestutzen_100_218.v3o,100,,218,Grey plastic,1,,,)",
        R"(2.tob,Downpipe,Fallrohr_100_500.v3o,100,,500,Grey plastic,1,2631,2631,)",
        R"(2.tob,Downpipe,Fallrohr_100_500.v3o,100,,500,Grey plastic,1,185,185,)",
        R"(2.tob,Elbow,Knick_100_42.v3o,100,42,,Grey plastic,2,,,)",
        R"(2.tob,Standpipe,Standrohr_125_500.v3o,125,,500,Grey plastic,1,300,300,)",
        R"(2.tob,Cover cap,Abdeckkappe_100_125.v3o,100,,,Grey plastic,1,,,)",
        R"(2.tob,Pipe clamp,Rohrschelle_100.v3o,100,,,Grey plastic,2,,,)",
        R"(3.tob,"Pipe bend, left",Bogen_100_42_L.v3o,100,42,,Copper,1,,,)",
        R"(3.tob,"Pipe bend, right",Bogen_100_42_R.v3o,100,42,,Copper,1,,,)",
        R"(3.tob,Downpipe,Fallrohr_100_500.v3o,100,,500,Copper,1,285,285,)",
        R"(3.tob,Downpipe,Fallrohr_100_500.v3o,100,,500,Copper,1,4052,4052,)",
        R"(3.tob,Standpipe,Standrohr_125_500.v3o,125,,500,Copper,1,300,300,)",
        R"(3.tob,Gutter outlet,Reinhangestutzen_100_218.v3o,100,,218,Copper,1,,,)",
        R"(3.tob,Cover cap,Abdeckkappe_100_125.v3o,100,,,Copper,1,,,)",
        R"(3.tob,Pipe clamp,Rohrschelle_100.v3o,100,,,Copper,3,,,)",
        R"(4.tob,"Pipe bend, left",Bogen_100_72_L.v3o,100,72,,Copper,1,,,)",
        R"(4.tob,"Pipe bend, right",Bogen_100_72_R.v3o,100,72,,Copper,1,,,)",
        R"(4.tob,Downpipe,Fallrohr_100_500.v3o,100,,500,Copper,1,-32,-32,Cut length not positive: the roof overhang is too small for this offset)",
        R"(4.tob,Downpipe,Fallrohr_100_500.v3o,100,,500,Copper,1,2369,2369,)",
        R"(4.tob,Standpipe,Standrohr_125_500.v3o,125,,500,Copper,1,300,300,)",
        R"(4.tob,Gutter outlet,Reinhangestutzen_100_218.v3o,100,,218,Copper,1,,,)",
        R"(4.tob,Cover cap,Abdeckkappe_100_125.v3o,100,,,Copper,1,,,)",
        R"(4.tob,Pipe clamp,Rohrschelle_100.v3o,100,,,Copper,2,,,)",
        R"(Total,Gutter outlet,Reinhangestutzen_100_218.v3o,100,,218,Grey plastic,2,,,)",
        R"(Total,Downpipe,Fallrohr_100_500.v3o,100,,500,Grey plastic,3,,5630,)",
        R"(Total,Standpipe,Standrohr_125_500.v3o,125,,500,Grey plastic,2,,600,)",
        R"(Total,Cover cap,Abdeckkappe_100_125.v3o,100,,,Grey plastic,2,,,)",
        R"(Total,Pipe clamp,Rohrschelle_100.v3o,100,,,Grey plastic,4,,,)",
        R"(Total,Elbow,Knick_100_42.v3o,100,42,,Grey plastic,2,,,)",
        R"(Total,"Pipe bend, left",Bogen_100_42_L.v3o,100,42,,Copper,1,,,)",
        R"(Total,"Pipe bend, right",Bogen_100_42_R.v3o,100,42,,Copper,1,,,)",
        R"(Total,Downpipe,Fallrohr_100_500.v3o,100,,500,Copper,4,,6674,Cut length not positive: the roof overhang is too small for this offset)",
        R"(Total,Standpipe,Standrohr_125_500.v3o,125,,500,Copper,2,,600,)",
        R"(Total,Gutter outlet,Reinhangestutzen_100_218.v3o,100,,218,Copper,2,,,)",
        R"(Total,Cover cap,Abdeckkappe_100_125.v3o,100,,,Copper,2,,,)",
        R"(Total,Pipe clamp,Rohrschelle_100.v3o,100,,,Copper,5,,,)",
        R"(Total,"Pipe bend, left",Bogen_100_72_L.v3o,100,72,,Copper,1,,,)",
        R"(Total,"Pipe bend, right",Bogen_100_72_R.v3o,100,72,,Copper,1,,,)",
    };
    // clang-format on
    std::string csv;
    for (const char* line : expected)
        csv += std::string(line) + "\r\n";
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
