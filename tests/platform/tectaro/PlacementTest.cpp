#include "MacroInsertion.h"
#include "TectaroTestSupport.h"
#include "platform/tectaro/TectaroPlacement.h"

#include <QTemporaryDir>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using namespace pluvarine;

namespace {

constexpr double pi = std::numbers::pi;

struct Side {
    const char* name;
    QPointF click; // where the user clicks, a little outside the wall
    test::Kind kind;
};

// The world extent of one object of the inserted element, measured from the wall face:
// u outward from the face, v along it (from the picked point), z up.
struct Extent {
    double uMin = INFINITY, uMax = -INFINITY, vMin = INFINITY, vMax = -INFINITY;
    double zMin = INFINITY, zMax = -INFINITY;
    double uCentre() const { return (uMin + uMax) / 2; }
    double vCentre() const { return (vMin + vMax) / 2; }
};

Extent extentOf(const test::Inserted& inserted, std::int32_t id) {
    Extent e;
    const QMatrix4x4 world = inserted.element->worldTransform();
    const QPointF along(-inserted.outward.y(), inserted.outward.x());
    bool found = false;
    for (const GlbItem& item : inserted.element->object.content->items) {
        const std::string suffix = " #" + std::to_string(id);
        if (item.nodeName.size() < suffix.size() ||
            item.nodeName.compare(item.nodeName.size() - suffix.size(), suffix.size(), suffix)) {
            continue;
        }
        found = true;
        const std::vector<float>& p = item.mesh->positions;
        for (std::size_t i = 0; i + 2 < p.size(); i += 3) {
            const auto local = item.transform.map({p[i], p[i + 1], p[i + 2]});
            const QVector3D w = world.map(QVector3D(local[0], local[1], local[2]));
            const QPointF plan = QPointF(w.x(), w.y()) - inserted.face;
            const double u = plan.x() * inserted.outward.x() + plan.y() * inserted.outward.y();
            const double v = plan.x() * along.x() + plan.y() * along.y();
            e.uMin = std::min(e.uMin, u);
            e.uMax = std::max(e.uMax, u);
            e.vMin = std::min(e.vMin, v);
            e.vMax = std::max(e.vMax, v);
            e.zMin = std::min<double>(e.zMin, w.z());
            e.zMax = std::max<double>(e.zMax, w.z());
        }
    }
    EXPECT_TRUE(found) << "no object #" << id << " in the object file";
    return e;
}

class PlacementOnTheSampleHouse : public ::testing::TestWithParam<Side> {
protected:
    void SetUp() override {
        if (!test::realPartsAvailable()) {
            GTEST_SKIP() << "the part catalogue is not built";
        }
        TectaroOptions options;
        options.programFolder = folder.path().toStdString();
        options.defaultBuilding = test::sampleHouse();
        host = std::make_unique<TectaroHost>(options);
        connection = host->createConnection();
    }

    test::Inserted insert(const Side& side) {
        test::Inserted result = test::insertDownpipe(*host, *connection, side.kind, side.click,
                                                     folder.filePath(" 1.tob").toStdString());
        EXPECT_EQ(host->project()->elements.size(), 1u);
        return result;
    }

    QTemporaryDir folder;
    std::unique_ptr<TectaroHost> host;
    std::unique_ptr<HostConnection> connection;
};

} // namespace

TEST_P(PlacementOnTheSampleHouse, ThePipeStandsOutsideItsWallTouchingTheFaceUnderTheRoofEdge) {
    const Side side = GetParam();
    const test::Inserted in = insert(side);
    const DesignRecord& design = in.daten.design;
    const bool againstTheWall = side.kind != test::Kind::Continuous;

    const Extent pipe = extentOf(in, design.pipeId);
    const Extent outlet = extentOf(in, design.outletId);
    const Extent standpipe = extentOf(in, design.standpipeId);

    // Nothing but the clamps' wall brackets enters the wall: pipes, bends, outlet, standpipe
    // and cap all stand outside the wall face.
    const std::int32_t firstClamp = design.lastClampId - design.clampCount + 1;
    for (std::int32_t id : {design.outletId, design.pipeId, design.standpipeId, design.capId,
                            design.offsetPipeId, design.firstBendId, design.secondBendId}) {
        if (id == 0 || (!againstTheWall && (id == design.offsetPipeId || id == design.firstBendId ||
                                            id == design.secondBendId))) {
            continue;
        }
        EXPECT_GE(extentOf(in, id).uMin, -0.0005) << "object #" << id << " enters the wall";
    }
    // The pipe stands upright in front of the picked point, its foot 110 mm above the ground
    // as the macro lifts it.
    EXPECT_NEAR(pipe.uMax - pipe.uMin, 0.1, 0.01);
    EXPECT_NEAR(pipe.vCentre(), 0.0, 0.02);
    EXPECT_NEAR(standpipe.zMin, 0.11, 0.01);
    // Touching the wall: a pipe led back to the wall stands at a clamp's clearance from the
    // face; a continuous pipe hangs at the gutter; either way every clamp holds the pipe and
    // its bracket reaches into the wall, no deeper than the bracket is long.
    if (againstTheWall) {
        EXPECT_GT(pipe.uMin, 0.0);
        EXPECT_LT(pipe.uMin, 0.06) << "the pipe led back to the wall lies close to its face";
    }
    ASSERT_GT(design.clampCount, 0);
    for (std::int32_t id = firstClamp; id <= design.lastClampId; ++id) {
        const Extent clamp = extentOf(in, id);
        EXPECT_LE(clamp.uMin, 0.0) << "clamp #" << id << " reaches the wall face";
        EXPECT_GT(clamp.uMin, -0.13) << "clamp #" << id << " sinks no deeper than its bracket";
        EXPECT_GE(clamp.uMax, pipe.uMax - 0.01) << "clamp #" << id << " holds the pipe";
    }
    // The outlet hangs under the roof edge, in the gutter: its axis between 60 mm inside the
    // edge and the gutter's outer side, its top at the eaves.
    EXPECT_GE(outlet.uCentre(), in.overhang - 0.06);
    EXPECT_LE(outlet.uCentre(), in.overhang + in.gutterWidth);
    EXPECT_NEAR(outlet.zMax, in.eavesHeight, 0.1);
    EXPECT_NEAR(outlet.vCentre(), 0.0, 0.02);
}

