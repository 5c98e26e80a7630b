#include "TectaroTestSupport.h"
#include "assembly/Construction.h"
#include "host/ElementPlacement.h"
#include "host/HostElement.h"
#include "host/HostObjectTemplate.h"
#include "platform/viewer/ViewerScene.h"

#include <numbers>
#include <ostream>

using namespace pluvarine;

namespace {

struct Side {
    const char* name;
    QPointF click; // where the user clicks, a little outside the wall
    Construction construction;
    double overhang, direction; // as the macro reads them there: mm, degrees
    friend void PrintTo(const Side& c, std::ostream* os) { *os << c.name; } // readable listings
};

// The world extent of one object of the inserted element, measured from the picked point on
// the wall face: u outward from the face, v along it, z up.
enum Axis { U, V, Z };
struct Extent {
    std::array<double, 3> lo{INFINITY, INFINITY, INFINITY}, hi{-INFINITY, -INFINITY, -INFINITY};
    double centre(Axis axis) const { return (lo[axis] + hi[axis]) / 2; }
};

class PlacementOnTheSampleHouse : public ::testing::TestWithParam<Side>, public test::SampleHost {
protected:
    // The user clicks near the wall: the host moves the click onto the face; the macro reads the
    // roof there, composes the construction, writes the object file and inserts it with the
    // placement matrix it computes.
    void SetUp() override {
        const Side& side = GetParam();
        const auto hit = host->building()->exteriorWallHit(side.click);
        ASSERT_TRUE(hit);
        wall = *hit;
        const auto X = float(hit->facePoint.x()), Y = float(hit->facePoint.y());
        // What the macro reads there, in mm and degrees: the roof meets the wall top at 3 m.
        const auto roof = roofAt(X, Y);
        ASSERT_TRUE(roof);
        const auto data = roof->GetRoofData();
        float s = 0;
        const std::int32_t number = roof->FindRoofFaceAt(true, X, Y, s, six, unusedFlag) + 1;
        const double overhang = data->GetFaceOverhang(number, unusedFlag) * 1000;
        const float roofLevel = s * 1000.0f - 100.0f;
        const float groundLevel = connection->GetLevelAt(X, Y) * 1000.0f;
        EXPECT_EQ(std::make_tuple(overhang, data->GetFaceDirection(number),
                                  data->GetGutterWidth() * 1000, data->GetRoofingThickness() * 1000,
                                  data->GetFacePitch(number), roofLevel, groundLevel),
                  std::make_tuple(side.overhang, side.direction, 150.0, 60.0, 30.0, 2900.0F, 0.0F));
        eavesHeight = host->building()->roofs[0].faces[number - 1].eavesHeight;
        daten.workFolder = PLUVARINE_WORKFOLDER;
        // As the macro derives them: the pipe reaches from the ground to 40 mm under the eaves.
        daten.design.heightH =
            (roofLevel - groundLevel) - overhang * std::tan(std::numbers::pi / 6) + 60;
        daten.design.wallOffset = overhang + 150 - 60;
        daten.design.standpipeHeight = 300;
        daten.design.clampSpacing = 1800;
        ViewerScene scene;
        scene.LoadScene(daten.workFolder + "/main.v3o");
        buildConstruction(side.construction, daten, scene);
        scene.SaveScene(path(" 1.tob"), "Fallrohr", "");
        auto inserted = connection->LoadObjectFile(path(" 1.tob"), 0)->CreateElement(nullptr, 0);
        const auto matrix = elementPlacement(
            {side.direction, X, Y, groundLevel, daten.design.wallOffset, daten.design.heightH});
        ASSERT_TRUE(matrix);
        inserted->PrepareElement(true);
        inserted->SetElementMatrix(*matrix);
        inserted->CommitElement(true);
        ASSERT_EQ(host->project()->elements.size(), 1u);
        element = host->project()->elements[0];
    }

    Extent extentOf(std::int32_t id) const {
        Extent e;
        const QMatrix4x4 world = element->worldTransform();
        for (const GlbItem& item : element->object.content->items) {
            if (!item.nodeName.ends_with(" #" + std::to_string(id)))
                continue;
            const std::vector<float>& p = item.mesh->positions;
            for (std::size_t i = 0; i + 2 < p.size(); i += 3) {
                const auto local = item.transform.map({p[i], p[i + 1], p[i + 2]});
                const QVector3D w = world.map(QVector3D(local[0], local[1], local[2]));
                const QPointF plan = QPointF(w.x(), w.y()) - wall.facePoint, out = wall.outward;
                const double c[] = {QPointF::dotProduct(plan, out),
                                    QPointF::dotProduct(plan, QPointF(-out.y(), out.x())), w.z()};
                for (int k = 0; k < 3; ++k) {
                    e.lo[k] = std::min(e.lo[k], c[k]);
                    e.hi[k] = std::max(e.hi[k], c[k]);
                }
            }
        }
        EXPECT_LT(e.lo[U], INFINITY) << "no object #" << id << " in the object file";
        return e;
    }

