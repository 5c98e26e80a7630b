#include "Assemblies.h"

#include "TestGlb.h"
#include "assembly/PartCatalogue.h"
#include "assembly/PlainRebuildInputs.h"
#include "assembly/Rebuild.h"
#include "platform/viewer/MaterialFile.h"

#include <filesystem>

namespace pluvarine::test {

const char* assemblyName(AssemblyKind kind) {
    switch (kind) {
    case AssemblyKind::Continuous:
        return "continuous";
    case AssemblyKind::Bend42:
        return "bend42";
    case AssemblyKind::Bend72:
        return "bend72";
    case AssemblyKind::Kink42:
        return "kink42";
    case AssemblyKind::Kink72:
        return "kink72";
    }
    return "?";
}

Daten composeAssembly(SceneOperations& scene, const std::string& workFolder, AssemblyKind kind,
                      const std::string& materialFile) {
    Daten daten;
    daten.workFolder = workFolder;
    daten.oldObjectFile = workFolder + "/obj/fallrohr.tob";
    daten.design.heightH = 3000;
    daten.roof.gutterWidth = 150;
    daten.design.materialFile = materialFile;
    PlainRebuildInputs inputs;
    switch (kind) {
    case AssemblyKind::Continuous:
        inputs.setOverhangText("0");
        break;
    case AssemblyKind::Bend42:
        inputs.setOverhangText("300");
        break;
    case AssemblyKind::Bend72:
        inputs.setOverhangText("500");
        inputs.clickO72();
        break;
    case AssemblyKind::Kink42:
    case AssemblyKind::Kink72:
        inputs.setOverhangText("150");
        daten.design.constructionAnswered = true;
        daten.design.bendChosen = true;
        daten.design.bendPartsBuilt = true;
        if (kind == AssemblyKind::Kink72) {
            inputs.clickO72();
        }
        break;
    }
    Rebuild(daten, scene, inputs).run();
    return daten;
}

bool realPartsAvailable() {
    const std::string res = std::string(PLUVARINE_WORKFOLDER) + parts::resFolder;
    for (const char* name : {parts::outlet, parts::pipe, parts::standpipe, parts::cap, parts::clamp,
                             parts::bend72Upper, parts::bend72Lower, parts::bend42Upper,
                             parts::bend42Lower, parts::kink72, parts::kink42, parts::dummy}) {
        if (!std::filesystem::exists(res + name)) {
            return false;
        }
    }
    return std::filesystem::exists(std::string(PLUVARINE_WORKFOLDER) + parts::baseScene);
}

std::string partsWorkFolder(const std::string& scratch) {
    if (realPartsAvailable()) {
        return PLUVARINE_WORKFOLDER;
    }
    const std::string folder = scratch + "/standin";
    namespace fs = std::filesystem;
    for (const char* sub : {"/res", "/mat", "/obj", "/destination"}) {
        fs::create_directories(folder + sub);
    }
    const std::string res = folder + "/res/";
    const SurfaceLook grey{
        "Grau", {srgbToLinear(144), srgbToLinear(144), srgbToLinear(144)}, 0, 0.6f};
    struct Box {
        const char* name;
        double x, y, z;
    };
    // The effective sizes the constructions rely on, in metres.
    for (const Box& b :
         {Box{parts::outlet, 0.1, 0.1, 0.1865}, Box{parts::pipe, 0.1, 0.1, 0.5},
          Box{parts::standpipe, 0.125, 0.125, 0.5}, Box{parts::cap, 0.125, 0.125, 0.0294},
          Box{parts::clamp, 0.2334, 0.12, 0.03}, Box{parts::bend72Upper, 0.2304, 0.1, 0.2746},
          Box{parts::bend72Lower, 0.2304, 0.1, 0.2764},
          Box{parts::bend42Upper, 0.1923, 0.1, 0.3073},
          Box{parts::bend42Lower, 0.1923, 0.1, 0.3073}, Box{parts::kink72, 0.1021, 0.1, 0.0962},
          Box{parts::kink42, 0.106, 0.1, 0.0674}}) {
        writeBoxPart(res + b.name, b.x, b.y, b.z, grey);
    }
    writeBoxPart(res + parts::dummy, 1, 1, 1, grey, true);
    writeTestGlb(folder + parts::baseScene, {});
    writeText(folder + "/mat/Grau.ini", MaterialFile::format("Grau", 144, 144, 144, 0, 0.6f));
    writeText(folder + "/mat/Kupfer.ini", MaterialFile::format("Kupfer", 154, 108, 89, 1, 0.35f));
    writeText(folder + "/mat/Zink.ini", MaterialFile::format("Zink", 117, 117, 117, 1, 0.45f));
    writeText(folder + "/mat/Alu.ini", MaterialFile::format("Alu", 178, 178, 178, 1, 0.3f));
    return folder;
}

} // namespace pluvarine::test
