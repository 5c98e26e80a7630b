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
    for (QDeadlineTimer wait(600); !wait.hasExpired();)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    const QImage frame = preview.grabFramebuffer();
    ASSERT_FALSE(frame.isNull());
    const QColor bg = SceneRenderer::backgroundColor();
    int content = 0; // sampled pixels that differ from the background
    for (int y = 0; y < frame.height(); y += 4)
        for (int x = 0; x < frame.width(); x += 4) {
            const QColor c = frame.pixelColor(x, y);
            const int difference = std::abs(c.red() - bg.red()) + std::abs(c.green() - bg.green()) +
                                   std::abs(c.blue() - bg.blue());
            content += difference > 30 ? 1 : 0;
        }
    EXPECT_GT(content, (frame.width() / 4) * (frame.height() / 4) / 10) << "the house shows";
    frame.save(QString(PLUVARINE_BINARY_DIR) + "/tectaro-house-3d.png");
}

// An insertion adds the new element's objects and leaves the others as they are; a move places
// the moved element's objects anew, under the same ids.
TEST(BuildingView3D, InsertionsAndMovesChangeOnlyTheirElement) {
    test::SampleHost sample;
    ASSERT_NE(sample.host->project(), nullptr);
    BuildingView3D view(*sample.host);
    const std::size_t building = view.scene().objects().size();
    const auto element = [] {
        auto made = std::make_shared<PlacedElement>();
        made->object = ObjectFile::read(PLUVARINE_WORKFOLDER "/res/Rohrschelle_100.v3o");
        return made;
    };
    const auto first = element(), second = element();
    sample.host->commitElement(first);
    const std::vector<ViewerObject> before = view.scene().objects();
    ASSERT_GT(before.size(), building);
    sample.host->commitElement(second);
    ASSERT_EQ(view.scene().objects().size(), before.size() + (before.size() - building));
    for (std::size_t i = 0; i < before.size(); ++i)
        EXPECT_EQ(view.scene().objects()[i].id, before[i].id) << i;
    first->matrix.at(0, 3) += 2.0f;
    sample.host->elementMoved(first);
    EXPECT_EQ(view.scene().objects()[building].id, before[building].id);
    EXPECT_NE(view.scene().objects()[building].transform.columnMajor(),
              before[building].transform.columnMajor());
}
