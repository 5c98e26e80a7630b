#include "Assemblies.h"
#include "TestGlb.h"
#include "platform/viewer/MaterialFile.h"
#include "platform/viewer/widget/PreviewWidget.h"
#include "platform/viewer/widget/SceneRenderer.h"

#include <QDir>
#include <QImage>
#include <QOpenGLFramebufferObject>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>
#include <iostream>

namespace pluvarine::test {
namespace {

constexpr double kHeight = 3000; // H of every composed assembly, mm

// Scene point of a height above the ground (mm) at x (m) in the plane y = 0.
QVector3D at(double x, double heightMm, double y = 0) {
    return QVector3D(float(x), float(y), float(heightMm / 1000 - kHeight / 2000));
}

// Content is drawn in a signal red so that it cannot be mistaken for the backdrop.
bool isSignal(QRgb c) {
    return qRed(c) - std::max(qGreen(c), qBlue(c)) > 50;
}

int signalPixels(const QImage& image, QPointF centre, int radius) {
    int count = 0;
    for (int dy = -radius; dy <= radius; ++dy) {
        for (int dx = -radius; dx <= radius; ++dx) {
            const QPoint p(int(centre.x()) + dx, int(centre.y()) + dy);
            if (image.rect().contains(p) && isSignal(image.pixel(p))) {
                ++count;
            }
        }
    }
    return count;
}

class PreviewRender : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        s_scratch = new QTemporaryDir;
        s_workFolder = partsWorkFolder(s_scratch->path().toStdString());
        s_signal = s_scratch->filePath("Signal.ini").toStdString();
        writeText(s_signal, MaterialFile::format("Signal", 220, 20, 20, 0, 0.7f));
        s_screenshots = std::string(PLUVARINE_BINARY_DIR) + "/screenshots";
        QDir().mkpath(QString::fromStdString(s_screenshots));
    }
    static void TearDownTestSuite() { delete s_scratch; }

    // Composes the assembly in a shown 692 x 464 preview and grabs what it shows.
    QImage render(AssemblyKind kind, const std::string& material, const std::string& file) {
        PreviewWidget widget(m_scene);
        widget.resize(692, 464);
        widget.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&widget));
        const int fits = m_scene.fitRequests();
        m_daten = composeAssembly(m_scene, s_workFolder, kind, material);
        EXPECT_EQ(m_scene.fitRequests(), fits + 1);
        const QImage image = widget.grabFramebuffer();
        m_camera = widget.camera();
        const std::string path = s_screenshots + "/" + file;
        image.save(QString::fromStdString(path));
        std::cout << "screenshot: " << path << '\n';
        return image;
    }

    QPointF pixel(const QImage& image, const QVector3D& point) const {
        return m_camera.project(point, image.size());
    }

    void expectContent(const QImage& image, const QVector3D& point, const char* what) {
        const QPointF p = pixel(image, point);
        EXPECT_GE(signalPixels(image, p, 2), 13)
            << what << " not drawn at " << p.x() << "," << p.y();
    }

    void expectEmpty(const QImage& image, const QVector3D& point, const char* what) {
        const QPointF p = pixel(image, point);
        EXPECT_EQ(signalPixels(image, p, 3), 0) << what << " drawn at " << p.x() << "," << p.y();
    }

    void expectWholeAssemblyInView(const QImage& image) {
        const Box3 box = m_scene.bounds();
        ASSERT_FALSE(box.isEmpty());
        for (int i = 0; i < 8; ++i) {
            const QPointF p = pixel(image, QVector3D(float(i & 1 ? box.max()[0] : box.min()[0]),
                                                     float(i & 2 ? box.max()[1] : box.min()[1]),
                                                     float(i & 4 ? box.max()[2] : box.min()[2])));
            EXPECT_TRUE(QRectF(image.rect()).contains(p)) << p.x() << "," << p.y();
        }
        // Something is drawn near the top and the bottom of the image: the view is filled.
        int top = image.height(), bottom = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); x += 2) {
                if (isSignal(image.pixel(x, y))) {
                    top = std::min(top, y);
                    bottom = std::max(bottom, y);
                }
            }
        }
        EXPECT_LT(top, image.height() / 8);
        EXPECT_GT(bottom, image.height() * 7 / 8);
    }

    static QTemporaryDir* s_scratch;
    static std::string s_workFolder, s_signal, s_screenshots;
    ViewerScene m_scene;
    OrbitCamera m_camera;
    Daten m_daten;
};

QTemporaryDir* PreviewRender::s_scratch = nullptr;
std::string PreviewRender::s_workFolder, PreviewRender::s_signal, PreviewRender::s_screenshots;

