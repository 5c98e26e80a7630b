#pragma once

#include "assembly/PlainRebuildInputs.h"
#include "assembly/Rebuild.h"

#include <ostream>

namespace pluvarine::test {

// The five constructions, composed through the real rebuild in the built working folder with
// the main window's default fields (hs 300, dR 1800), H = 3000 and a gutter width of 150:
//   continuous: overhang 0 (W = 90); bend42: 300 (W = 390); bend72: 500 with O72 (W = 590);
//   kink42 / kink72: 150, answered "bend construction" (W = 240).
struct Assembly {
    const char* name;
    const char* overhang;
    bool o72, kink; // kink: answered "bend construction" for an overhang that allows a kink
};
constexpr Assembly kContinuous{"continuous", "0", false, false};
constexpr Assembly kBend42{"bend42", "300", false, false};
constexpr Assembly kBend72{"bend72", "500", true, false};
constexpr Assembly kKink42{"kink42", "150", false, true};
constexpr Assembly kKink72{"kink72", "150", true, true};
constexpr Assembly kAllAssemblies[] = {kContinuous, kBend42, kBend72, kKink42, kKink72};

// Prints the construction's name (test names, file names).
inline void PrintTo(const Assembly& assembly, std::ostream* os) {
    *os << assembly.name;
}

// Runs the rebuild into the scene; returns the design it left. `materialFile` empty: every
// part keeps its own look.
inline Daten composeAssembly(SceneOperations& scene, const Assembly& c,
                             const std::string& materialFile = {}) {
    Daten daten;
    daten.workFolder = PLUVARINE_WORKFOLDER;
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

} // namespace pluvarine::test
