#include "UiTestSupport.h"

#include <algorithm>
#include <ostream>

namespace pluvarine::test {
namespace {

// The construction question: an overhang between 0 and 200 asks, the answer rebuilds.
class ChoiceDialog : public WindowTest {
protected:
    ChoiceDialog() : scope("en_US.UTF-8", TextLanguage::EnglishUnitedStates) {
        main->ApplyLanguage();
        main->show();
        child<QLineEdit>("txtÜd")->setText(QStringLiteral("150"));
    }
    QRadioButton* option(const char* name) { return child<QRadioButton>(name, message); }
    bool sceneHasPart(const std::string& fragment) const {
        return std::any_of(scene.objects().begin(), scene.objects().end(), [&](const auto& o) {
            return o.partFile.find(fragment) != std::string::npos;
        });
    }

    LanguageScope scope;
    FrmMessage* message = &main->frmMessage();
};

struct Answer {
    const char* name;
    const char* option; // "": none selected
    const char* button;
    bool answered, bend, doNot;
};
void PrintTo(const Answer& c, std::ostream* os) {
    *os << c.name;
} // readable test listings

class Answers : public ChoiceDialog, public ::testing::WithParamInterface<Answer> {};

TEST_P(Answers, AreAskedForWithoutBuildingAndRecordRebuildAndShowTheMainWindow) {
    const Answer& a = GetParam();
    main->Command1_Click(); // the question is asked, nothing is built
    EXPECT_TRUE(message->isVisible() && main->isEnabled()); // the main window stays usable
    EXPECT_EQ(
        child<QLabel>("lblMessage", message)->text(),
        QStringLiteral("Do you like to choose a continous or a bended downpipe construction?"));
    EXPECT_EQ(option("OP1")->text() + "|" + option("OP2")->text(),
              QStringLiteral("continous downpipe|bend construction"));
    EXPECT_TRUE(message->fall() == 1 && scene.objects().empty());
    EXPECT_FALSE(child<QRadioButton>("O42")->isEnabled() || daten.design.constructionAnswered);
    scene.clearCalls();
    main->hide();
    if (*a.option)
        QTest::mouseClick(option(a.option), Qt::LeftButton);
    QTest::mouseClick(child<QPushButton>(a.button, message), Qt::LeftButton);
    const DesignRecord& d = daten.design;
    EXPECT_EQ((std::vector<bool>{message->doNot(), d.constructionAnswered, d.modelBuilt,
                                 d.bendChosen, d.bendPartsBuilt, sceneHasPart("Knick_100_42"),
                                 child<QRadioButton>("O72")->isEnabled(), sceneHasPart("Bogen_")}),
              (std::vector<bool>{a.doNot, a.answered, a.answered, a.bend, a.bend, a.bend, a.bend,
                                 false}));
    EXPECT_EQ(rebuilds(), a.answered ? 1 : 0);
    EXPECT_TRUE(!message->isVisible() && main->isVisible());
    // The next rebuild asks only while there is no answer; the earlier selection stays marked.
    main->Command1_Click();
    EXPECT_EQ(rebuilds(), a.answered ? 2 : 1); // asking, too, starts with loading the scene
    EXPECT_EQ(message->isVisible(), !a.answered);
    for (const char* name : {"OP1", "OP2"})
        EXPECT_EQ(option(name)->isChecked(), std::string(a.option) == name) << name;
}

INSTANTIATE_TEST_SUITE_P(
    Choice, Answers,
    ::testing::Values(Answer{"Continuous", "OP1", "Command1", true, false, false},
                      Answer{"Bend", "OP2", "Command1", true, true, false},
                      Answer{"Cancel", "OP2", "Command2", false, false, true},
                      Answer{"OkWithoutChoice", "", "Command1", false, false, false}),
    [](const auto& answer) { return std::string(answer.param.name); });

TEST_F(ChoiceDialog, OnlyCaseOneIsEvaluatedAndOptionsCanBeLeftOut) {
    message->showDialog();
    message->Message_Initiate(2, "Another question?", true, "yes", "no");
    QTest::mouseClick(option("OP1"), Qt::LeftButton);
    QTest::mouseClick(child<QPushButton>("Command1", message), Qt::LeftButton);
    EXPECT_TRUE(!daten.design.constructionAnswered && rebuilds() == 0);
    message->showDialog();
    message->Message_Initiate(1, "Just a note", false, "a", "b");
    EXPECT_FALSE(option("OP1")->isVisible() || option("OP2")->isVisible());
}

} // namespace
} // namespace pluvarine::test
