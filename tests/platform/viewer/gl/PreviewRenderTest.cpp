#include "Assemblies.h"
#include "ViewerFixture.h"
#include "platform/viewer/MaterialFile.h"
#include "platform/viewer/widget/PreviewWidget.h"
#include "platform/viewer/widget/SceneRenderer.h"

#include <QDir>
#include <QImage>
#include <QOpenGLFramebufferObject>
#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

namespace pluvarine::test {
namespace {

const std::string kScreenshots = PLUVARINE_BINARY_DIR "/screenshots/";

// Scene point of a height above the ground (mm; every assembly is 3000 high) at x (m).
QVector3D at(double x, double heightMm, double y = 0) {
    return QVector3D(float(x), float(y), float(heightMm / 1000 - 1.5));
}

// Content is drawn in a signal red so that it cannot be mistaken for the backdrop.
bool isSignal(QRgb c) {
    return qRed(c) - std::max(qGreen(c), qBlue(c)) > 50;
}

bool near(QRgb pixel, const QColor& colour) {
    return std::max({std::abs(qRed(pixel) - colour.red()), std::abs(qGreen(pixel) - colour.green()),
                     std::abs(qBlue(pixel) - colour.blue())}) <= 1;
}

// A shown 692 x 464 preview; every image it shows is saved to the screenshots folder.
class Render : public ::testing::Test {
protected:
    void SetUp() override {
        QDir().mkpath(QString::fromStdString(kScreenshots)); // also the place of test materials
        m_widget.resize(692, 464);
        m_widget.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_widget));
    }

    QImage grab(const std::string& file) {
        const QImage image = m_widget.grabFramebuffer().convertToFormat(QImage::Format_RGB32);
        image.save(QString::fromStdString(kScreenshots + file));
        return image;
    }

    QImage compose(const Assembly& assembly, const std::string& material, const std::string& file) {
        composeAssembly(m_scene, assembly, material);
        return grab(file);
    }

    int signalPixels(const QImage& image, const QVector3D& point, int radius) const {
        const QPoint centre = m_widget.camera().project(point, image.size()).toPoint();
        int count = 0;
        for (int dy = -radius; dy <= radius; ++dy) {
            for (int dx = -radius; dx <= radius; ++dx) {
                const QPoint p = centre + QPoint(dx, dy);
                count += image.rect().contains(p) && isSignal(image.pixel(p)) ? 1 : 0;
            }
        }
        return count;
    }

    ViewerScene m_scene;
    PreviewWidget m_widget{m_scene};
};

// Continuous (overhang 0, W = 90): the whole pipe hangs on the axis x = -0.14 m.
// Bend72 (overhang 500 with O72, W = 590): the outlet hangs 0.54 m out, two 72-degree bends
// bring the pipe back to the wall, down which it runs on the axis x = -0.05 m.
const struct {
    Assembly assembly;
    std::vector<std::tuple<QVector3D, bool, const char*>> probes; // point, drawn there, what
} kRenders[] = {
    {kContinuous,
     {{at(-0.14, 150), true, "standpipe"},
      {at(-0.14, 1300), true, "pipe, lower half"},
      {at(-0.14, 2900), true, "gutter outlet"},
      {at(-0.14, 1300, 0.5), false, "anything beside the pipe"},
      {at(-0.54, 2000), false, "anything out at the 72-degree outlet's place"}}},
    {kBend72,
     {{at(-0.05, 150), true, "standpipe"},
      {at(-0.05, 1000), true, "vertical pipe at the wall"},
      {at(-0.54, 2906), true, "gutter outlet out at the gutter"},
      {at(-(590 - 230.4 / 2) / 1000, 3000 - 186.5 - 274.6 / 2), true, "upper bend"},
      {at(-0.54, 1000), false, "a pipe straight down from the outlet"},
      {at(-0.30, 1000), false, "anything between wall pipe and outlet line"}}},
};

TEST_F(Render, EachConstructionShowsWhereItPutsThePipe) {
    const std::string signal = kScreenshots + "Signal.ini";
    writeText(signal, MaterialFile::format("Signal", 220, 20, 20, 0, 0.7f));
    for (const auto& r : kRenders) {
        const std::string name = r.assembly.name;
        SCOPED_TRACE(name);
        compose(r.assembly, "", name + ".png");
        const QImage image = compose(r.assembly, signal, name + "-check.png");
        for (const auto& [point, drawn, what] : r.probes) {
            EXPECT_TRUE(drawn ? signalPixels(image, point, 2) >= 13
                              : signalPixels(image, point, 3) == 0)
                << what << (drawn ? " not drawn" : " drawn");
        }
        // The whole assembly is in view, and something is drawn near the top and the bottom of
        // the image: the view is filled.
        expectShown(m_widget.camera(), m_scene.bounds(), image.size());
        int top = image.height(), bottom = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); x += 2) {
                top = isSignal(image.pixel(x, y)) ? std::min(top, y) : top;
                bottom = isSignal(image.pixel(x, y)) ? y : bottom;
            }
        }
        EXPECT_LT(top, image.height() / 8);
        EXPECT_GT(bottom, image.height() * 7 / 8);
    }
}

