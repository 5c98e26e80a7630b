#include "Assemblies.h"

#include "assembly/PlainRebuildInputs.h"
#include "assembly/Rebuild.h"

#include <ostream>

namespace pluvarine::test {

struct Construction {
    const char* name;
    const char* overhang;
    bool o72, kink; // kink: answered "bend construction" for an overhang that allows a kink
};
constexpr Construction kConstructions[] = {{"continuous", "0", false, false},
                                           {"bend42", "300", false, false},
                                           {"bend72", "500", true, false},
                                           {"kink42", "150", false, true},
                                           {"kink72", "150", true, true}};

void PrintTo(AssemblyKind kind, std::ostream* os) {
    *os << kConstructions[int(kind)].name;
}

Daten composeAssembly(SceneOperations& scene, const std::string& workFolder, AssemblyKind kind,
                      const std::string& materialFile) {
    const Construction& c = kConstructions[int(kind)];
    Daten daten;
    daten.workFolder = workFolder;
    daten.oldObjectFile = workFolder + "/obj/fallrohr.tob";
    daten.design.heightH = 3000;
    daten.roof.gutterWidth = 150;
    daten.design.materialFile = materialFile;
    daten.design.constructionAnswered = daten.design.bendChosen = daten.design.bendPartsBuilt =
        c.kink;
    PlainRebuildInputs inputs;
    inputs.setOverhangText(c.overhang);
    if (c.o72) {
        inputs.clickO72();
    }
    Rebuild(daten, scene, inputs).run();
    return daten;
}

std::string partsWorkFolder(const std::string&) {
    return PLUVARINE_WORKFOLDER;
}

} // namespace pluvarine::test
