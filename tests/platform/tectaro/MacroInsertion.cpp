#include "MacroInsertion.h"

#include "assembly/BendConstruction.h"
#include "assembly/ContinuousConstruction.h"
#include "assembly/KinkConstruction.h"
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

Daten composeObjectFile(Kind kind, double heightH, double wallOffset, const std::string& path) {
    Daten daten;
    daten.workFolder = PLUVARINE_WORKFOLDER;
    daten.design.heightH = heightH;
    daten.design.wallOffset = wallOffset;
    daten.design.standpipeHeight = 300;
    daten.design.clampSpacing = 1800;
    ViewerScene scene;
    scene.LoadScene(daten.workFolder + "/main.v3o");
    switch (kind) {
    case Kind::Continuous:
        buildContinuous(daten, scene);
        break;
    case Kind::Bend42:
        buildBend(daten, scene, BendAngle::Deg42);
        break;
    case Kind::Bend72:
        buildBend(daten, scene, BendAngle::Deg72);
        break;
    case Kind::Kink42:
        buildKink(daten, scene, BendAngle::Deg42);
        break;
    case Kind::Kink72:
        buildKink(daten, scene, BendAngle::Deg72);
        break;
    }
    scene.SaveScene(path, "Fallrohr", "");
    return daten;
}

std::optional<PlacementMatrix> macroMatrix(float X, float Y, float Z, double d, double W,
                                           double H) {
    constexpr double pi = std::numbers::pi;
    const double a = (-d - 90 - 180) * pi / 180;
    double x = 0, y = 0;
    bool placed = false;
    if (d >= 180 && d <= 270) {
        const double a2 = (270 - d) * pi / 180;
        x = X - (W / 2000) * std::cos(a2) - 8.0 / 1000;
        y = Y + (W / 2000) * std::sin(a2) + 8.0 / 1000;
        placed = true;
    }
    if (std::abs(d) > 270 && std::abs(d) <= 360) {
        const double a2 = std::abs(d - 270) * pi / 180;
        x = X - (W / 2000) * std::cos(a2) - 8.0 / 1000;
        y = Y - (W / 2000) * std::sin(a2) - 8.0 / 1000;
        placed = true;
    }
    if (std::abs(d) >= 0 && std::abs(d) <= 90) {
        const double a2 = (90 - d) * pi / 180;
        x = X + (W / 2000) * std::cos(a2) + 8.0 / 1000;
        y = Y - (W / 2000) * std::sin(a2) - 8.0 / 1000;
        placed = true;
    }
    if (std::abs(d) > 90 && std::abs(d) < 180) {
        const double a2 = std::abs(d - 90) * pi / 180;
        x = X + (W / 2000) * std::cos(a2) + 8.0 / 1000;
        y = Y + (W / 2000) * std::sin(a2) + 8.0 / 1000;
        placed = true;
    }
    if (!placed) {
        return std::nullopt;
    }
    const double z = H / 2000 + 110.0 / 1000 + Z / 1000;
    const double rows[4][4] = {{std::cos(a), std::sin(a), 0, x},
                               {-std::sin(a), std::cos(a), 0, y},
                               {0, 0, 1, z},
                               {0, 0, 0, 1}};
    PlacementMatrix m;
    for (int r = 0; r < 4; ++r) {
        for (int c = 0; c < 4; ++c) {
            m.at(r, c) = static_cast<float>(rows[r][c]);
        }
    }
    return m;
}

Inserted insertDownpipe(TectaroHost& host, HostConnection& connection, Kind kind, QPointF click,
                        const std::string& file) {
    Inserted result;
    const auto hit = host.building()->exteriorWallHit(click);
    EXPECT_TRUE(hit) << "no wall at " << click.x() << "," << click.y();
    if (!hit) {
        return result;
    }
    const float X = static_cast<float>(hit->facePoint.x());
    const float Y = static_cast<float>(hit->facePoint.y());
    result.face = QPointF(X, Y);
    result.outward = hit->outward;

    // getData and Maße: the macro's reading of the roof at the click.
    std::int32_t ignoredInt = 0;
    std::array<float, 6> six{1, 1, 1, 1, 1, 1};
    bool ignored = false;
    auto roof = connection.GetActiveBuilding()->GetRoofList()->FindRoofAt(true, X, Y, ignoredInt,
                                                                          six, ignored);
    EXPECT_TRUE(roof);
    auto data = roof->GetRoofData();
    float s = 0;
    const std::int32_t face = roof->FindRoofFaceAt(true, X, Y, s, six, ignored) + 1;
    const double gutterWidth = data->GetGutterWidth() * 1000;
    const double pitch = data->GetFacePitch(face);
    const double d = data->GetFaceDirection(face);
    const double overhang = data->GetFaceOverhang(face, ignored) * 1000;
    const float roofLevel = s * 1000.0f - 100.0f;
    const float groundLevel = connection.GetLevelAt(X, Y) * 1000.0f;
    const double H =
        (roofLevel - groundLevel) - overhang * std::tan(pitch * std::numbers::pi / 180) + 60;
    const double W = overhang + gutterWidth - 60; // the rebuild's wall offset
    result.direction = d;
    result.overhang = overhang / 1000;
    result.gutterWidth = gutterWidth / 1000;
    result.eavesHeight = host.building()->roofs[0].faces[face - 1].eavesHeight;

    result.daten = composeObjectFile(kind, H, W, file);
    auto element = connection.LoadObjectFile(file, 0)->CreateElement(nullptr, 0);
    const auto matrix = macroMatrix(X, Y, groundLevel, d, W, H);
    EXPECT_TRUE(matrix);
    element->PrepareElement(true);
    element->SetElementMatrix(*matrix);
    element->CommitElement(true);
    result.element = dynamic_cast<TectaroElement&>(*element).element();
    return result;
}

} // namespace pluvarine::test
