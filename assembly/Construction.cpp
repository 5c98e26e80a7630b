#include "assembly/Construction.h"

#include "assembly/BendConstruction.h"
#include "assembly/ContinuousConstruction.h"
#include "assembly/KinkConstruction.h"

namespace pluvarine {

void buildConstruction(Construction construction, Daten& daten, SceneOperations& scene) {
    switch (construction) {
    case Construction::Continuous:
        return buildContinuous(daten, scene);
    case Construction::Bend42:
        return buildBend(daten, scene, BendAngle::Deg42);
    case Construction::Bend72:
        return buildBend(daten, scene, BendAngle::Deg72);
    case Construction::Kink42:
        return buildKink(daten, scene, BendAngle::Deg42);
    case Construction::Kink72:
        return buildKink(daten, scene, BendAngle::Deg72);
    case Construction::None:
        return;
    }
}

} // namespace pluvarine
