#pragma once

#include "assembly/Daten.h"
#include "assembly/SceneOperations.h"

#include <iosfwd>
#include <string>

namespace pluvarine::test {

// The five constructions, composed through the real rebuild with the main window's default
// fields (hs 300, dR 1800), H = 3000 and a gutter width of 150:
//   continuous: overhang 0 (W = 90); bend42: 300 (W = 390); bend72: 500 with O72 (W = 590);
//   kink42 / kink72: 150, answered "bend construction" (W = 240).
enum class AssemblyKind { Continuous, Bend42, Bend72, Kink42, Kink72 };
constexpr AssemblyKind kAllAssemblies[] = {AssemblyKind::Continuous, AssemblyKind::Bend42,
                                           AssemblyKind::Bend72, AssemblyKind::Kink42,
                                           AssemblyKind::Kink72};
// Prints the construction's name (test names, file names).
void PrintTo(AssemblyKind kind, std::ostream* os);

// Runs the rebuild into the scene; returns the design it left. `materialFile` empty: every
// part keeps its own look.
Daten composeAssembly(SceneOperations& scene, const std::string& workFolder, AssemblyKind kind,
                      const std::string& materialFile = {});

// The working folder the build lays out (every test program depends on it); `scratch` is
// not needed any more and kept for the callers.
std::string partsWorkFolder(const std::string& scratch);

} // namespace pluvarine::test
