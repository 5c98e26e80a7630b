#include "base/ResumeNext.h"

#include "base/RuntimeError.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace pluvarine {
namespace {

TEST(ResumeNext, AFailingStepIsSkippedAndTheNextRuns) {
    std::vector<std::string> ran;
    std::vector<int> failures;
    resumeNext({
                   [&] { ran.push_back("first"); },
                   [&] {
                       ran.push_back("second, half");
                       throw RuntimeError(RuntimeError::Overflow, "Overflow");
                       ran.push_back("second, rest"); // never reached: the step is given up
                   },
                   [&] { ran.push_back("third"); },
                   [&] { throw RuntimeError(RuntimeError::ViewerError, "viewer"); },
                   [&] { ran.push_back("fifth"); },
               },
               [&](const RuntimeError& error) { failures.push_back(error.number()); });
    EXPECT_EQ(ran, (std::vector<std::string>{"first", "second, half", "third", "fifth"}));
    EXPECT_EQ(failures, (std::vector<int>{RuntimeError::Overflow, RuntimeError::ViewerError}));
}

TEST(ResumeNext, WorksWithoutAnObserver) {
    int runs = 0;
    resumeNext({[&] { throw RuntimeError(RuntimeError::TypeMismatch, "x"); }, [&] { ++runs; }});
    EXPECT_EQ(runs, 1);
}

TEST(ResumeNext, OtherExceptionsPropagateAndStopTheSequence) {
    int runs = 0;
    EXPECT_THROW(resumeNext({[&] { throw std::logic_error("bug"); }, [&] { ++runs; }}),
                 std::logic_error);
    EXPECT_EQ(runs, 0);
}

TEST(ResumeNext, ObserverSeesNumberAndDescription) {
    std::string description;
    int number = 0;
    resumeNext({[] { throw RuntimeError(RuntimeError::FileNotFound, "File not found"); }},
               [&](const RuntimeError& error) {
                   number = error.number();
                   description = error.description();
               });
    EXPECT_EQ(number, 53);
    EXPECT_EQ(description, "File not found");
}

TEST(TryStep, ReportsSuccessAndFailure) {
    int seen = 0;
    EXPECT_TRUE(tryStep([] {}, [&](const RuntimeError&) { ++seen; }));
    EXPECT_FALSE(tryStep([] { throw RuntimeError(RuntimeError::ObjectNotSet, "not set"); },
                         [&](const RuntimeError&) { ++seen; }));
    EXPECT_EQ(seen, 1);
    EXPECT_THROW(tryStep([] { throw std::runtime_error("not a runtime error"); }),
                 std::runtime_error);
}

} // namespace
} // namespace pluvarine
