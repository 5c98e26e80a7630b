#pragma once

#include "assembly/Daten.h"
#include "host/PlacementMatrix.h"
#include "platform/tectaro/PlacedElement.h"

#include <QPointF>
#include <memory>
#include <optional>
#include <string>

namespace pluvarine {
class HostConnection;
class TectaroHost;
} // namespace pluvarine

namespace pluvarine::test {

enum class Kind { Continuous, Bend42, Bend72, Kink42, Kink72 };

// The working folder the build lays out holds the part catalogue.
bool realPartsAvailable();

// Composes the construction into a fresh scene from the build's working folder (standpipe
// 300, clamp spacing 1800) and writes the object file as the insert command does. Returns the
// design with the object ids.
Daten composeObjectFile(Kind kind, double heightH, double wallOffset, const std::string& path);

// The placement matrix exactly as the macro's insert command builds it from the picked point
// (X, Y, metres), the ground level Z (mm), the roof direction d (degrees), the wall offset W
// and the height H (mm): a = -d - 90 - 180; four cases on d; x, y half the wall offset and
// 8 mm per axis away from the point; z = H/2000 + 110/1000 + Z/1000. nullopt when no case
// holds.
std::optional<PlacementMatrix> macroMatrix(float X, float Y, float Z, double d, double W, double H);

// One downpipe inserted into the host the way the macro does it.
struct Inserted {
    Daten daten; // the design, with the object ids of the composed assembly
    std::shared_ptr<PlacedElement> element;
    QPointF face;    // the picked point on the wall face
    QPointF outward; // the face's outward normal
    double direction = 0;
    double overhang = 0, gutterWidth = 0, eavesHeight = 0; // metres
};

// The user clicks near a wall: the host moves the click onto the face; the macro reads the
// roof data there (heightH and the wall offset as the macro derives them), composes the
// construction, writes the object file to `file` and inserts it with its matrix.
Inserted insertDownpipe(TectaroHost& host, HostConnection& connection, Kind kind, QPointF click,
                        const std::string& file);

} // namespace pluvarine::test
