#include "../MacroInsertion.h"
#include "../TectaroTestSupport.h"
#include "platform/tectaro/widgets/BuildingView3D.h"
#include "platform/tectaro/widgets/TectaroWindow.h"
#include "platform/viewer/widget/PreviewWidget.h"
#include "platform/viewer/widget/SceneRenderer.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <gtest/gtest.h>

using namespace pluvarine;

namespace {

Box3 worldBounds(const ViewerObject& object) {
    Box3 box;
    const auto& lo = object.part->bounds.min();
    const auto& hi = object.part->bounds.max();
    for (int corner = 0; corner < 8; ++corner) {
        box.add(object.transform.map(
            {corner & 1 ? hi[0] : lo[0], corner & 2 ? hi[1] : lo[1], corner & 4 ? hi[2] : lo[2]}));
    }
    return box;
}

void settle(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
}

} // namespace

TEST(BuildingView3D, ShowsTheHouseWithEachDownpipeOnItsWall) {
    if (!test::realPartsAvailable()) {
        GTEST_SKIP() << "the part catalogue is not built";
    }
    QTemporaryDir folder;
    TectaroOptions options;
    options.programFolder = folder.path().toStdString();
    options.defaultBuilding = test::sampleHouse();
    TectaroHost host(options);
    auto connection = host.createConnection();
    TectaroWindow window(host, true);
    window.resize(1200, 640);
    window.show();

    struct Pick {
        test::Kind kind;
        QPointF click;
    };
    const Pick picks[] = {{test::Kind::Continuous, {5, -0.1}},
                          {test::Kind::Kink72, {10.1, 4}},
                          {test::Kind::Bend42, {5, 8.1}},
                          {test::Kind::Bend72, {-0.1, 4}}};
    std::vector<test::Inserted> inserted;
    int n = 0;
    for (const Pick& pick : picks) {
        inserted.push_back(
            test::insertDownpipe(host, *connection, pick.kind, pick.click,
                                 folder.filePath(QString(" %1.tob").arg(++n)).toStdString()));
    }
    ASSERT_NE(window.view3D(), nullptr);
    ViewerScene& scene = window.view3D()->scene();

    // Each downpipe's vertical pipe stands in front of its wall face, outside the house.
    for (const test::Inserted& in : inserted) {
        const std::string pipeName = in.element->object.name + "/Fallrohr_100_500 #" +
                                     std::to_string(in.daten.design.pipeId);
        int found = 0;
        for (const ViewerObject& object : scene.objects()) {
            if (object.part->name != pipeName) {
                continue;
            }
            const Box3 box = worldBounds(object);
            auto c = box.centre();
            c[0] -= window.view3D()->worldToScene()(0, 3); // back to host coordinates
            // Per unit of the outward normal: distance of the pipe axis from the wall face.
            const double u =
                (c[0] - in.face.x()) * in.outward.x() + (c[1] - in.face.y()) * in.outward.y();
            EXPECT_GT(u, 0.05) << pipeName;
            EXPECT_LT(u, 0.2) << pipeName;
            EXPECT_NEAR(box.min()[2], 0.11, 0.01) << pipeName;
            ++found;
        }
        EXPECT_GE(found, 1) << pipeName;
    }

    settle(600);
    PreviewWidget& preview = window.view3D()->preview();
    preview.resetView();
    settle(200);
    const QImage frame = preview.grabFramebuffer();
    ASSERT_FALSE(frame.isNull());
    const QColor background = SceneRenderer::backgroundColor();
    int content = 0;
    for (int y = 0; y < frame.height(); y += 4) {
        for (int x = 0; x < frame.width(); x += 4) {
            const QColor c = frame.pixelColor(x, y);
            content += std::abs(c.red() - background.red()) +
                                   std::abs(c.green() - background.green()) +
                                   std::abs(c.blue() - background.blue()) >
                               30
                           ? 1
                           : 0;
        }
    }
    EXPECT_GT(content, (frame.width() / 4) * (frame.height() / 4) / 10) << "the house shows";
    const std::string shots = std::string(PLUVARINE_BINARY_DIR) + "/tectaro-house";
    frame.save(QString::fromStdString(shots + "-3d.png"));
    window.screenshot(shots + "-window.png");
    // From above the south-west corner: the south and west downpipes on their walls.
    OrbitCamera camera = preview.camera();
    camera.setView(camera.target(), camera.distance() * 0.8f, 235, 35);
    preview.setCamera(camera);
    settle(200);
    preview.grabFramebuffer().save(QString::fromStdString(shots + "-3d-southwest.png"));
}
