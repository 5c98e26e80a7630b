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

// Every corner of the content lies inside the view, and the content fills it in at least one
// direction (the fit is not just "far away").
TEST(CameraFit, ShowsTheWholeContentAndFillsTheView) {
    struct Case {
        Box3 content;
        QSize viewport;
        float yaw, pitch;
    };
    const Box3 pipe = box({-0.2, -0.06, -1.5}, {0.13, 0.06, 1.5}); // continuous, 3 m high
    for (const Case& c : std::initializer_list<Case>{
             {pipe, {257, 449}, 212, 12}, // the main window's preview
             {pipe, {692, 464}, 212, 12}, // a wide image
             {box({-0.64, -0.06, -1.5}, {0.13, 0.06, 1.5}), {692, 464}, 212, 12}, // bend
             {box({-5, -1, 0}, {5, 1, 0.2}), {257, 449}, 212, 12},
             {box({0, 0, 0}, {1, 1, 1}), {400, 300}, 300, -30}}) {
        OrbitCamera camera;
        camera.setView({}, 1, c.yaw, c.pitch);
        camera.fit(c.content, float(c.viewport.width()) / float(c.viewport.height()));
        const double size[2] = {double(c.viewport.width()), double(c.viewport.height())};
        double lo[2] = {1e9, 1e9}, hi[2] = {-1e9, -1e9};
        for (int i = 0; i < 8; ++i) {
            QVector3D corner;
            for (int k = 0; k < 3; ++k) {
                corner[k] = float((i >> k & 1 ? c.content.max() : c.content.min())[k]);
            }
            const QPointF p = camera.project(corner, c.viewport);
            for (const auto& [k, v] : {std::pair{0, p.x()}, {1, p.y()}}) {
                lo[k] = std::min(lo[k], v), hi[k] = std::max(hi[k], v);
                EXPECT_TRUE(v >= 0 && v <= size[k]) << "corner " << i << " at " << v;
            }
        }
        EXPECT_GT(std::max((hi[0] - lo[0]) / size[0], (hi[1] - lo[1]) / size[1]), 0.75);
    }
}

TEST(CameraFit, AnEmptyBoxLeavesTheView) {
    OrbitCamera camera;
    camera.setView({1, 2, 3}, 5, 100, 20);
    camera.fit(Box3(), 1.0f);
    EXPECT_EQ(camera.target(), QVector3D(1, 2, 3));
    EXPECT_EQ(camera.distance(), 5.0f);
}

} // namespace
} // namespace pluvarine
