#include "MacroInsertion.h"
#include "TectaroTestSupport.h"
#include "host/ElementPlacement.h"
#include "platform/tectaro/TectaroPlacement.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

using namespace pluvarine;

namespace {

struct Side {
    const char* name;
    QPointF click; // where the user clicks, a little outside the wall
    test::Kind kind;
};

// The world extent of one object of the inserted element, measured from the picked point on
// the wall face: u outward from the face, v along it, z up.
struct Extent {
    double uMin = INFINITY, uMax = -INFINITY, vMin = INFINITY, vMax = -INFINITY;
    double zMin = INFINITY, zMax = -INFINITY;
    double uCentre() const { return (uMin + uMax) / 2; }
    double vCentre() const { return (vMin + vMax) / 2; }
};

Extent extentOf(const test::Inserted& in, std::int32_t id) {
    Extent e;
    const QMatrix4x4 world = in.element->worldTransform();
    const std::string suffix = " #" + std::to_string(id);
    for (const GlbItem& item : in.element->object.content->items) {
        if (!item.nodeName.ends_with(suffix)) {
            continue;
        }
        const std::vector<float>& p = item.mesh->positions;
        for (std::size_t i = 0; i + 2 < p.size(); i += 3) {
            const auto local = item.transform.map({p[i], p[i + 1], p[i + 2]});
            const QVector3D w = world.map(QVector3D(local[0], local[1], local[2]));
            const QPointF plan = QPointF(w.x(), w.y()) - in.face;
            const double u = QPointF::dotProduct(plan, in.outward);
            const double v = QPointF::dotProduct(plan, QPointF(-in.outward.y(), in.outward.x()));
            e = {std::min(e.uMin, u),
                 std::max(e.uMax, u),
                 std::min(e.vMin, v),
                 std::max(e.vMax, v),
                 std::min<double>(e.zMin, w.z()),
                 std::max<double>(e.zMax, w.z())};
        }
    }
    EXPECT_LT(e.uMin, INFINITY) << "no object #" << id << " in the object file";
    return e;
}

class PlacementOnTheSampleHouse : public ::testing::TestWithParam<Side>, public test::SampleHost {
protected:
    void SetUp() override {
        if (!test::realPartsAvailable()) {
            GTEST_SKIP() << "the part catalogue is not built";
        }
    }
};

} // namespace

TEST_P(PlacementOnTheSampleHouse, ThePipeStandsOutsideItsWallTouchingTheFaceUnderTheRoofEdge) {
    const test::Inserted in =
        test::insertDownpipe(*host, *connection, GetParam().kind, GetParam().click, path(" 1.tob"));
    EXPECT_EQ(host->project()->elements.size(), 1u);
    const DesignRecord& design = in.daten.design;
    const bool againstTheWall = GetParam().kind != test::Kind::Continuous;
    const Extent pipe = extentOf(in, design.pipeId);
    const Extent outlet = extentOf(in, design.outletId);

    // Nothing but the clamps' wall brackets enters the wall.
    std::vector<std::int32_t> outside{design.outletId, design.pipeId, design.standpipeId,
                                      design.capId};
    if (againstTheWall) {
        outside.insert(outside.end(),
                       {design.offsetPipeId, design.firstBendId, design.secondBendId});
    }
    for (std::int32_t id : outside) {
        if (id != 0) {
            EXPECT_GE(extentOf(in, id).uMin, -0.0005) << "object #" << id << " enters the wall";
        }
    }
    // Upright in front of the picked point, its foot 110 mm above the ground as the macro lifts it.
    EXPECT_NEAR(pipe.uMax - pipe.uMin, 0.1, 0.01);
    EXPECT_NEAR(pipe.vCentre(), 0.0, 0.02);
    EXPECT_NEAR(extentOf(in, design.standpipeId).zMin, 0.11, 0.01);
    // A pipe led back to the wall stands at a clamp's clearance from the face; either way every
    // clamp holds the pipe and its bracket reaches into the wall no deeper than it is long.
    if (againstTheWall) {
        EXPECT_GT(pipe.uMin, 0.0);
        EXPECT_LT(pipe.uMin, 0.06);
    }
    ASSERT_GT(design.clampCount, 0);
    for (std::int32_t id = design.lastClampId - design.clampCount + 1; id <= design.lastClampId;
         ++id) {
        const Extent clamp = extentOf(in, id);
        EXPECT_LE(clamp.uMin, 0.0) << "clamp #" << id << " reaches the wall face";
        EXPECT_GT(clamp.uMin, -0.13) << "clamp #" << id << " sinks no deeper than its bracket";
        EXPECT_GE(clamp.uMax, pipe.uMax - 0.01) << "clamp #" << id << " holds the pipe";
    }
    // The outlet hangs in the gutter: its axis between 60 mm inside the roof edge and the
    // gutter's outer side, its top at the eaves.
    EXPECT_GE(outlet.uCentre(), (in.roof.overhang - 60) / 1000);
    EXPECT_LE(outlet.uCentre(), (in.roof.overhang + in.roof.gutterWidth) / 1000);
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

TEST(TectaroPlacement, TheBoxCentreLandsOnTheMatrixWhichActsOnColumnVectors) {
    EXPECT_EQ(TectaroPlacement::referencePoint({-0.5f, 0, -1}, {-0.25f, 0.5f, 2}),
              QVector3D(-0.375f, 0.25f, 0.5f));
    // d = 0 (south side, outward -y): a turn by -270 degrees; W = 0, H = 2000 mm.
    const auto m = elementPlacement({0, 5, 0, 0, 0, 2000});
    ASSERT_TRUE(m);
    const QMatrix4x4 world =
        TectaroPlacement::worldTransform(*m, QVector3D(-0.2f, -0.05f, -1), QVector3D(0, 0.05f, 1));
    const auto expectAt = [&](QVector3D local, QVector3D expected) {
        EXPECT_LT((world.map(local) - expected).length(), 1e-5f) << local.x();
    };
    expectAt({-0.1f, 0, 0}, {5.008f, -0.008f, 1.11f}); // the centre on the translation
    expectAt({0, 0, 0}, {5.008f, 0.092f, 1.11f});      // the back plane nearer the wall
    expectAt({-0.2f, 0, 0}, {5.008f, -0.108f, 1.11f}); // the front further out
}
