#include "platform/viewer/OrbitCamera.h"

#include <gtest/gtest.h>

namespace pluvarine {
namespace {

Box3 box(std::array<double, 3> lo, std::array<double, 3> hi) {
    Box3 b;
    b.add(lo);
    b.add(hi);
    return b;
}

struct FitCase {
    Box3 content;
    QSize viewport;
    float yaw;
    float pitch;
};

class CameraFit : public ::testing::TestWithParam<FitCase> {};

// Every corner of the content lies inside the view, and the content fills it in at least one
// direction (the fit is not just "far away").
TEST_P(CameraFit, ShowsTheWholeContentAndFillsTheView) {
    const FitCase& c = GetParam();
    OrbitCamera camera;
    camera.setView({}, 1, c.yaw, c.pitch);
    camera.fit(c.content, float(c.viewport.width()) / float(c.viewport.height()));
    double minX = 1e9, maxX = -1e9, minY = 1e9, maxY = -1e9;
    for (int i = 0; i < 8; ++i) {
        const QVector3D corner(float(i & 1 ? c.content.max()[0] : c.content.min()[0]),
                               float(i & 2 ? c.content.max()[1] : c.content.min()[1]),
                               float(i & 4 ? c.content.max()[2] : c.content.min()[2]));
        const QPointF p = camera.project(corner, c.viewport);
        minX = std::min(minX, p.x()), maxX = std::max(maxX, p.x());
        minY = std::min(minY, p.y()), maxY = std::max(maxY, p.y());
    }
    EXPECT_GE(minX, 0);
    EXPECT_LE(maxX, c.viewport.width());
    EXPECT_GE(minY, 0);
    EXPECT_LE(maxY, c.viewport.height());
    const double filled =
        std::max((maxX - minX) / c.viewport.width(), (maxY - minY) / c.viewport.height());
    EXPECT_GT(filled, 0.75);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, CameraFit,
    ::testing::Values(
        // A continuous downpipe, 3 m high, in the main window's preview and a wide image.
        FitCase{box({-0.2, -0.06, -1.5}, {0.13, 0.06, 1.5}), {257, 449}, 212, 12},
        FitCase{box({-0.2, -0.06, -1.5}, {0.13, 0.06, 1.5}), {692, 464}, 212, 12},
        // A bend assembly reaching 0.6 m from the wall.
        FitCase{box({-0.64, -0.06, -1.5}, {0.13, 0.06, 1.5}), {692, 464}, 212, 12},
        FitCase{box({-5, -1, 0}, {5, 1, 0.2}), {257, 449}, 212, 12},
        FitCase{box({0, 0, 0}, {1, 1, 1}), {400, 300}, 45, 80},
        FitCase{box({0, 0, 0}, {1, 1, 1}), {400, 300}, 300, -30}));

TEST(Camera, DefaultDirectionLooksAtTheWallFromTheAssemblySide) {
    OrbitCamera camera;
    camera.reset(box({-0.2, -0.1, -1.5}, {0.1, 0.1, 1.5}), 1.5f);
    const QVector3D eye = camera.eye() - camera.target();
    EXPECT_LT(eye.x(), 0);                             // from -x, the side away from the wall
    EXPECT_GT(eye.z(), 0);                             // a little from above
    EXPECT_GT(std::abs(eye.x()), std::abs(eye.y()));   // mostly square on to the wall
    EXPECT_GT(std::abs(eye.y()), 0.2f * eye.length()); // and somewhat from the side
}

TEST(Camera, TheTargetShowsInTheMiddle) {
    OrbitCamera camera;
    camera.setView({1, 2, 3}, 5, 100, 20);
    const QPointF p = camera.project({1, 2, 3}, {640, 480});
    EXPECT_NEAR(p.x(), 320, 1e-3);
    EXPECT_NEAR(p.y(), 240, 1e-3);
}

TEST(Camera, GesturesMoveTheView) {
    OrbitCamera camera;
    camera.setView({0, 0, 0}, 10, 212, 12);
    camera.zoom(1);
    EXPECT_NEAR(camera.distance(), 8.5f, 1e-5);
    camera.zoom(-2);
    EXPECT_GT(camera.distance(), 10.0f);
    camera.orbit(10, 0);
    EXPECT_NEAR(camera.yaw(), 208.0f, 1e-4);
    camera.orbit(0, 1000);
    EXPECT_EQ(camera.pitch(), 89.0f); // never over the top
    // Panning right moves the content with the mouse: the old target point moves right.
    camera.setView({0, 0, 0}, 10, 212, 12);
    camera.pan(50, 0, 500);
    EXPECT_GT(camera.project({0, 0, 0}, {500, 500}).x(), 250 + 45);
    EXPECT_NEAR(camera.project({0, 0, 0}, {500, 500}).y(), 250, 1);
}

TEST(Camera, AnEmptyBoxLeavesTheViewAsItWas) {
    OrbitCamera camera;
    camera.setView({1, 1, 1}, 3, 200, 10);
    camera.fit(Box3(), 1.0f);
    EXPECT_EQ(camera.target(), QVector3D(1, 1, 1));
    EXPECT_EQ(camera.distance(), 3.0f);
}

} // namespace
} // namespace pluvarine
