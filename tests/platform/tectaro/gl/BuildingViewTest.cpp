#include "../MacroInsertion.h"
#include "../TectaroTestSupport.h"
#include "platform/tectaro/widgets/BuildingView3D.h"
#include "platform/tectaro/widgets/TectaroWindow.h"
#include "platform/viewer/widget/PreviewWidget.h"
#include "platform/viewer/widget/SceneRenderer.h"

#include <QApplication>
#include <QElapsedTimer>
#include <gtest/gtest.h>

using namespace pluvarine;

namespace {

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
    test::SampleHost sample;
    TectaroWindow window(*sample.host, true);
    window.resize(1200, 640);
    window.show();
    const std::pair<test::Kind, QPointF> picks[] = {{test::Kind::Continuous, {5, -0.1}},
                                                    {test::Kind::Kink72, {10.1, 4}},
                                                    {test::Kind::Bend42, {5, 8.1}},
                                                    {test::Kind::Bend72, {-0.1, 4}}};
    std::vector<test::Inserted> inserted;
    for (const auto& [kind, click] : picks) {
        const std::string file =
            sample.path((" " + std::to_string(inserted.size() + 1) + ".tob").c_str());
        inserted.push_back(
            test::insertDownpipe(*sample.host, *sample.connection, kind, click, file));
    }
    ASSERT_NE(window.view3D(), nullptr);
    // Each downpipe's vertical pipe stands in front of its wall face, outside the house.
    for (const test::Inserted& in : inserted) {
        const std::string pipeName = in.element->object.name + "/Fallrohr_100_500 #" +
                                     std::to_string(in.daten.design.pipeId);
        int found = 0;
        for (const ViewerObject& object : window.view3D()->scene().objects()) {
            if (object.part->name != pipeName) {
                continue;
            }
            Box3 box;
            const auto &lo = object.part->bounds.min(), &hi = object.part->bounds.max();
            for (int k = 0; k < 8; ++k) {
                box.add(object.transform.map(
                    {k & 1 ? hi[0] : lo[0], k & 2 ? hi[1] : lo[1], k & 4 ? hi[2] : lo[2]}));
            }
            auto c = box.centre();
            c[0] -= window.view3D()->worldToScene()(0, 3); // back to host coordinates
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
                       30;
        }
    }
    EXPECT_GT(content, (frame.width() / 4) * (frame.height() / 4) / 10) << "the house shows";
    frame.save(QString(PLUVARINE_BINARY_DIR) + "/tectaro-house-3d.png");
}