// Across the pipe, a metal mirrors the bright sky and the dark ground and so spans a wider
// range of brightness than grey plastic of about the same colour, which stays matt.
TEST_F(Render, MetalsLookMetallicAndPlasticDoesNot) {
    const auto spread = [&](const std::string& material) {
        const QImage image = compose(kContinuous, PLUVARINE_WORKFOLDER "/mat/" + material + ".ini",
                                     "continuous-" + material + ".png");
        const QPoint a = m_widget.camera().project(at(-0.14, 1300, 0.04), image.size()).toPoint();
        const QPoint b = m_widget.camera().project(at(-0.14, 1300, -0.04), image.size()).toPoint();
        int lo = 255, hi = 0;
        for (int x = std::min(a.x(), b.x()); x <= std::max(a.x(), b.x()); ++x) {
            lo = std::min(lo, qGray(image.pixel(x, a.y())));
            hi = std::max(hi, qGray(image.pixel(x, a.y())));
        }
        return hi - lo;
    };
    const int plastic = spread("Grau");
    for (const char* metal : {"Zink", "Kupfer", "Alu"}) {
        EXPECT_GT(spread(metal), plastic * 3 / 2) << metal << " against plastic " << plastic;
    }
}

TEST_F(Render, MouseOrbitsPansAndZoomsAndDoubleClickShowsEverything) {
    composeAssembly(m_scene, kContinuous);
    const OrbitCamera fitted = m_widget.camera();
    for (const auto& [button, to] : {std::pair{Qt::LeftButton, QPoint(240, 200)},
                                     std::pair{Qt::RightButton, QPoint(200, 260)}}) {
        QTest::mousePress(&m_widget, button, {}, {200, 200});
        QTest::mouseMove(&m_widget, to);
        QTest::mouseRelease(&m_widget, button, {}, to);
    }
    EXPECT_TRUE(m_widget.camera().yaw() != fitted.yaw() &&
                m_widget.camera().target() != fitted.target());
    QWheelEvent wheel({200, 200}, m_widget.mapToGlobal(QPoint(200, 200)), {}, {0, 240},
                      Qt::NoButton, {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&m_widget, &wheel);
    EXPECT_LT(m_widget.camera().distance(), fitted.distance() * 0.8f);
    QTest::mouseDClick(&m_widget, Qt::LeftButton, {}, {200, 200});
    EXPECT_EQ(m_widget.camera().yaw(), OrbitCamera::kDefaultYaw);
    EXPECT_EQ(m_widget.camera().target(), fitted.target());
    EXPECT_FLOAT_EQ(m_widget.camera().distance(), fitted.distance());
    QApplication::sendEvent(&m_widget, &wheel); // the user moves away again: a rebuild refits
    composeAssembly(m_scene, kKink72);
    EXPECT_GT(m_widget.camera().distance(), fitted.distance() * 0.8f);
}

// Two signal-red pipes 0.2 m thick and 0.6 m long, one hanging in front of the wall, one
// standing wholly behind it, seen from the front, fitted and then six wheel steps back. The
// widget resolves only where the frame is more than one flat colour: the picture is the same as
// the whole frame resolved. The wall hides the pipe behind it. While the view moves, frames are
// plain; once it rests, smooth again.
TEST_F(Render, ResolvingOnlyTheDetailGivesTheWholePictureAndMovingFramesArePlain) {
    const SurfaceLook signal{"Signal", {0.7f, 0.01f, 0.01f}, 0.0f, 0.7f};
    for (const auto& [x, y] : {std::pair{-0.3, 0.4}, {0.2, -0.4}}) {
        m_scene.addFile(PLUVARINE_WORKFOLDER "/res/Fallrohr_100_500.v3o",
                        Matrix4d::translation(x, y, 0) * Matrix4d::scaling(2, 2, 1.2), signal);
    }
    OrbitCamera view;
    view.setView({}, 1, OrbitCamera::kDefaultYaw, 10);
    view.fit(m_scene.bounds(), 692.0f / 464.0f);
    view.zoom(-6);
    m_widget.setCamera(view);
    const QImage shown = grab("wall.png");
    EXPECT_EQ(signalPixels(shown, {-0.3f, 0.4f, 0}, 2), 25);
    EXPECT_EQ(signalPixels(shown, {0.2f, -0.4f, 0}, 2), 0);

    const QSize size = m_widget.size() * m_widget.devicePixelRatio();
    m_widget.makeCurrent();
    QOpenGLFramebufferObjectFormat format;
    format.setSamples(4);
    format.setAttachment(QOpenGLFramebufferObject::Depth);
    QOpenGLFramebufferObject multisampled(size, format);
    QOpenGLFramebufferObject whole(size);
    SceneRenderer renderer;
    multisampled.bind();
    renderer.render(m_scene, view, size);
    QOpenGLFramebufferObject::blitFramebuffer(&whole, &multisampled);
    const QImage expected = whole.toImage().convertToFormat(QImage::Format_RGB32);
    renderer.release();
    m_widget.doneCurrent();
    EXPECT_TRUE(shown == expected) << "the partly resolved frame differs from the whole one";

    // Pixels along the middle row between the background and the wall's start: multisampling
    // blends the pixels the wall's edge cuts through.
    const auto blendedAtWallEdge = [&] {
        const QImage image = m_widget.grabFramebuffer();
        int blended = 0;
        for (int x = 0; x < image.width(); ++x) {
            const QRgb c = image.pixel(x, image.height() / 2);
            if (near(c, SceneRenderer::wallColor())) {
                EXPECT_GT(x, 10) << "the wall starts at the image's edge";
                return blended;
            }
            blended += near(c, SceneRenderer::backgroundColor()) ? 0 : 1;
        }
        return -1; // no wall on the middle row
    };
    QTest::mousePress(&m_widget, Qt::LeftButton, {}, {300, 100});
    QTest::mouseMove(&m_widget, {303, 100});
    ASSERT_TRUE(m_widget.moving());
    EXPECT_EQ(blendedAtWallEdge(), 0);
    QTest::mouseRelease(&m_widget, Qt::LeftButton, {}, {303, 100});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !m_widget.moving(); }, 20 * PreviewWidget::kSettleMs));
    EXPECT_GE(blendedAtWallEdge(), 1);
}

