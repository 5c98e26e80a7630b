// The version test: the host family by name, the version number read after "+" signs.

#include "base/RuntimeError.h"
#include "host/Macro.h"

#include <gtest/gtest.h>
#include <optional>

namespace pluvarine {
namespace {

struct VersionCase {
    const char* text;
    std::optional<bool> verdict; // nothing: the number cannot be read, there is no verdict
};

class VersionCheckTest : public ::testing::TestWithParam<VersionCase> {};

TEST_P(VersionCheckTest, Verdict) {
    const VersionCase& c = GetParam();
    if (c.verdict) {
        EXPECT_EQ(Macro::Versionspruefung(c.text), *c.verdict) << c.text;
    } else {
        EXPECT_THROW(Macro::Versionspruefung(c.text), RuntimeError) << c.text;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Table, VersionCheckTest,
    ::testing::Values(VersionCase{"Tectaro Vorex +2010", true},
                      VersionCase{"Tectaro Vorex +2004", false},
                      VersionCase{"Tectaro Vorex 2010", std::nullopt}, // no "+": no number
                      VersionCase{"Tectaro +2005", true}, // the lowest compatible version
                      VersionCase{"Vorex +2005.9", true}, // the whole part counts
                      VersionCase{"Vorex +2004.99", false},
                      // A blank ends the number: 2010.5 is read, the later 7 is not taken.
                      VersionCase{"Tectaro +2010.5 build 7", true},
                      // ... which decides here: with the 5 appended it would read 2005.
                      VersionCase{"Tectaro +200 build 5", false},
                      // Other characters are skipped without ending the number.
                      VersionCase{"Tectaro +20a10", true}, VersionCase{"Tectaro +20(04)", false},
                      // A later "+" appends to the same number text.
                      VersionCase{"Tectaro +20 and +10", true},
                      VersionCase{"Tectaro+2010", true}, // the name may stand anywhere
                      VersionCase{"MyVorexBuild +2011", true},
                      VersionCase{"tectaro +2010", false}, // names are case-sensitive
                      VersionCase{"VOREX +2010", false},
                      VersionCase{"Archicad +2010", false}, // another product, whatever the number
                      VersionCase{"Archicad 2010", std::nullopt},
                      VersionCase{"Tectaro +", std::nullopt}, // an empty number text
                      VersionCase{"Tectaro + 2010",
                                  std::nullopt}, // the blank right after "+" ends it
                      VersionCase{"Tectaro +1.2.3", std::nullopt}, // not a number
                      VersionCase{"", std::nullopt}));

} // namespace
} // namespace pluvarine
