#include "ViewerFixture.h"
#include "base/RuntimeError.h"

#include <cmath>
#include <numbers>

namespace pluvarine::test {
namespace {

using Transform = ViewerFixture;

constexpr double kPi = std::numbers::pi;

std::array<double, 3> mapped(const ViewerScene& scene, std::int32_t id,
                             const std::array<double, 3>& p) {
    return scene.object(id)->transform.map(p);
}

// The constructions' order: scale, move, rotate. The result is T(p) * R * S with the numbers
// exactly as handed over in single precision.
TEST_F(Transform, ScaleMoveRotateGivesScaledCentredTurnedPiece) {
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(id);
    const float sz = 178.105f / 500, px = -0.3854f, pz = 1.1357f, angle = 72.0f;
    m_scene.ScaleObject(1, 1, sz);
    m_scene.MoveObject(px, 0, pz);
    m_scene.RotateObject(0, -1, 0, angle);
    m_scene.CommitObject(true);

    const double c = std::cos(double(angle) * kPi / 180), s = std::sin(double(angle) * kPi / 180);
    const double expected[4][4] = {{c, 0, -s * double(sz), double(px)},
                                   {0, 1, 0, 0},
                                   {s, 0, c * double(sz), double(pz)},
                                   {0, 0, 0, 1}};
    const Matrix4d& m = m_scene.object(id)->transform;
    for (int r = 0; r < 4; ++r) {
        for (int col = 0; col < 4; ++col) {
            EXPECT_NEAR(m(r, col), expected[r][col], 1e-15) << r << "," << col;
        }
    }
    // The reference point is exactly where it was moved to.
    EXPECT_EQ(m.translationPart(), (std::array<double, 3>{double(px), 0.0, double(pz)}));
    EXPECT_TRUE(m_scene.object(id)->committed);
}

struct TiltCase {
    std::array<float, 3> axis;
    float angle;
    int topXSign; // where the upper end of a vertical piece goes along x
    int topZSign; // whether it stays above the reference point
};

class Tilt : public ViewerFixture, public ::testing::WithParamInterface<TiltCase> {};

TEST_P(Tilt, UpperEndOfVerticalPieceFollowsTheRightHandRule) {
    const TiltCase& t = GetParam();
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(id);
    m_scene.MoveObject(-0.05f, 0, 0.2f);
    m_scene.RotateObject(t.axis[0], t.axis[1], t.axis[2], t.angle);
    const auto top = mapped(m_scene, id, {0, 0, 0.25});
    const double dx = top[0] - (-0.05f), dz = top[2] - 0.2f;
    EXPECT_EQ((dx > 1e-9) - (dx < -1e-9), t.topXSign);
    EXPECT_EQ((dz > 1e-9) - (dz < -1e-9), t.topZSign);
    EXPECT_NEAR(top[1], 0.0, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(
    RightHandRule, Tilt,
    ::testing::Values(TiltCase{{0, -1, 0}, 72, -1, 1},  // away from the wall
                      TiltCase{{0, -1, 0}, 42, -1, 1},  //
                      TiltCase{{0, 1, 0}, 72, 1, 1},    // towards the wall
                      TiltCase{{0, -1, 0}, -72, 1, 1},  //
                      TiltCase{{0, -1, 0}, 180, 0, -1}, // upside down (kink 2)
                      TiltCase{{0, -5, 0}, 90, -1, 0},  // the axis need not be unit length
                      TiltCase{{0, 0, 1}, 90, 0, 1}));  // about its own axis: stays up

TEST_F(Transform, RotationAboutMinusYMatchesTheClosedForm) {
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(id);
    m_scene.RotateObject(0, -1, 0, 42);
    const double a = 42 * kPi / 180;
    const auto top = mapped(m_scene, id, {0, 0, 0.25});
    EXPECT_NEAR(top[0], -0.25 * std::sin(a), 1e-15);
    EXPECT_NEAR(top[2], 0.25 * std::cos(a), 1e-15);
}

// Applied as called: each operation acts on the object as it stands in the scene.
TEST_F(Transform, ScaleAfterMoveKeepsTheReferencePoint) {
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(id);
    m_scene.MoveObject(1, 2, 3);
    m_scene.ScaleObject(2, 2, 2);
    EXPECT_EQ(mapped(m_scene, id, {0, 0, 0}), (std::array<double, 3>{1, 2, 3}));
    EXPECT_EQ(mapped(m_scene, id, {0, 0, 0.25}), (std::array<double, 3>{1, 2, 3.5}));
}

TEST_F(Transform, MovePlacesTheReferencePointAndTheLastMoveWins) {
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(id);
    m_scene.ScaleObject(1, 1, 3);
    m_scene.MoveObject(5, 5, 5);
    m_scene.MoveObject(0.1f, 0, -0.2f);
    EXPECT_EQ(m_scene.object(id)->transform.translationPart(),
              (std::array<double, 3>{double(0.1f), 0, double(-0.2f)}));
    EXPECT_EQ(mapped(m_scene, id, {0, 0, 0.25}),
              (std::array<double, 3>{double(0.1f), 0, double(-0.2f) + 0.75}));
}

TEST_F(Transform, ScalesMultiply) {
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(id);
    m_scene.ScaleObject(1, 1, 2);
    m_scene.ScaleObject(1, 1, 0.5f);
    EXPECT_TRUE(m_scene.object(id)->transform.isIdentity());
}

TEST_F(Transform, ScaleAfterRotateActsAlongTheSceneAxes) {
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(id);
    m_scene.RotateObject(0, 0, 1, 90); // the part's y now points along -x of the scene
    m_scene.ScaleObject(2, 1, 1);
    const auto p = mapped(m_scene, id, {0, 1, 0});
    EXPECT_NEAR(p[0], -2, 1e-15);
    EXPECT_NEAR(p[1], 0, 1e-15);
    const auto q = mapped(m_scene, id, {1, 0, 0});
    EXPECT_NEAR(q[0], 0, 1e-15);
    EXPECT_NEAR(q[1], 1, 1e-15);
}

TEST_F(Transform, RotationTurnsAboutThePresentReferencePoint) {
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(id);
    m_scene.MoveObject(-1, 0, 2);
    m_scene.RotateObject(0, -1, 0, 180);
    m_scene.RotateObject(0, -1, 0, 180);
    const Matrix4d& m = m_scene.object(id)->transform;
    EXPECT_EQ(m.translationPart(), (std::array<double, 3>{-1, 0, 2}));
    EXPECT_NEAR(m(0, 0), 1, 1e-15);
    EXPECT_NEAR(m(2, 2), 1, 1e-15);
}

TEST_F(Transform, NegativeScaleMirrorsAlongTheAxis) {
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(id);
    m_scene.ScaleObject(1, 1, -0.2f);
    EXPECT_NEAR(mapped(m_scene, id, {0, 0, 0.25})[2], -0.05, 1e-8);
}

TEST_F(Transform, OperationsOnAnObjectNotInTheSceneFail) {
    const std::int32_t id = m_scene.AddPart(path("pipe.v3o"));
    m_scene.LoadScene(path("main.v3o"));
    m_scene.CurrentObject(id);
    for (const auto& op : std::vector<std::function<void()>>{
             [&] { m_scene.ScaleObject(1, 1, 1); }, [&] { m_scene.MoveObject(0, 0, 0); },
             [&] { m_scene.RotateObject(0, -1, 0, 42); }, [&] { m_scene.CommitObject(true); }}) {
        try {
            op();
            ADD_FAILURE() << "no error";
        } catch (const RuntimeError& e) {
            EXPECT_EQ(e.number(), RuntimeError::ViewerError);
        }
    }
}

TEST_F(Transform, CurrentObjectSelectsTheTargetAndAddPartDoesNot) {
    const std::int32_t first = m_scene.AddPart(path("pipe.v3o"));
    m_scene.CurrentObject(first);
    const std::int32_t second = m_scene.AddPart(path("pipe.v3o"));
    EXPECT_EQ(m_scene.currentObject(), first);
    m_scene.MoveObject(1, 0, 0);
    EXPECT_EQ(m_scene.object(first)->transform.translationPart()[0], 1.0);
    EXPECT_TRUE(m_scene.object(second)->transform.isIdentity());
    EXPECT_FALSE(m_scene.object(second)->committed);
}

} // namespace
} // namespace pluvarine::test
