#pragma once

#include "assembly/Daten.h"
#include "platform/tectaro/PlacedElement.h"

#include <QPointF>
#include <memory>
#include <string>

namespace pluvarine {
class HostConnection;
class HostRoof;
class TectaroHost;
} // namespace pluvarine

namespace pluvarine::test {

enum class Kind { Continuous, Bend42, Bend72, Kink42, Kink72 };

// The working folder the build lays out holds the part catalogue.
bool realPartsAvailable();

std::shared_ptr<HostRoof> roofAt(HostConnection& connection, float x, float y);

// What the macro reads at a point of the wall face, in its units (mm, degrees), and the height
// H and wall offset W it derives from that.
struct MacroReading {
    std::int32_t face = 0; // counted from 1, as the roof data counts
    double overhang = 0, gutterWidth = 0, roofingThickness = 0, pitch = 0, direction = 0;
    float roofLevel = 0, groundLevel = 0;
    double heightH = 0, wallOffset = 0;
};
MacroReading readRoof(HostConnection& connection, float x, float y);

// One downpipe inserted into the host the way the macro does it.
struct Inserted {
    Daten daten; // the design, with the object ids of the composed assembly
    std::shared_ptr<PlacedElement> element;
    QPointF face, outward; // the picked point on the wall face and the face's outward normal
    MacroReading roof;
    double eavesHeight = 0; // metres
};

// The user clicks near a wall: the host moves the click onto the face; the macro reads the roof
// there, composes the construction (standpipe 300, clamp spacing 1800), writes the object file
// to `file` and inserts it with the placement matrix it computes.
Inserted insertDownpipe(TectaroHost& host, HostConnection& connection, Kind kind, QPointF click,
                        const std::string& file);

} // namespace pluvarine::test