    Daten daten;
    std::shared_ptr<PlacedElement> element;
    WallHit wall;
    double eavesHeight = 0; // metres
};

} // namespace

TEST_P(PlacementOnTheSampleHouse, ThePipeStandsOutsideItsWallTouchingTheFaceUnderTheRoofEdge) {
    const DesignRecord& design = daten.design;
    const Extent pipe = extentOf(design.pipeId);
    const Extent outlet = extentOf(design.outletId);
    // Nothing but the clamps' wall brackets enters the wall (a pipe not led back to the wall has
    // no offset pipe and no bends: their ids stay 0).
    for (std::int32_t id : {design.outletId, design.pipeId, design.standpipeId, design.capId,
                            design.offsetPipeId, design.firstBendId, design.secondBendId}) {
        if (id != 0) {
            EXPECT_GE(extentOf(id).lo[U], -0.0005) << "object #" << id << " enters the wall";
        }
    }
    // Upright in front of the picked point, its foot 110 mm above the ground as the macro lifts it.
    EXPECT_NEAR(pipe.hi[U] - pipe.lo[U], 0.1, 0.01);
    EXPECT_NEAR(pipe.centre(V), 0.0, 0.02);
    EXPECT_NEAR(extentOf(design.standpipeId).lo[Z], 0.11, 0.01);
    // The downpipe touches the wall face with its clamps: every clamp holds the pipe and its
    // bracket passes through the face, no deeper than it is long. A pipe led back to the wall
    // stands at the clamps' clearance, 52.7 mm: the box reaches 129.4 mm behind the pipe (the
    // brackets) and W + 40 mm in front (the outlet's plate), and the macro sets its centre W/2 +
    // 8 mm out. (Flush, the 125 mm standpipe and its cap on the pipe's axis would enter the wall.)
    if (GetParam().construction != Construction::Continuous) {
        EXPECT_NEAR(pipe.lo[U], 0.0527, 0.0005);
    }
    ASSERT_GT(design.clampCount, 0);
    for (std::int32_t id = design.lastClampId - design.clampCount + 1; id <= design.lastClampId;
         ++id) {
        const Extent clamp = extentOf(id);
        EXPECT_LE(clamp.lo[U], 0.0) << "clamp #" << id << " reaches the wall face";
        EXPECT_GT(clamp.lo[U], -0.13) << "clamp #" << id << " sinks no deeper than its bracket";
        EXPECT_GE(clamp.hi[U], pipe.hi[U] - 0.01) << "clamp #" << id << " holds the pipe";
    }
    // The outlet hangs in the gutter: its axis between 60 mm inside the roof edge and the
    // gutter's outer side, its top at the eaves.
    const double overhang = GetParam().overhang / 1000;
    EXPECT_GE(outlet.centre(U), overhang - 0.06);
    EXPECT_LE(outlet.centre(U), overhang + 0.15); // the gutter is 150 mm wide
    EXPECT_NEAR(outlet.hi[Z], eavesHeight, 0.1);
    EXPECT_NEAR(outlet.centre(V), 0.0, 0.02);
}

const Side sides[] = {{"south_continuous", {5, -0.1}, Construction::Continuous, 0, 0},
                      {"east_continuous", {10.1, 4}, Construction::Continuous, 150, 90},
                      {"east_kink42", {10.1, 4}, Construction::Kink42, 150, 90},
                      {"east_kink72", {10.1, 4}, Construction::Kink72, 150, 90},
                      {"north_bend42", {5, 8.1}, Construction::Bend42, 300, 180},
                      {"west_bend42", {-0.1, 4}, Construction::Bend42, 600, 270},
                      {"west_bend72", {-0.1, 4}, Construction::Bend72, 600, 270}};
INSTANTIATE_TEST_SUITE_P(EverySide, PlacementOnTheSampleHouse, ::testing::ValuesIn(sides),
                         [](const auto& param) { return std::string(param.param.name); });