INSTANTIATE_TEST_SUITE_P(
    EverySide, PlacementOnTheSampleHouse,
    ::testing::Values(Side{"south_continuous", {5, -0.1}, test::Kind::Continuous},
                      Side{"east_continuous", {10.1, 4}, test::Kind::Continuous},
                      Side{"east_kink42", {10.1, 4}, test::Kind::Kink42},
                      Side{"east_kink72", {10.1, 4}, test::Kind::Kink72},
                      Side{"north_bend42", {5, 8.1}, test::Kind::Bend42},
                      Side{"west_bend42", {-0.1, 4}, test::Kind::Bend42},
                      Side{"west_bend72", {-0.1, 4}, test::Kind::Bend72}),
    [](const auto& param) { return std::string(param.param.name); });

TEST(TectaroPlacement, TheMatrixActsOnColumnVectorsAndTheObjectFacesMinusX) {
    // d = 0 (south side, outward -y): a = -270 deg.
    const auto m = test::macroMatrix(5, 0, 0, 0, 0, 2000);
    ASSERT_TRUE(m);
    const QMatrix4x4 world =
        TectaroPlacement::worldTransform(*m, QVector3D(-0.2f, -0.05f, -1), QVector3D(0, 0.05f, 1));
    // The footprint's centre (-0.1, 0) lands on the matrix's translation; the object's back
    // plane x = 0 lies 0.1 m nearer the wall, its front further out along -y.
    const QVector3D centre = world.map(QVector3D(-0.1f, 0, 0));
    EXPECT_NEAR(centre.x(), 5.008, 1e-5);
    EXPECT_NEAR(centre.y(), -0.008, 1e-5);
    EXPECT_NEAR(centre.z(), 1.11, 1e-5);
    const QVector3D back = world.map(QVector3D(0, 0, 0));
    const QVector3D front = world.map(QVector3D(-0.2f, 0, 0));
    EXPECT_NEAR(back.y(), 0.092, 1e-5);
    EXPECT_NEAR(front.y(), -0.108, 1e-5);
}

TEST(TectaroPlacement, TheReferencePointIsTheCentreOfTheBoundingBox) {
    EXPECT_EQ(
        TectaroPlacement::referencePoint(QVector3D(-0.75f, -0.25f, -2), QVector3D(0.25f, 0.25f, 2)),
        QVector3D(-0.25f, 0, 0));
    EXPECT_EQ(TectaroPlacement::referencePoint(QVector3D(-0.5f, 0, -1), QVector3D(-0.25f, 0.5f, 2)),
              QVector3D(-0.375f, 0.25f, 0.5f));
}

TEST(TectaroPlacement, EverySideTurnsTheFrontOutwards) {
    // The object's front (-x) goes along (sin d, -cos d) for the macro's rotation.
    for (double d : {0.0, 90.0, 180.0, 270.0, 360.0, 45.0, 200.0}) {
        const auto m = test::macroMatrix(0, 0, 0, d, 0, 0);
        ASSERT_TRUE(m) << d;
        const QMatrix4x4 world =
            TectaroPlacement::worldTransform(*m, QVector3D(-1, 0, 0), QVector3D(0, 0, 0));
        const QVector3D front = world.mapVector(QVector3D(-1, 0, 0));
        EXPECT_NEAR(front.x(), std::sin(d * pi / 180), 1e-6) << d;
        EXPECT_NEAR(front.y(), -std::cos(d * pi / 180), 1e-6) << d;
        EXPECT_NEAR(front.z(), 0, 1e-6) << d;
    }
}
