#include "platform/viewer/widget/PreviewWidget.h"

#include "Assemblies.h"

#include <QTemporaryDir>
#include <QTest>
#include <QWheelEvent>
#include <gtest/gtest.h>

namespace pluvarine::test {
namespace {

class Preview : public ::testing::Test {
protected:
    void SetUp() override { m_workFolder = partsWorkFolder(m_scratch.path().toStdString()); }
    QTemporaryDir m_scratch;
    std::string m_workFolder;
    ViewerScene m_scene;
};

TEST_F(Preview, CreatedHiddenItTakesAWholeRebuildWithoutShowing) {
    {
        PreviewWidget widget(m_scene);
        composeAssembly(m_scene, m_workFolder, AssemblyKind::Bend42);
        EXPECT_FALSE(widget.isVisible());
        const auto c = m_scene.bounds().centre();
        EXPECT_NEAR(widget.camera().target().z(), c[2], 1e-5);
    }
    composeAssembly(m_scene, m_workFolder, AssemblyKind::Continuous); // no widget any more
}

TEST_F(Preview, InstallsItsSaveDialogWhileItLives) {
    EXPECT_FALSE(m_scene.hasSaveDialog());
    {
        PreviewWidget widget(m_scene);
        EXPECT_TRUE(m_scene.hasSaveDialog());
    }
    EXPECT_FALSE(m_scene.hasSaveDialog());
}

TEST_F(Preview, MouseOrbitsPansAndZoomsAndDoubleClickShowsEverything) {
    PreviewWidget widget(m_scene);
    widget.resize(400, 400);
    widget.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
    composeAssembly(m_scene, m_workFolder, AssemblyKind::Continuous);
    const OrbitCamera fitted = widget.camera();

    QTest::mousePress(&widget, Qt::LeftButton, {}, {200, 200});
    QTest::mouseMove(&widget, {240, 200});
    QTest::mouseRelease(&widget, Qt::LeftButton, {}, {240, 200});
    EXPECT_NE(widget.camera().yaw(), fitted.yaw());

    QTest::mousePress(&widget, Qt::RightButton, {}, {200, 200});
    QTest::mouseMove(&widget, {200, 260});
    QTest::mouseRelease(&widget, Qt::RightButton, {}, {200, 260});
    EXPECT_NE(widget.camera().target(), fitted.target());

    QWheelEvent wheel({200, 200}, widget.mapToGlobal(QPoint(200, 200)), {}, {0, 240}, Qt::NoButton,
                      {}, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &wheel);
    EXPECT_LT(widget.camera().distance(), fitted.distance() * 0.8f);

    QTest::mouseDClick(&widget, Qt::LeftButton, {}, {200, 200});
    EXPECT_EQ(widget.camera().yaw(), OrbitCamera::kDefaultYaw);
    EXPECT_EQ(widget.camera().target(), fitted.target());
    EXPECT_FLOAT_EQ(widget.camera().distance(), fitted.distance());
}

TEST_F(Preview, UpdateViewRefitsAfterTheUserMovedAway) {
    PreviewWidget widget(m_scene);
    widget.resize(300, 500);
    composeAssembly(m_scene, m_workFolder, AssemblyKind::Continuous);
    const OrbitCamera fitted = widget.camera();
    OrbitCamera away = fitted;
    away.zoom(-10);
    widget.setCamera(away);
    composeAssembly(m_scene, m_workFolder, AssemblyKind::Kink72);
    EXPECT_LT(widget.camera().distance(), away.distance());
}

} // namespace
} // namespace pluvarine::test
