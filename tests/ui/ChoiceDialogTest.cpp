#include "UiTestSupport.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace pluvarine::test {
namespace {

// The construction question: an overhang between 0 and 200 asks, the answer rebuilds.
class ChoiceDialog : public WindowTest {
protected:
    ChoiceDialog() : scope("en_US.UTF-8", TextLanguage::EnglishUnitedStates) {
        main->ApplyLanguage();
        main->fillMaterialList();
        main->show();
        message = &main->frmMessage();
        child<QLineEdit>("txtÜd")->setText(QStringLiteral("150"));
    }

    void askQuestion() {
        main->Command1_Click(); // the rebuild finds the question open
        scene.clearCalls();
    }
    void select(const char* option) {
        QTest::mouseClick(child<QRadioButton>(message, option), Qt::LeftButton);
    }
    void press(const char* button) {
        QTest::mouseClick(child<QPushButton>(message, button), Qt::LeftButton);
    }
    bool optionsEnabled() {
        return child<QRadioButton>("O42")->isEnabled() && child<QRadioButton>("O72")->isEnabled();
    }
    bool optionsDisabled() {
        return !child<QRadioButton>("O42")->isEnabled() && !child<QRadioButton>("O72")->isEnabled();
    }
    // Parts added since the last reset of the scene.
    std::size_t partsSinceLoad() const {
        std::size_t count = 0;
        for (const SceneCall& call : scene.callsSinceLoad())
            count += call.member == SceneMember::AddPart ? 1 : 0;
        return count;
    }
    bool sceneHasPart(const std::string& fragment) const {
        for (const SceneObject& object : scene.objects()) {
            if (object.partFile.find(fragment) != std::string::npos)
                return true;
        }
        return false;
    }

