#include "platform/tectaro/widgets/TectaroWindow.h"

#include "../TectaroTestSupport.h"
#include "platform/tectaro/widgets/PlanView.h"

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QProgressBar>
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
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, at, view.mapToGlobal(at), Qt::LeftButton,
                              type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                              Qt::NoModifier);
            QApplication::sendEvent(&view, &event);
        }
    }
    static QImage image(Qt::GlobalColor colour) {
        QImage picture(30, 30, QImage::Format_ARGB32);
        picture.fill(colour);
        return picture;
    }
};

} // namespace

TEST_F(WindowFixture, TheMacroButtonShowsTheMacrosImageTooltipAndState) {
    EXPECT_EQ(window->view3D(), nullptr) << "offscreen: no 3D view";
    for (const char* name : {"tectaroNew", "tectaroOpen", "tectaroSave", "tectaroClose"}) {
        EXPECT_NE(window->findChild<QAction*>(name), nullptr) << name;
    }
    QAction* action = window->findChild<QAction*>("tectaroMacroButton");
    ASSERT_EQ(action, window->macroButtonAction());
    EXPECT_FALSE(action->isVisible()) << "no macro button yet";
    EXPECT_FALSE(host->pressMacroButton());
    const std::int32_t id = connection->AddMacroButton(HostPicture{image(Qt::darkGreen)},
                                                       0x01030204, "Downpipe macro", 4733);
    EXPECT_TRUE(action->isVisible());
    EXPECT_EQ(action->toolTip(), QStringLiteral("Downpipe macro"));
    EXPECT_EQ(action->icon().pixmap(30, 30).toImage().pixelColor(15, 15), QColor(Qt::darkGreen));
    EXPECT_EQ(connection->SetMacroButtonState(id, 1, 0, true, false), 1);
    EXPECT_EQ(connection->SetMacroButtonState(id + 1, 1, 0, true, true), 0);
    EXPECT_FALSE(action->isEnabled());
    action->trigger(); // disabled: nothing
    EXPECT_FALSE(host->pressMacroButton());
    connection->SetMacroButtonState(id, 1, 0, true, true);
    action->trigger();
    EXPECT_TRUE(events.buttonIds.empty()) << "the press is queued";
    run();
    EXPECT_EQ(events.buttonIds, std::vector<std::int32_t>{id});
    connection->SetMacroButtonState(id, 1, 0, false, true);
    EXPECT_FALSE(action->isVisible());
    EXPECT_FALSE(host->pressMacroButton());
}

TEST_F(WindowFixture, AClickOnTheWallsExteriorSideIsValidAndLandsOnTheFace) {
    const QPointF before = window->planView().toPlan(QPointF(100, 100));
    leftClickAt({4, -0.15}); // without a request the click pans instead of answering
    EXPECT_FALSE(window->clickAt({4, -0.15}));
    EXPECT_EQ(window->planView().toPlan(QPointF(100, 100)), before);
    const struct {
        QPointF plan;
        bool valid;
        float x, y;
    } cases[] = {{{4, -0.15}, true, 4, 0}, {{10.1, 2}, true, 10, 2},    {{6, 8.2}, true, 6, 8},
                 {{-0.05, 5}, true, 0, 5}, {{4, 0.25}, false, 4, 0.25}, {{4, 3}, false, 4, 3},
                 {{4, -1}, false, 4, -1}};
    for (const auto& c : cases) {
        connection->RequestOneClick("", HostPicture{image(Qt::red)}, 1);
        EXPECT_EQ(window->planView().cursor().pixmap().size(), QSize(30, 30));
        leftClickAt(c.plan);
        EXPECT_FALSE(host->clickRequest());
    }
    run();
    ASSERT_EQ(events.clicks.size(), std::size(cases));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& click = events.clicks[i];
        EXPECT_EQ(click.valid, cases[i].valid) << i;
        // Widget pixels and back: within a pixel for the invalid ones, exact on the face.
        EXPECT_NEAR(click.x, cases[i].x, cases[i].valid ? 0.03f : 0.05f) << i;
        EXPECT_NEAR(click.y, cases[i].y, cases[i].valid ? 0.03f : 0.05f) << i;
    }
    EXPECT_FLOAT_EQ(events.clicks[0].y, 0.0f);
    EXPECT_FLOAT_EQ(events.clicks[1].x, 10.0f);
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

TEST_F(WindowFixture, ProjectActionsRaiseTheirEventsInOrderAndTheScreenshotShowsThePlan) {
    ASSERT_TRUE(window->saveProject(path("house.tproj")));
    run();
    EXPECT_TRUE(window->windowTitle().contains("house.tproj"));
    window->closeProject();
    run();
    EXPECT_TRUE(window->windowTitle().contains("no project"));
    ASSERT_TRUE(window->openProject(path("house.tproj")));
    window->newProject();
    run();
    window->close();
    run();
    EXPECT_EQ(events.names,
              (std::vector<std::string>{"SaveStart", "SaveBuilding", "ProjectClosed",
                                        "LoadBuilding(b)", "LoadBuilding()", "LoadComplete",
                                        "ProjectClosed", "NewCurrentProject", "ProgramExit"}));
    ASSERT_TRUE(window->screenshot(path("plan.png")));
    const QImage shot(QString::fromStdString(path("plan.png")));
    const QPoint wall =
        window->planView().mapTo(window.get(), window->planView().toWidget({5, 0.15}).toPoint());
    EXPECT_LT(shot.pixelColor(wall).lightness(), 200) << "the south wall's fill";
}