// A host's view of many downpipes: from afar their parts are drawn from coarser meshes, and the
// picture stays the one the full meshes give, bar pixels along edges (a pipe seen 7 pixels wide
// may lose up to three quarters of a pixel on either side); zoomed in, what lies outside is left
// out and nothing inside goes missing.
TEST_F(Render, LevelsOfDetailDrawFewerTrianglesAndTheSamePicture) {
    ViewerScene many;
    for (int row = 0; row < 8; ++row) {
        for (const Assembly& assembly : kAllAssemblies) {
            ViewerScene composed;
            composeAssembly(composed, assembly, PLUVARINE_WORKFOLDER "/mat/Kupfer.ini");
            const Matrix4d offset =
                Matrix4d::translation(0.7 * double(&assembly - kAllAssemblies), 1.5 * row, 0);
            for (const ViewerObject& object : composed.objects()) {
                for (std::size_t i = 0; object.drawn() && i < object.part->pieces.size(); ++i) {
                    many.addMesh(object.part->pieces[i].mesh, offset * object.transform,
                                 object.look(i));
                }
            }
        }
    }
    const QSize size(800, 500);
    OrbitCamera far;
    far.reset(many.bounds(), 1.6f);
    OrbitCamera close = far;
    close.zoom(8);
    m_widget.makeCurrent();
    QOpenGLFramebufferObject target(size, QOpenGLFramebufferObject::Depth);
    const auto draw = [&](const OrbitCamera& camera, bool levels, std::size_t& triangles) {
        SceneRenderer renderer;
        renderer.setBackdrop(false);
        renderer.setLevelsOfDetail(levels);
        target.bind();
        renderer.render(many, camera, size);
        triangles = renderer.trianglesDrawn();
        renderer.release();
        return target.toImage().convertToFormat(QImage::Format_RGB32);
    };
    const std::tuple<OrbitCamera, const char*, int> views[] = {{far, "far", 8},
                                                               {close, "close", 40}};
    for (const auto& [camera, name, share] : views) {
        std::size_t full = 0, coarse = 0;
        const QImage expected = draw(camera, false, full);
        const QImage shown = draw(camera, true, coarse);
        shown.save(QString::fromStdString(kScreenshots + "levels-" + name + ".png"));
        int content = 0, differing = 0;
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                content += near(expected.pixel(x, y), SceneRenderer::backgroundColor()) ? 0 : 1;
                const QRgb a = expected.pixel(x, y), b = shown.pixel(x, y);
                differing += std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                                       std::abs(qBlue(a) - qBlue(b))}) > 24;
            }
        }
        SCOPED_TRACE(name);
        EXPECT_LT(coarse * 3, full);
        EXPECT_GT(content, 10000);
        EXPECT_LT(differing, content / share);
    }
    m_widget.doneCurrent();
}

} // namespace
} // namespace pluvarine::test
