#include "assembly/Rebuild.h"

#include "AssemblyTestSupport.h"
#include "assembly/PlainRebuildInputs.h"
#include "base/RuntimeError.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <gtest/gtest.h>

namespace pluvarine::test {
namespace {

enum class Answer { None, Continuous, Bend };
enum class Click { O42, O72 };

// A main window's worth of state around one rebuild.
struct Bench {
    Daten daten;
    RecordingScene scene;
    PlainRebuildInputs inputs;
    Rebuild rebuild{daten, scene, inputs};
    std::vector<int> failures;

    Bench() {
        daten.workFolder = kWorkFolder;
        daten.design.heightH = 3000;
        rebuild.setFailureObserver(
            [this](const RuntimeError& e) { failures.push_back(e.number()); });
    }
    std::size_t addedParts() const {
        std::size_t n = 0;
        for (const SceneCall& call : scene.calls()) {
            n += call.op == "AddPart" ? 1 : 0;
        }
        return n;
    }
};

struct SelectionCase {
    const char* name;
    const char* overhang;
    Answer answer; // given before the rebuild, as if asked earlier
    Click click;
    Construction construction;
    bool optionsEnabled;
    bool asked;
    bool o42After;
};

class Selection : public ::testing::TestWithParam<SelectionCase> {};

TEST_P(Selection, ChoosesByTheOverhang) {
    const SelectionCase& c = GetParam();
    Bench b;
    b.inputs.setOverhangText(c.overhang);
    if (c.click == Click::O72) {
        b.inputs.clickO72();
    }
    if (c.answer != Answer::None) {
        b.daten.design.constructionAnswered = true;
        b.daten.design.bendChosen = c.answer == Answer::Bend;
        b.daten.design.bendPartsBuilt = c.answer == Answer::Bend;
    }
    b.rebuild.run();

    EXPECT_EQ(b.rebuild.lastConstruction(), c.construction);
    EXPECT_EQ(b.inputs.bendOptionsEnabled(), c.optionsEnabled);
    EXPECT_EQ(b.inputs.questionsAsked(), c.asked ? 1 : 0);
    EXPECT_EQ(b.inputs.isO42Selected(), c.o42After);
    const bool built = c.construction != Construction::None;
    EXPECT_EQ(b.daten.design.modelBuilt, built);
    EXPECT_EQ(b.scene.viewUpdates(), built ? 1 : 0);
    if (!built) {
        // Only the base scene.
        EXPECT_EQ(opNames(b.scene.calls()), std::vector<std::string>{"LoadScene"});
    }
    // Exactly one reset: selecting O42 by the program starts no second rebuild.
    EXPECT_EQ(std::count_if(b.scene.calls().begin(), b.scene.calls().end(),
                            [](const SceneCall& call) { return call.op == "LoadScene"; }),
              1);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Selection,
    ::testing::Values(SelectionCase{"ZeroContinuous", "0", Answer::None, Click::O42,
                                    Construction::Continuous, false, false, true},
                      SelectionCase{"ZeroWhateverWasAnswered", "0", Answer::Bend, Click::O72,
                                    Construction::Continuous, false, false, false},
                      SelectionCase{"OpenAsks", "150", Answer::None, Click::O42, Construction::None,
                                    false, true, true},
                      SelectionCase{"OpenJustAboveZero", "1", Answer::None, Click::O72,
                                    Construction::None, false, true, false},
                      SelectionCase{"AnsweredContinuous", "150", Answer::Continuous, Click::O42,
                                    Construction::Continuous, false, false, true},
                      SelectionCase{"AnsweredBend42", "150", Answer::Bend, Click::O42,
                                    Construction::Kink42, true, false, true},
                      SelectionCase{"AnsweredBend72", "199", Answer::Bend, Click::O72,
                                    Construction::Kink72, true, false, false},
                      SelectionCase{"At200O42Forced", "200", Answer::None, Click::O72,
                                    Construction::Bend42, true, false, true},
                      SelectionCase{"At390O42Forced", "390", Answer::None, Click::O72,
                                    Construction::Bend42, true, false, true},
                      SelectionCase{"At391UserChoiceStands", "391", Answer::None, Click::O72,
                                    Construction::Bend72, true, false, false},
                      SelectionCase{"At391O42", "391", Answer::None, Click::O42,
                                    Construction::Bend42, true, false, true},
                      SelectionCase{"AnswerNotConsultedFrom200", "300", Answer::Continuous,
                                    Click::O42, Construction::Bend42, true, false, true},
                      SelectionCase{"PlusSignTyped", "+250", Answer::None, Click::O42,
                                    Construction::Bend42, true, false, true},
                      // Settled: a text that is not a number, or a negative overhang, builds
                      // nothing and asks nothing.
                      SelectionCase{"EmptyOverhang", "", Answer::None, Click::O42,
                                    Construction::None, true, false, true},
                      SelectionCase{"SumOverhang", "1+2", Answer::None, Click::O42,
                                    Construction::None, true, false, true},
                      SelectionCase{"NegativeOverhang", "-5", Answer::None, Click::O42,
                                    Construction::None, true, false, true}),
    CaseName());

TEST(Rebuild, ResetsAndReadsTheFieldsFirst) {
    Bench b;
    b.daten.roof.gutterWidth = 60;
    b.inputs.setOverhangText("600");
    b.inputs.setStandpipeText("450");
    b.inputs.setClampSpacingText("1200");
    b.daten.design.modelBuilt = true;
    b.rebuild.run();
    ASSERT_FALSE(b.scene.calls().empty());
    const SceneCall& first = b.scene.calls().front();
    EXPECT_EQ(first.op, "LoadScene");
    EXPECT_EQ(std::get<std::string>(first.args[0]), "/wf/main.v3o");
    EXPECT_EQ(b.daten.design.wallOffset, 600.0);
    EXPECT_EQ(b.daten.design.standpipeHeight, 450.0);
    EXPECT_EQ(b.daten.design.clampSpacing, 1200.0);
    EXPECT_TRUE(b.daten.design.bendPartsBuilt);
    EXPECT_TRUE(b.failures.empty());
}

TEST(Rebuild, DefaultsGiveAWallOffsetOfMinus60) {
    Bench b;
    b.rebuild.run();
    EXPECT_EQ(b.daten.design.wallOffset, -60.0);
    EXPECT_EQ(b.daten.design.clampCount, 2);
    EXPECT_NEAR((*b.scene.object(b.daten.design.pipeId)->position)[0], 0.01F, 1e-7F);
}

TEST(Rebuild, AFieldThatIsNoNumberKeepsItsValueAndTheRebuildGoesOn) {
    Bench b;
    b.daten.design.clampSpacing = 900;
    b.daten.design.standpipeHeight = 250;
    b.inputs.setClampSpacingText("1+2");
    b.inputs.setStandpipeText("");
    b.rebuild.run();
    EXPECT_EQ(b.daten.design.clampSpacing, 900.0);
    EXPECT_EQ(b.daten.design.standpipeHeight, 250.0);
    EXPECT_EQ(b.failures,
              (std::vector<int>{RuntimeError::TypeMismatch, RuntimeError::TypeMismatch}));
    EXPECT_EQ(b.rebuild.lastConstruction(), Construction::Continuous);
    EXPECT_EQ(b.daten.design.clampCount, 3); // (3000 - 454.2 - 250) / 900 = 2.55
}

TEST(Rebuild, ANonNumericOverhangKeepsTheWallOffset) {
    Bench b;
    b.daten.design.wallOffset = 123;
    b.inputs.setOverhangText("abc");
    b.rebuild.run();
    EXPECT_EQ(b.daten.design.wallOffset, 123.0);
    EXPECT_EQ(b.addedParts(), 0U);
    EXPECT_FALSE(b.daten.design.modelBuilt);
}

TEST(Rebuild, AConstructionStoppedBySpacingZeroStillCountsAsBuiltAndIsColoured) {
    Bench b;
    b.inputs.setClampSpacingText("0");
    b.daten.design.materialFile = "/wf/mat/Alu.ini";
    b.rebuild.run();
    EXPECT_EQ(b.failures, std::vector<int>{RuntimeError::DivisionByZero});
    EXPECT_TRUE(b.daten.design.modelBuilt);
    EXPECT_EQ(b.scene.viewUpdates(), 0);
    // The four kept parts got the material (the dummy never does).
    int coloured = 0;
    for (const SceneObject& object : b.scene.objects()) {
        coloured += object.material == "/wf/mat/Alu.ini" ? 1 : 0;
    }
    EXPECT_EQ(coloured, 4);
}

TEST(Rebuild, AFailingResetIsSkipped) {
    Bench b;
    b.scene.failOperation(SceneMember::LoadScene);
    b.rebuild.run();
    EXPECT_EQ(b.failures, std::vector<int>{RuntimeError::ViewerError});
    EXPECT_EQ(b.rebuild.lastConstruction(), Construction::Continuous);
    EXPECT_TRUE(b.daten.design.modelBuilt);
}

TEST(Rebuild, AViewerErrorInTheConstructionStillRunsTheMaterialStep) {
    Bench b;
    b.scene.failAddPartOf("Abdeckkappe_100_125.v3o");
    b.rebuild.run();
    EXPECT_EQ(b.failures, std::vector<int>{RuntimeError::ViewerError});
    EXPECT_TRUE(b.daten.design.modelBuilt);
    EXPECT_EQ(b.scene.calls().back().op, "ApplyMaterial");
}

TEST(Rebuild, QuestionFlowWithTheBendAnswer) {
    Bench b;
    b.inputs.setOverhangText("150");
    b.inputs.clickO72();
    b.rebuild.run();
    EXPECT_EQ(b.inputs.questionsAsked(), 1);
    EXPECT_FALSE(b.inputs.bendOptionsEnabled());
    EXPECT_EQ(b.addedParts(), 0U);

    b.rebuild.answerBend();
    EXPECT_TRUE(b.daten.design.constructionAnswered);
    EXPECT_TRUE(b.daten.design.bendChosen);
    EXPECT_TRUE(b.daten.design.bendPartsBuilt);
    EXPECT_EQ(b.rebuild.lastConstruction(), Construction::Kink72);
    EXPECT_TRUE(b.inputs.bendOptionsEnabled());
    EXPECT_EQ(b.inputs.questionsAsked(), 1);
    EXPECT_TRUE(b.daten.design.modelBuilt);
    // The answer's rebuild reset the scene again: only the kink assembly is in it.
    EXPECT_EQ(b.scene.objects().size(), 9U);
}

TEST(Rebuild, QuestionFlowWithTheContinuousAnswerAndLaterChanges) {
    Bench b;
    b.inputs.setOverhangText("150");
    b.rebuild.run();
    b.rebuild.answerContinuous();
    EXPECT_TRUE(b.daten.design.constructionAnswered);
    EXPECT_FALSE(b.daten.design.bendChosen);
    EXPECT_FALSE(b.daten.design.bendPartsBuilt);
    EXPECT_FALSE(b.inputs.bendOptionsEnabled());
    EXPECT_EQ(b.rebuild.lastConstruction(), Construction::Continuous);

    b.inputs.setOverhangText("300"); // the answer is not consulted from 200 on
    b.rebuild.run();
    EXPECT_EQ(b.rebuild.lastConstruction(), Construction::Bend42);
    EXPECT_TRUE(b.daten.design.bendPartsBuilt);

    b.inputs.setOverhangText("150"); // back: continuous again, without asking
    b.rebuild.run();
    EXPECT_EQ(b.rebuild.lastConstruction(), Construction::Continuous);
    EXPECT_EQ(b.inputs.questionsAsked(), 1);
    EXPECT_TRUE(b.daten.design.bendPartsBuilt); // only the answer clears it
}

TEST(Rebuild, ForcedO42HappensBeforeTheBuildAndOnlyOnce) {
    Bench b;
    b.inputs.setOverhangText("200");
    b.inputs.clickO72();
    b.rebuild.run();
    EXPECT_EQ(b.inputs.o42SelectionsByProgram(), 1);
    EXPECT_EQ(b.rebuild.lastConstruction(), Construction::Bend42);
    EXPECT_EQ(partFiles(b.scene).front(), "Bogen_100_42_L.v3o");
}

TEST(Rebuild, ResetDeletesTheOldObjectFile) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    ASSERT_TRUE(QDir(dir.path()).mkpath("obj"));
    const QString oldFile = dir.filePath("obj/fallrohr.tob");
    QFile file(oldFile);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();

    Bench b;
    b.daten.workFolder = dir.path().toStdString();
    b.daten.oldObjectFile = oldFile.toStdString();
    b.rebuild.run();
    EXPECT_FALSE(QFile::exists(oldFile));
    EXPECT_EQ(std::get<std::string>(b.scene.calls().front().args[0]),
              dir.path().toStdString() + "/main.v3o");
    b.rebuild.run(); // nothing to delete now: no failure
    EXPECT_TRUE(b.failures.empty());
}

TEST(Rebuild, AnOldObjectFileThatCannotBeDeletedIsAFailureOfTheResetOnly) {
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    // A non-empty folder in its place cannot be removed as a file.
    ASSERT_TRUE(QDir(dir.path()).mkpath("obj/fallrohr.tob/inside"));
    Bench b;
    b.daten.oldObjectFile = dir.filePath("obj/fallrohr.tob").toStdString();
    b.daten.design.modelBuilt = true;
    b.rebuild.run();
    EXPECT_EQ(b.failures, std::vector<int>{RuntimeError::PathFileAccess});
    EXPECT_EQ(b.rebuild.lastConstruction(), Construction::Continuous);
}

} // namespace
} // namespace pluvarine::test