    LanguageScope scope;
    FrmMessage* message = nullptr;
};

TEST_F(ChoiceDialog, AnOpenQuestionIsAskedWithoutBuilding) {
    main->Command1_Click();
    EXPECT_TRUE(message->isVisible());
    EXPECT_EQ(
        child<QLabel>(message, "lblMessage")->text(),
        QStringLiteral("Do you like to choose a continous or a bended downpipe construction?"));
    EXPECT_EQ(child<QRadioButton>(message, "OP1")->text(), QStringLiteral("continous downpipe"));
    EXPECT_EQ(child<QRadioButton>(message, "OP2")->text(), QStringLiteral("bend construction"));
    EXPECT_EQ(message->fall(), 1);
    EXPECT_EQ(partsSinceLoad(), 0u);
    EXPECT_TRUE(optionsDisabled());
    EXPECT_FALSE(daten.design.constructionAnswered);
    // The main window stays usable.
    EXPECT_TRUE(main->isVisible());
    EXPECT_TRUE(main->isEnabled());
}

TEST_F(ChoiceDialog, ContinuousAnswerRecordsRebuildsOnceAndShowsTheMainWindow) {
    askQuestion();
    main->hide();
    select("OP1");
    press("Command1");
    EXPECT_TRUE(daten.design.constructionAnswered);
    EXPECT_FALSE(daten.design.bendChosen);
    EXPECT_FALSE(daten.design.bendPartsBuilt);
    EXPECT_EQ(rebuilds(), 1);
    EXPECT_TRUE(daten.design.modelBuilt);
    EXPECT_GT(partsSinceLoad(), 0u);
    EXPECT_FALSE(sceneHasPart("Knick_"));
    EXPECT_FALSE(sceneHasPart("Bogen_"));
    EXPECT_TRUE(optionsDisabled());
    EXPECT_FALSE(message->isVisible());
    EXPECT_TRUE(main->isVisible());
    EXPECT_FALSE(message->doNot());
}

TEST_F(ChoiceDialog, BendAnswerBuildsKinksOfTheSelectedAngle) {
    askQuestion();
    select("OP2");
    press("Command1");
    EXPECT_TRUE(daten.design.constructionAnswered);
    EXPECT_TRUE(daten.design.bendChosen);
    EXPECT_TRUE(daten.design.bendPartsBuilt);
    EXPECT_EQ(rebuilds(), 1);
    EXPECT_TRUE(optionsEnabled());
    EXPECT_TRUE(sceneHasPart("Knick_100_42"));
    EXPECT_FALSE(message->isVisible());
    EXPECT_TRUE(main->isVisible());
    // Refresh now builds without asking again.
    main->Command1_Click();
    EXPECT_EQ(rebuilds(), 2);
    EXPECT_FALSE(message->isVisible());
}

TEST_F(ChoiceDialog, CancelRecordsNothingAndTheNextRebuildAsksAgain) {
    askQuestion();
    select("OP2");
    main->hide();
    press("Command2");
    EXPECT_TRUE(message->doNot());
    EXPECT_FALSE(daten.design.constructionAnswered);
    EXPECT_FALSE(daten.design.bendChosen);
    EXPECT_EQ(rebuilds(), 0);
    EXPECT_FALSE(message->isVisible());
    EXPECT_TRUE(main->isVisible());
    // Asked again, with the earlier selection still marked.
    main->Command1_Click();
    EXPECT_TRUE(message->isVisible());
    EXPECT_TRUE(child<QRadioButton>(message, "OP2")->isChecked());
    EXPECT_FALSE(child<QRadioButton>(message, "OP1")->isChecked());
}

TEST_F(ChoiceDialog, OkWithoutAChoiceRecordsNothing) {
    askQuestion();
    main->hide();
    press("Command1");
    EXPECT_FALSE(message->doNot());
    EXPECT_FALSE(daten.design.constructionAnswered);
    EXPECT_EQ(rebuilds(), 0);
    EXPECT_FALSE(message->isVisible());
    EXPECT_TRUE(main->isVisible());
}

TEST_F(ChoiceDialog, OnlyCaseOneIsEvaluated) {
    message->showDialog();
    message->Message_Initiate(2, "Another question?", true, "yes", "no");
    select("OP1");
    press("Command1");
    EXPECT_FALSE(daten.design.constructionAnswered);
    EXPECT_EQ(rebuilds(), 0);
    EXPECT_TRUE(main->isVisible());
}

TEST_F(ChoiceDialog, OptionsAreExclusiveAndKeptBetweenShowings) {
    askQuestion();
    select("OP1");
    select("OP2");
    EXPECT_FALSE(child<QRadioButton>(message, "OP1")->isChecked());
    EXPECT_TRUE(child<QRadioButton>(message, "OP2")->isChecked());
    message->hide();
    message->showDialog();
    message->Message_Initiate(1, "q", true, "a", "b");
    EXPECT_TRUE(child<QRadioButton>(message, "OP2")->isChecked());
}

TEST_F(ChoiceDialog, WithoutOptionsNoChoiceIsShown) {
    message->showDialog();
    message->Message_Initiate(1, "Just a note", false, "a", "b");
    EXPECT_FALSE(child<QRadioButton>(message, "OP1")->isVisible());
    EXPECT_FALSE(child<QRadioButton>(message, "OP2")->isVisible());
    EXPECT_EQ(child<QLabel>(message, "lblMessage")->text(), QStringLiteral("Just a note"));
}

TEST_F(ChoiceDialog, TheAnswerIsNotConsultedFrom200On) {
    // Overhang 150, answered "continous downpipe", then 300: bends; back to 150: continuous,
    // without asking.
    askQuestion();
    select("OP1");
    press("Command1");
    child<QLineEdit>("txtÜd")->setText(QStringLiteral("300"));
    main->Command1_Click();
    EXPECT_TRUE(sceneHasPart("Bogen_100_42"));
    child<QLineEdit>("txtÜd")->setText(QStringLiteral("150"));
    main->Command1_Click();
    EXPECT_FALSE(message->isVisible());
    EXPECT_TRUE(sceneHasPart("Fallrohr_100_500"));
    EXPECT_FALSE(sceneHasPart("Knick_"));
}

} // namespace
} // namespace pluvarine::test
