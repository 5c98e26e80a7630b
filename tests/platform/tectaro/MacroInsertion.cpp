#include "MacroInsertion.h"

#include "assembly/BendConstruction.h"
#include "assembly/ContinuousConstruction.h"
#include "assembly/KinkConstruction.h"
#include "host/ElementPlacement.h"
#include "host/HostBuilding.h"
#include "host/HostConnection.h"
#include "host/HostElement.h"
#include "host/HostObjectTemplate.h"
#include "host/HostRoof.h"
#include "host/HostRoofData.h"
#include "host/HostRoofList.h"
#include "platform/tectaro/TectaroElement.h"
#include "platform/tectaro/TectaroHost.h"
#include "platform/viewer/ViewerScene.h"

#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <numbers>

namespace pluvarine::test {

bool realPartsAvailable() {
    return std::filesystem::exists(std::string(PLUVARINE_WORKFOLDER) + "/res/Fallrohr_100_500.v3o");
}

std::shared_ptr<HostRoof> roofAt(HostConnection& connection, float x, float y) {
    std::int32_t ignored = 0;
    std::array<float, 6> six{1, 1, 1, 1, 1, 1};
    bool flag = false;
    return connection.GetActiveBuilding()->GetRoofList()->FindRoofAt(true, x, y, ignored, six,
                                                                     flag);
}

MacroReading readRoof(HostConnection& connection, float x, float y) {
    MacroReading r;
    const auto roof = roofAt(connection, x, y);
    EXPECT_TRUE(roof) << "no roof at " << x << "," << y;
    if (!roof) {
        return r;
    }
    const auto data = roof->GetRoofData();
    float s = 0;
    std::array<float, 6> six{1, 1, 1, 1, 1, 1};
    bool ignored = false;
    r.face = roof->FindRoofFaceAt(true, x, y, s, six, ignored) + 1;
    r.gutterWidth = data->GetGutterWidth() * 1000;
    r.roofingThickness = data->GetRoofingThickness() * 1000;
    r.pitch = data->GetFacePitch(r.face);
    r.direction = data->GetFaceDirection(r.face);
    r.overhang = data->GetFaceOverhang(r.face, ignored) * 1000;
    r.roofLevel = s * 1000.0f - 100.0f;
    r.groundLevel = connection.GetLevelAt(x, y) * 1000.0f;
    r.heightH = (r.roofLevel - r.groundLevel) -
                r.overhang * std::tan(r.pitch * std::numbers::pi / 180) + 60;
    r.wallOffset = r.overhang + r.gutterWidth - 60; // as the rebuild derives it
    return r;
}

Inserted insertDownpipe(TectaroHost& host, HostConnection& connection, Kind kind, QPointF click,
                        const std::string& file) {
    Inserted in;
    const auto hit = host.building()->exteriorWallHit(click);
    EXPECT_TRUE(hit) << "no wall at " << click.x() << "," << click.y();
    if (!hit) {
        return in;
    }
    const float X = static_cast<float>(hit->facePoint.x());
    const float Y = static_cast<float>(hit->facePoint.y());
    in.face = QPointF(X, Y);
    in.outward = hit->outward;
    in.roof = readRoof(connection, X, Y);
    in.eavesHeight = host.building()->roofs[0].faces[in.roof.face - 1].eavesHeight;

    Daten& daten = in.daten;
    daten.workFolder = PLUVARINE_WORKFOLDER;
    daten.design.heightH = in.roof.heightH;
    daten.design.wallOffset = in.roof.wallOffset;
    daten.design.standpipeHeight = 300;
    daten.design.clampSpacing = 1800;
    ViewerScene scene;
    scene.LoadScene(daten.workFolder + "/main.v3o");
    const BendAngle angle =
        kind == Kind::Bend72 || kind == Kind::Kink72 ? BendAngle::Deg72 : BendAngle::Deg42;
    if (kind == Kind::Continuous) {
        buildContinuous(daten, scene);
    } else if (kind == Kind::Bend42 || kind == Kind::Bend72) {
        buildBend(daten, scene, angle);
    } else {
        buildKink(daten, scene, angle);
    }
    scene.SaveScene(file, "Fallrohr", "");

    auto element = connection.LoadObjectFile(file, 0)->CreateElement(nullptr, 0);
    const auto matrix = elementPlacement(
        {in.roof.direction, X, Y, in.roof.groundLevel, in.roof.wallOffset, in.roof.heightH});
    EXPECT_TRUE(matrix);
    element->PrepareElement(true);
    element->SetElementMatrix(*matrix);
    element->CommitElement(true);
    in.element = dynamic_cast<TectaroElement&>(*element).element();
    return in;
}

} // namespace pluvarine::test