// Overhang 0, gutter 150: W = 90, the whole pipe hangs on the axis x = -0.14 m.
TEST_F(PreviewRender, ContinuousPipeShowsWhereTheConstructionPutsIt) {
    render(AssemblyKind::Continuous, "", "continuous.png");
    const QImage image = render(AssemblyKind::Continuous, s_signal, "continuous-check.png");
    ASSERT_EQ(m_daten.design.wallOffset, 90);
    const double axis = -0.14;
    expectContent(image, at(axis, 150), "standpipe");
    expectContent(image, at(axis, 1300), "pipe, lower half");
    expectContent(image, at(axis, 2000), "pipe, upper half");
    expectContent(image, at(axis, 2900), "gutter outlet");
    expectEmpty(image, at(axis, 1300, 0.5), "anything beside the pipe");
    expectEmpty(image, at(-0.54, 2000), "anything out at the 72-degree outlet's place");
    expectWholeAssemblyInView(image);
}

// Overhang 500 with O72: W = 590. The outlet hangs 0.54 m out, the pipe comes back to the wall
// through two 72-degree bends and runs down the wall on the axis x = -0.05 m.
TEST_F(PreviewRender, Bend72AssemblyShowsWhereTheConstructionPutsIt) {
    render(AssemblyKind::Bend72, "", "bend72.png");
    const QImage image = render(AssemblyKind::Bend72, s_signal, "bend72-check.png");
    ASSERT_EQ(m_daten.design.wallOffset, 590);
    expectContent(image, at(-0.05, 150), "standpipe");
    expectContent(image, at(-0.05, 1000), "vertical pipe at the wall");
    expectContent(image, at(-0.05, 1800), "vertical pipe at the wall, higher up");
    expectContent(image, at(-0.54, 2906), "gutter outlet out at the gutter");
    expectContent(image, at(-(590 - 230.4 / 2) / 1000, 3000 - 186.5 - 274.6 / 2), "upper bend");
    expectEmpty(image, at(-0.54, 1000), "a pipe straight down from the outlet");
    expectEmpty(image, at(-0.30, 1000), "anything between wall pipe and outlet line");
    expectWholeAssemblyInView(image);
}

// Across the pipe, a metal mirrors the bright sky and the dark ground and so spans a wider
// range of brightness than grey plastic of about the same colour, which stays matt.
TEST_F(PreviewRender, MetalsLookMetallicAndPlasticDoesNot) {
    const auto spread = [&](const char* material, const char* file) {
        const QImage image = render(AssemblyKind::Continuous, s_workFolder + material, file);
        const QPointF left = pixel(image, at(-0.14, 1300, 0.04));
        const QPointF right = pixel(image, at(-0.14, 1300, -0.04));
        int lo = 255, hi = 0;
        for (int x = int(std::min(left.x(), right.x())); x <= int(std::max(left.x(), right.x()));
             ++x) {
            const int grey = qGray(image.pixel(x, int(left.y())));
            lo = std::min(lo, grey);
            hi = std::max(hi, grey);
        }
        std::cout << material << ": brightness " << lo << ".." << hi << '\n';
        return hi - lo;
    };
    const int plastic = spread("/mat/Grau.ini", "continuous-grey.png");
    const int zinc = spread("/mat/Zink.ini", "continuous-zinc.png");
    const int copper = spread("/mat/Kupfer.ini", "continuous-copper.png");
    const int alu = spread("/mat/Alu.ini", "continuous-alu.png");
    EXPECT_GT(zinc, plastic * 3 / 2);
    EXPECT_GT(copper, plastic * 3 / 2);
    EXPECT_GT(alu, plastic * 3 / 2);
}

// Two signal-red boxes, one hanging in front of the wall, one standing wholly behind it.
class WallRender : public ::testing::Test {
protected:
    void SetUp() override {
        const SurfaceLook signal{"Signal", {0.7f, 0.01f, 0.01f}, 0.0f, 0.7f};
        const auto box = std::make_shared<MeshData>(boxMesh(0.2, 0.2, 0.6));
        m_scene.addMesh(box, Matrix4d::translation(-0.3, 0.4, 0), signal, "front");
        m_scene.addMesh(box, Matrix4d::translation(0.2, -0.4, 0), signal, "behind");
    }

    QImage render(const OrbitCamera& camera) {
        PreviewWidget widget(m_scene);
        widget.resize(692, 464);
        widget.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&widget));
        widget.setCamera(camera);
        m_camera = camera;
        return widget.grabFramebuffer();
    }

    // A camera looking at the boxes' middle from the given direction, fitted, then `zoomOut`
    // wheel steps back.
    OrbitCamera camera(float yaw, float zoomOut) const {
        OrbitCamera camera;
        camera.setView({}, 1, yaw, 10);
        camera.fit(m_scene.bounds(), 692.0f / 464.0f);
        camera.zoom(-zoomOut);
        return camera;
    }

    QRgb at(const QImage& image, const QVector3D& point) const {
        return image.pixel(m_camera.project(point, image.size()).toPoint());
    }

    ViewerScene m_scene;
    OrbitCamera m_camera;
};

bool near(QRgb pixel, const QColor& colour) {
    return std::abs(qRed(pixel) - colour.red()) <= 1 &&
           std::abs(qGreen(pixel) - colour.green()) <= 1 &&
           std::abs(qBlue(pixel) - colour.blue()) <= 1;
}

