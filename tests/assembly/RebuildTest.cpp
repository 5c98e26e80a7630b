#include "AssemblyTestSupport.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <ostream>

namespace pluvarine::test {
namespace {

using enum Construction;

struct SelectionCase {
    const char* name;
    const char* overhang;
    char answer; // given earlier: ' ' none, 'c' continuous, 'b' bend
    bool o72;    // clicked by the user
    Construction construction;
    bool optionsEnabled, asked, o42After;
    friend void PrintTo(const SelectionCase& c, std::ostream* os) { *os << c.name; }
};

class Selection : public ::testing::TestWithParam<SelectionCase> {};

TEST_P(Selection, ChoosesByTheOverhang) {
    const SelectionCase& c = GetParam();
    Bench b;
    b.inputs.setOverhangText(c.overhang);
    c.o72 ? b.inputs.clickO72() : b.inputs.clickO42();
    b.daten.design.constructionAnswered = c.answer != ' ';
    b.daten.design.bendChosen = b.daten.design.bendPartsBuilt = c.answer == 'b';
    b.rebuild.run();

    EXPECT_EQ(b.rebuild.lastConstruction(), c.construction);
    EXPECT_EQ(b.inputs.bendOptionsEnabled(), c.optionsEnabled);
    EXPECT_EQ(b.inputs.questionsAsked(), c.asked ? 1 : 0);
    EXPECT_EQ(b.inputs.isO42Selected(), c.o42After);
    const bool built = c.construction != None;
    EXPECT_EQ(b.daten.design.modelBuilt, built);
    EXPECT_EQ(b.scene.viewUpdates(), built ? 1 : 0);
    EXPECT_TRUE(built || b.scene.calls().size() == 1); // the base scene only
    // Exactly one reset: selecting O42 by the program starts no second rebuild.
    EXPECT_EQ(std::ranges::count(b.scene.calls(), "LoadScene", &SceneCall::op), 1);
}

const SelectionCase kTable[]{
    {"ZeroContinuous", "0", ' ', false, Continuous, false, false, true},
    {"ZeroWhateverWasAnswered", "0", 'b', true, Continuous, false, false, false},
    {"OpenAsks", "150", ' ', false, None, false, true, true},
    {"OpenJustAboveZero", "1", ' ', true, None, false, true, false},
    {"AnsweredContinuous", "150", 'c', false, Continuous, false, false, true},
    {"AnsweredBend42", "150", 'b', false, Kink42, true, false, true},
    {"AnsweredBend72", "199", 'b', true, Kink72, true, false, false},
    {"At200O42Forced", "200", ' ', true, Bend42, true, false, true},
    {"At390O42Forced", "390", ' ', true, Bend42, true, false, true},
    {"At391UserChoiceStands", "391", ' ', true, Bend72, true, false, false},
    {"At391O42", "391", ' ', false, Bend42, true, false, true},
    {"AnswerNotConsultedFrom200", "300", 'c', false, Bend42, true, false, true},
    {"PlusSignTyped", "+250", ' ', false, Bend42, true, false, true},
    // A text that is not a number, or a negative overhang, builds nothing and asks nothing.
    {"EmptyOverhang", "", ' ', false, None, true, false, true},
    {"SumOverhang", "1+2", ' ', false, None, true, false, true},
    {"NegativeOverhang", "-5", ' ', false, None, true, false, true}};
INSTANTIATE_TEST_SUITE_P(Table, Selection, ::testing::ValuesIn(kTable), byName);

TEST(Rebuild, ResetsFirstThenReadsTheFieldsKeepingThoseThatAreNoNumber) {
    Bench b;
    b.rebuild.run(); // the defaults: overhang 0 and gutter 0 give a wall offset of -60
    EXPECT_EQ(b.scene.calls().front().args, std::vector<SceneValue>{std::string("/wf/main.v3o")});
    EXPECT_EQ(b.daten.design.wallOffset, -60.0);
    EXPECT_EQ(b.daten.design.clampCount, 2);
    EXPECT_EQ((*b.scene.object(b.daten.design.pipeId)->position)[0],
              static_cast<float>(-0.05 + 0.06));
    EXPECT_EQ((*b.scene.objects()[2].scale)[0], -0.0006F); // the dummy, scaled to the offset

    b.daten.roof.gutterWidth = 60;
    b.inputs.setOverhangText("600");
    b.inputs.setStandpipeText("450");
    b.inputs.setClampSpacingText("1200");
    b.rebuild.run();
    EXPECT_EQ(b.daten.design.wallOffset, 600.0);
    // A field that is no number keeps the value read before (and reported); the rebuild goes on.
    b.inputs.setOverhangText("0");
    b.inputs.setClampSpacingText("1+2");
    b.inputs.setStandpipeText("");
    b.rebuild.run();
    EXPECT_EQ(b.daten.design.clampSpacing, 1200.0);
    EXPECT_EQ(b.daten.design.standpipeHeight, 450.0);
    EXPECT_EQ(b.failures,
              (std::vector<int>{RuntimeError::TypeMismatch, RuntimeError::TypeMismatch}));
    EXPECT_EQ(b.rebuild.lastConstruction(), Continuous);
    EXPECT_EQ(b.daten.design.clampCount, 2); // (3000 - 454.2 - 450) / 1200 = 1.75

    b.daten.design.wallOffset = 123;
    b.inputs.setOverhangText("abc");
    b.rebuild.run();
    EXPECT_EQ(b.daten.design.wallOffset, 123.0);
    EXPECT_EQ(b.scene.objects().size(), 0U);
}

// A failing step is skipped: the model still counts as built and the material step runs.
TEST(Rebuild, AFailingStepIsSkippedAndWhatIsThereIsColoured) {
    struct Case {
        const char* clampSpacing;
        bool loadSceneFails, capFails; // the cap's AddPart
        int failure, viewUpdates;
    };
    for (const Case& c : {Case{"0", false, false, RuntimeError::DivisionByZero, 0},
                          Case{"1800", true, false, RuntimeError::ViewerError, 1},
                          Case{"1800", false, true, RuntimeError::ViewerError, 0}}) {
        Bench b;
        b.inputs.setClampSpacingText(c.clampSpacing);
        b.daten.design.materialFile = "/wf/mat/Alu.ini";
        if (c.loadSceneFails)
            b.scene.failOperation(SceneMember::LoadScene);
        if (c.capFails)
            b.scene.failAddPartOf("Abdeckkappe_100_125.v3o");
        b.rebuild.run();
        EXPECT_EQ(b.failures, std::vector<int>{c.failure});
        EXPECT_EQ(b.rebuild.lastConstruction(), Continuous);
        EXPECT_TRUE(b.daten.design.modelBuilt);
        EXPECT_EQ(b.scene.viewUpdates(), c.viewUpdates);
        EXPECT_EQ(b.scene.calls().back().op, "ApplyMaterial");
        EXPECT_EQ(b.scene.objects().back().material, "/wf/mat/Alu.ini");
    }
}

TEST(Rebuild, TheQuestionsAnswersAndLaterChanges) {
    Bench b;
    b.inputs.setOverhangText("150");
    b.inputs.clickO72();
    b.rebuild.run();
    EXPECT_EQ(b.scene.objects().size(), 0U);
    b.rebuild.answerBend();
    EXPECT_TRUE(b.daten.design.constructionAnswered && b.daten.design.bendChosen &&
                b.daten.design.bendPartsBuilt);
    EXPECT_EQ(b.rebuild.lastConstruction(), Kink72);
    EXPECT_EQ(b.scene.objects().size(), 9U); // the answer's rebuild reset the scene again

    b.rebuild.answerContinuous();
    EXPECT_TRUE(b.daten.design.constructionAnswered);
    EXPECT_FALSE(b.daten.design.bendChosen || b.daten.design.bendPartsBuilt);
    EXPECT_EQ(b.rebuild.lastConstruction(), Continuous);

    b.inputs.setOverhangText("200"); // the answer is not consulted from 200 on; O42 forced
    b.rebuild.run();
    EXPECT_EQ(b.rebuild.lastConstruction(), Bend42);
    EXPECT_EQ(b.inputs.o42SelectionsByProgram(), 1);
    b.inputs.setOverhangText("150"); // back: continuous again, without asking
    b.rebuild.run();
    EXPECT_EQ(b.rebuild.lastConstruction(), Continuous);
    EXPECT_EQ(b.inputs.questionsAsked(), 1);
    EXPECT_TRUE(b.daten.design.bendPartsBuilt); // only an answer clears it
}

TEST(Rebuild, TheResetDeletesTheOldObjectFileAndReportsWhenItCannot) {
    QTemporaryDir dir;
    ASSERT_TRUE(QDir(dir.path()).mkpath("obj/fallrohr.tob/inside"));
    const QString oldFile = dir.filePath("obj/old.tob");
    ASSERT_TRUE(QFile(oldFile).open(QIODevice::WriteOnly));
    Bench b;
    b.daten.workFolder = dir.path().toStdString();
    b.daten.oldObjectFile = oldFile.toStdString();
    b.rebuild.run();
    EXPECT_FALSE(QFile::exists(oldFile));
    b.rebuild.run(); // nothing to delete now: no failure
    // A non-empty folder in its place cannot be removed as a file: only the reset fails.
    b.daten.oldObjectFile = dir.filePath("obj/fallrohr.tob").toStdString();
    b.rebuild.run();
    EXPECT_EQ(b.failures, std::vector<int>{RuntimeError::PathFileAccess});
    EXPECT_EQ(b.rebuild.lastConstruction(), Continuous);
}

} // namespace
} // namespace pluvarine::test
