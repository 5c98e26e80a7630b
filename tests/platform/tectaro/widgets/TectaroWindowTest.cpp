#include "platform/tectaro/widgets/TectaroWindow.h"

#include "../TectaroTestSupport.h"
#include "platform/tectaro/widgets/PlanView.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QProgressBar>
#include <QTemporaryDir>
#include <QToolBar>
#include <QToolButton>
#include <gtest/gtest.h>

using namespace pluvarine;

namespace {

struct WindowFixture : ::testing::Test, test::SampleHost {
    std::unique_ptr<TectaroWindow> window;

    void SetUp() override {
        window = std::make_unique<TectaroWindow>(*host);
        window->resize(800, 600);
        window->show();
        ASSERT_TRUE(connectMacro());
    }
    void TearDown() override { window.reset(); }

    void leftClickAt(QPointF plan) {
        PlanView& view = window->planView();
        const QPointF at = view.toWidget(plan);
        QMouseEvent press(QEvent::MouseButtonPress, at, view.mapToGlobal(at), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&view, &press);
        QMouseEvent release(QEvent::MouseButtonRelease, at, view.mapToGlobal(at), Qt::LeftButton,
                            Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&view, &release);
    }

    QImage cursorImage() const {
        QImage cursor(30, 30, QImage::Format_ARGB32);
        cursor.fill(Qt::red);
        return cursor;
    }
};

} // namespace

TEST_F(WindowFixture, TheOffscreenWindowHasNo3DViewAndTheToolbarEntries) {
    EXPECT_EQ(window->view3D(), nullptr);
    for (const char* name :
         {"tectaroNew", "tectaroOpen", "tectaroSave", "tectaroClose", "tectaroMacroButton"}) {
        EXPECT_NE(window->findChild<QAction*>(name), nullptr) << name;
    }
    EXPECT_FALSE(window->macroButtonAction()->isVisible()) << "no macro button yet";
}

TEST_F(WindowFixture, TheMacroButtonShowsTheMacrosImageTooltipAndState) {
    QImage image(30, 30, QImage::Format_ARGB32);
    image.fill(Qt::darkGreen);
    const std::int32_t id =
        connection->AddMacroButton(HostPicture{image}, 0x01030204, "Downpipe macro", 4733);
    QAction* action = window->macroButtonAction();
    EXPECT_TRUE(action->isVisible());
    EXPECT_EQ(action->toolTip(), QStringLiteral("Downpipe macro"));
    EXPECT_EQ(action->icon().pixmap(30, 30).toImage().pixelColor(15, 15), QColor(Qt::darkGreen));
    connection->SetMacroButtonState(id, 1, 0, true, false);
    EXPECT_FALSE(action->isEnabled());
    action->trigger(); // disabled: nothing
    connection->SetMacroButtonState(id, 1, 0, true, true);
    EXPECT_TRUE(action->isEnabled());
    action->trigger();
    test::runUntilIdle(*host);
    EXPECT_EQ(events.buttonIds, std::vector<std::int32_t>{id});
    connection->SetMacroButtonState(id, 1, 0, false, true);
    EXPECT_FALSE(action->isVisible());
}

TEST_F(WindowFixture, AClickOnTheWallsExteriorSideIsValidAndLandsOnTheFace) {
    struct Case {
        QPointF plan;
        bool valid;
        float x, y;
    };
    const Case cases[] = {
        {{4, -0.15}, true, 4, 0},    // outside the south wall
        {{10.1, 2}, true, 10, 2},    // outside the east wall
        {{6, 8.2}, true, 6, 8},      // outside the north wall
        {{-0.05, 5}, true, 0, 5},    // outside the west wall
        {{4, 0.25}, false, 4, 0.25}, // inner half of the wall
        {{4, 3}, false, 4, 3},       // inside the house
        {{4, -1}, false, 4, -1},     // away from the wall
    };
    for (const Case& c : cases) {
        connection->RequestOneClick("", HostPicture{cursorImage()}, 1);
        EXPECT_EQ(window->planView().cursor().pixmap().size(), QSize(30, 30));
        leftClickAt(c.plan);
        EXPECT_FALSE(host->clickRequest());
    }
    test::runUntilIdle(*host);
    ASSERT_EQ(events.clickValid.size(), std::size(cases));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        EXPECT_EQ(events.clickValid[i], cases[i].valid) << i;
        // Widget pixels and back: within a pixel for the invalid ones, exact on the face.
        const float tolerance = cases[i].valid ? 0.03f : 0.05f;
        EXPECT_NEAR(events.clickPoints[i].first, cases[i].x, tolerance) << i;
        EXPECT_NEAR(events.clickPoints[i].second, cases[i].y, tolerance) << i;
    }
    // On the face exactly: the coordinate across the wall is the face's.
    EXPECT_FLOAT_EQ(events.clickPoints[0].second, 0.0f);
    EXPECT_FLOAT_EQ(events.clickPoints[1].first, 10.0f);
}

TEST_F(WindowFixture, ClicksWithoutARequestPanInsteadOfAnswering) {
    const QPointF before = window->planView().toPlan(QPointF(100, 100));
    leftClickAt({4, -0.15});
    test::runUntilIdle(*host);
    EXPECT_TRUE(events.clickValid.empty());
    EXPECT_EQ(window->planView().toPlan(QPointF(100, 100)), before);
    EXPECT_FALSE(window->clickAt({4, -0.15}));
}

TEST_F(WindowFixture, PromptAndProgressShowInTheStatusBar) {
    auto* prompt = window->findChild<QLabel*>("tectaroPrompt");
    auto* progress = window->findChild<QProgressBar*>("tectaroProgress");
    ASSERT_TRUE(prompt && progress);
    connection->ShowPrompt("Please click on the outside of the wall!");
    EXPECT_EQ(prompt->text(), QStringLiteral("Please click on the outside of the wall!"));
    connection->ShowProgress("Packing", 40);
    EXPECT_TRUE(progress->isVisible());
    EXPECT_EQ(progress->value(), 40);
    connection->EndProgress();
    EXPECT_FALSE(progress->isVisible());
}

TEST_F(WindowFixture, ScriptedProjectActionsAndAScreenshot) {
    const std::string file = folder.filePath("house.tproj").toStdString();
    ASSERT_TRUE(window->saveProject(file));
    test::runUntilIdle(*host);
    EXPECT_TRUE(window->windowTitle().contains("house.tproj"));
    window->closeProject();
    test::runUntilIdle(*host);
    EXPECT_TRUE(window->windowTitle().contains("no project"));
    ASSERT_TRUE(window->openProject(file));
    window->newProject();
    test::runUntilIdle(*host);
    EXPECT_EQ(events.names,
              (std::vector<std::string>{"SaveStart", "SaveBuilding", "ProjectClosed",
                                        "LoadBuilding(b)", "LoadBuilding()", "LoadComplete",
                                        "ProjectClosed", "NewCurrentProject"}));
    const std::string shot = folder.filePath("plan.png").toStdString();
    ASSERT_TRUE(window->screenshot(shot));
    QImage image(QString::fromStdString(shot));
    ASSERT_FALSE(image.isNull());
    // The south wall's fill shows where the plan puts it.
    const QPoint wall =
        window->planView().mapTo(window.get(), window->planView().toWidget({5, 0.15}).toPoint());
    EXPECT_LT(image.pixelColor(wall).lightness(), 200);
}

TEST_F(WindowFixture, ClosingTheWindowRaisesProgramExit) {
    window->close();
    test::runUntilIdle(*host);
    EXPECT_EQ(events.names, std::vector<std::string>{"ProgramExit"});
}