// Along the middle row, where the wall starts after the background, and how many pixels in
// between are neither: multisampling blends the pixels the wall's edge cuts through.
struct WallEdge {
    int wallStart = -1;
    int blended = 0;
};

WallEdge wallEdgeOnMiddleRow(const QImage& image) {
    WallEdge edge;
    const int y = image.height() / 2;
    for (int x = 0; x < image.width() && edge.wallStart < 0; ++x) {
        const QRgb c = image.pixel(x, y);
        if (near(c, SceneRenderer::wallColor())) {
            edge.wallStart = x;
        } else if (!near(c, SceneRenderer::backgroundColor())) {
            ++edge.blended;
        }
    }
    return edge;
}

TEST_F(WallRender, FromTheFrontTheWallHidesWhatIsBehindItAndItsEdgesAreSmooth) {
    const QImage image = render(camera(OrbitCamera::kDefaultYaw, 6));
    image.save(QString::fromStdString(std::string(PLUVARINE_BINARY_DIR) + "/screenshots/wall.png"));
    EXPECT_TRUE(isSignal(at(image, {-0.3f, 0.4f, 0})));
    EXPECT_TRUE(near(at(image, {0.2f, -0.4f, 0}), SceneRenderer::wallColor()));
    EXPECT_TRUE(near(at(image, {0, 0, 0.5f}), SceneRenderer::wallColor()));
    const QColor background = SceneRenderer::backgroundColor();
    EXPECT_TRUE(near(image.pixel(0, 0), background));
    EXPECT_TRUE(near(image.pixel(image.width() - 1, image.height() - 1), background));
    const WallEdge edge = wallEdgeOnMiddleRow(image);
    EXPECT_GT(edge.wallStart, 10);
    EXPECT_GE(edge.blended, 1);
}

TEST_F(WallRender, FromBehindThereIsNoWall) {
    const QImage image = render(camera(OrbitCamera::kDefaultYaw - 180, 6));
    EXPECT_TRUE(isSignal(at(image, {-0.3f, 0.4f, 0})));
    EXPECT_TRUE(isSignal(at(image, {0.2f, -0.4f, 0})));
    int wallPixels = 0;
    for (int y = 0; y < image.height(); y += 3) {
        for (int x = 0; x < image.width(); x += 3) {
            wallPixels += near(image.pixel(x, y), SceneRenderer::wallColor()) ? 1 : 0;
        }
    }
    EXPECT_EQ(wallPixels, 0);
}

TEST_F(WallRender, WhileTheViewMovesFramesArePlainAndOnceItRestsSmooth) {
    PreviewWidget widget(m_scene);
    widget.resize(692, 464);
    widget.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
    widget.setCamera(camera(OrbitCamera::kDefaultYaw, 6));
    EXPECT_FALSE(widget.moving());
    EXPECT_GE(wallEdgeOnMiddleRow(widget.grabFramebuffer()).blended, 1);

    QTest::mousePress(&widget, Qt::LeftButton, {}, {300, 100});
    QTest::mouseMove(&widget, {303, 100});
    ASSERT_TRUE(widget.moving());
    const WallEdge moving = wallEdgeOnMiddleRow(widget.grabFramebuffer());
    EXPECT_GT(moving.wallStart, 10);
    EXPECT_EQ(moving.blended, 0);
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, {303, 100});

    for (int i = 0; i < 100 && widget.moving(); ++i) {
        QTest::qWait(PreviewWidget::kSettleMs / 5);
    }
    EXPECT_FALSE(widget.moving());
    EXPECT_GE(wallEdgeOnMiddleRow(widget.grabFramebuffer()).blended, 1);
}

// The widget resolves only where the frame is more than one flat colour: the picture is the
// same as the whole frame resolved, seen close up, fitted, from aside, from afar and from
// behind.
TEST_F(WallRender, ResolvingOnlyTheDetailGivesTheWholePicture) {
    PreviewWidget widget(m_scene);
    widget.resize(692, 464);
    widget.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
    const QSize size = widget.size() * widget.devicePixelRatio();
    const std::pair<float, float> views[] = {{OrbitCamera::kDefaultYaw, -12},
                                             {OrbitCamera::kDefaultYaw, 0},
                                             {OrbitCamera::kDefaultYaw + 55, 2},
                                             {OrbitCamera::kDefaultYaw, 6},
                                             {OrbitCamera::kDefaultYaw - 180, 3}};
    for (const auto& [yaw, zoomOut] : views) {
        const OrbitCamera view = camera(yaw, zoomOut);
        widget.setCamera(view);
        const QImage shown = widget.grabFramebuffer().convertToFormat(QImage::Format_RGB32);
        widget.makeCurrent();
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
        widget.doneCurrent();
        ASSERT_EQ(shown.size(), expected.size());
        int differing = 0;
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x) {
                differing += shown.pixel(x, y) != expected.pixel(x, y) ? 1 : 0;
            }
        }
        EXPECT_EQ(differing, 0) << "yaw " << yaw << ", zoomed out " << zoomOut;
    }
}

} // namespace
} // namespace pluvarine::test
