#include "platform/tectaro/widgets/TectaroWindow.h"

#include "../TectaroTestSupport.h"
#include "platform/tectaro/widgets/PartsListDialog.h"
#include "platform/tectaro/widgets/PlanView.h"
#include "store/text/LoadText.h"

#include <QAction>
#include <QApplication>
#include <QMouseEvent>
#include <QTableWidget>

using namespace pluvarine;

struct WindowFixture : test::ConnectedHost {
    test::RecordingMessages messages;
    TectaroWindow window{*host, messages, messages};
    const QImage picture{30, 30, QImage::Format_ARGB32};

    void SetUp() override {
        ConnectedHost::SetUp();
        window.resize(800, 600);
        window.show();
    }
    void leftClickAt(QPointF plan) {
        PlanView& view = window.planView();
        const QPointF at = view.toWidget(plan);
        for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
            QMouseEvent event(type, at, view.mapToGlobal(at), Qt::LeftButton,
                              type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                              Qt::NoModifier);
            QApplication::sendEvent(&view, &event);
        }
    }
};

TEST_F(WindowFixture, TheMacroButtonFollowsTheMacrosStateAndReportsPresses) {
    QAction* action = window.findChild<QAction*>("tectaroMacroButton");
    ASSERT_FALSE(action->isVisible()) << "no macro button yet";
    const std::int32_t id =
        connection->AddMacroButton(HostPicture{picture}, 0x01030204, "Downpipe macro", 4733);
    EXPECT_TRUE(action->isVisible());
    EXPECT_EQ(action->toolTip(), QStringLiteral("Downpipe macro"));
    EXPECT_EQ(connection->SetMacroButtonState(id, 1, 0, true, false), 1);
    EXPECT_EQ(connection->SetMacroButtonState(id + 1, 1, 0, true, true), 0); // no such button
    action->trigger();                                                       // disabled: nothing
    connection->SetMacroButtonState(id, 1, 0, true, true);
    action->trigger();
    EXPECT_TRUE(events.names.empty()) << "the press is queued";
    run();
    EXPECT_EQ(events.names, test::Names{"Pressed " + std::to_string(id)});
    connection->SetMacroButtonState(id, 1, 0, false, true);
    EXPECT_FALSE(action->isVisible());
}

// A requested click is answered once, after the click (queued), and ends the prompt; the point
// is valid on the wall's exterior side and moved onto the face, else invalid as clicked.
TEST_F(WindowFixture, AClickOnTheWallsExteriorSideIsValidAndLandsOnTheFace) {
    EXPECT_FALSE(window.clickAt({4, -0.15})) << "nobody asked";
    leftClickAt({4, -0.15}); // nor is a click in the plan an answer then
    int modeChanges = 0;
    QObject::connect(host.get(), &TectaroHost::clickModeChanged, [&] { ++modeChanges; });
    const std::tuple<QPointF, bool, QPointF> cases[] = {
        {{4, -0.15}, true, {4, 0}}, {{10.1, 2}, true, {10, 2}},    {{6, 8.2}, true, {6, 8}},
        {{-0.05, 5}, true, {0, 5}}, {{4, 0.25}, false, {4, 0.25}}, {{4, -1}, false, {4, -1}}};
    for (const auto& [click, valid, at] : cases) {
        connection->RequestOneClick("", HostPicture{picture}, 1);
        connection->ShowPrompt("Please click on the outside of the wall!");
        EXPECT_EQ(host->prompt(), "Please click on the outside of the wall!");
        leftClickAt(click);
        EXPECT_TRUE(host->prompt().empty() && !window.clickAt(click)) << "one click only";
    }
    EXPECT_TRUE(events.clicks.empty()) << "the answers are queued";
    run();
    EXPECT_EQ(modeChanges, 2 * static_cast<int>(std::size(cases)));
    ASSERT_EQ(events.clicks.size(), std::size(cases));
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        const auto& [click, valid, at] = cases[i];
        const auto& [answeredValid, x, y] = events.clicks[i];
        EXPECT_EQ(answeredValid, valid) << i;
        // Widget pixels and back: within a pixel off the face.
        EXPECT_LT(QLineF(QPointF(x, y), at).length(), 0.05) << i;
    }
    EXPECT_EQ(std::get<2>(events.clicks[0]), 0.0f); // on the face exactly
    EXPECT_EQ(std::get<1>(events.clicks[1]), 10.0f);
}

// The window's entry points for projects only hand on to the host, whose tests check their
// events; here: saving names the window (closing it exits the program: the next test).
TEST_F(WindowFixture, SavingNamesTheWindowAndTheScreenshotShowsThePlan) {
    ASSERT_TRUE(settled(window.saveProject(path("house.tproj"))));
    EXPECT_TRUE(window.windowTitle().contains("house.tproj"));
    ASSERT_TRUE(window.screenshot(path("plan.png")));
    const QPoint wall =
        window.planView().mapTo(&window, window.planView().toWidget({5, 0.15}).toPoint());
    EXPECT_LT(QImage(QString::fromStdString(path("plan.png"))).pixelColor(wall).lightness(), 200);
}

// A failed save is shown as a message; after it, closing, a new project, opening and the exit
// each ask first, and No keeps the project open; once saved, nothing asks.
TEST_F(WindowFixture, AfterAFailedSaveNothingClosesTheProjectWithoutAsking) {
    ASSERT_TRUE(settled(window.saveProject(path("no/such/folder/p.tproj"))));
    ASSERT_EQ(messages.messages.size(), 1u);
    EXPECT_NE(messages.messages[0].find("no/such/folder/p.tproj"), std::string::npos);
    const std::function<bool()> closers[] = {
        [&] { return window.closeProject(); }, [&] { return window.newProject(); },
        [&] { return window.openProject(path("p.tproj")); }, [&] { return window.close(); }};
    for (const auto& close : closers)
        EXPECT_FALSE(settled(close()));
    EXPECT_EQ(messages.questions.size(), std::size(closers));
    EXPECT_TRUE(host->project() != nullptr && window.isVisible());
    messages.answer = true;
    EXPECT_TRUE(settled(window.closeProject()));
    ASSERT_TRUE(settled(window.newProject()));
    ASSERT_TRUE(settled(window.saveProject(path("p.tproj"))));
    EXPECT_TRUE(settled(window.closeProject() && window.close()));
    EXPECT_EQ(messages.questions.size(), std::size(closers) + 1);
    EXPECT_EQ(events.names,
              (test::Names{"SaveStart", "SaveBuilding", "ProjectClosed", "NewCurrentProject",
                           "SaveStart", "SaveBuilding", "ProjectClosed", "ProgramExit"}));
}

// The toolbar's parts list opens its window, in the interface language, with no row for a
// project without downpipes (the list's columns are checked with the project's parts list).
TEST_F(WindowFixture, ThePartsListCommandShowsTheListsWindow) {
    setActiveTextLanguage(TextLanguage::German);
    QAction* action = window.findChild<QAction*>("tectaroPartsList");
    ASSERT_NE(action, nullptr);
    action->trigger();
    auto* dialog = window.findChild<PartsListDialog*>("tectaroPartsListWindow");
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Stückliste"));
    EXPECT_EQ(dialog->table().rowCount(), 0);
    setActiveTextLanguage(TextLanguage::EnglishUnitedStates);
}
