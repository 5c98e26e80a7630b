#include "../TectaroTestSupport.h"
#include "platform/tectaro/widgets/BuildingView3D.h"
#include "platform/tectaro/widgets/TectaroWindow.h"
#include "platform/viewer/widget/PreviewWidget.h"
#include "platform/viewer/widget/SceneRenderer.h"

#include <QApplication>
#include <QDeadlineTimer>

using namespace pluvarine;

TEST(BuildingView3D, ShowsTheHouse) {
    test::SampleHost sample;
    test::RecordingMessages messages;
    TectaroWindow window(*sample.host, messages, messages, true);
    window.resize(1200, 640);
    window.show();
    ASSERT_NE(window.view3D(), nullptr);
    PreviewWidget& preview = window.view3D()->preview();
    preview.resetView();
    for (QDeadlineTimer wait(600); !wait.hasExpired();) {
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    const QImage frame = preview.grabFramebuffer();
    ASSERT_FALSE(frame.isNull());
    const QColor bg = SceneRenderer::backgroundColor();
    int content = 0; // sampled pixels that differ from the background
    for (int y = 0; y < frame.height(); y += 4) {
        for (int x = 0; x < frame.width(); x += 4) {
            const QColor c = frame.pixelColor(x, y);
            const int difference = std::abs(c.red() - bg.red()) + std::abs(c.green() - bg.green()) +
                                   std::abs(c.blue() - bg.blue());
            content += difference > 30 ? 1 : 0;
        }
    }
    EXPECT_GT(content, (frame.width() / 4) * (frame.height() / 4) / 10) << "the house shows";
    frame.save(QString(PLUVARINE_BINARY_DIR) + "/tectaro-house-3d.png");
}
