#include "base/ResumeNext.h"

#include "base/RuntimeError.h"

#include <gtest/gtest.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace pluvarine {
namespace {

// The observer sees each failure's number and description; the failing step is given up.
TEST(ResumeNext, AFailingStepIsSkippedAndTheNextRuns) {
    std::vector<std::string> ran;
    std::vector<std::pair<int, std::string>> failures;
    resumeNext({
                   [&] { ran.push_back("first"); },
                   [&] {
                       ran.push_back("second, half");
                       throw RuntimeError(RuntimeError::Overflow, "Overflow");
                       ran.push_back("second, rest"); // never reached
                   },
                   [&] { ran.push_back("third"); },
                   [&] { throw RuntimeError(RuntimeError::FileNotFound, "File not found"); },
                   [&] { ran.push_back("fifth"); },
               },
               [&](const RuntimeError& e) { failures.emplace_back(e.number(), e.description()); });
    EXPECT_EQ(ran, (std::vector<std::string>{"first", "second, half", "third", "fifth"}));
    EXPECT_EQ(failures,
              (decltype(failures){{RuntimeError::Overflow, "Overflow"}, {53, "File not found"}}));
}

// Without an observer a run-time error is skipped all the same; any other exception ends the
// sequence.
TEST(ResumeNext, WithoutAnObserverOnlyRunTimeErrorsAreSkipped) {
    int runs = 0;
    resumeNext({[&] { throw RuntimeError(RuntimeError::TypeMismatch, "x"); }, [&] { ++runs; }});
    EXPECT_EQ(runs, 1);
    EXPECT_THROW(resumeNext({[&] { throw std::logic_error("bug"); }, [&] { ++runs; }}),
                 std::logic_error);
    EXPECT_EQ(runs, 1);
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
