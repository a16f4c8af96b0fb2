#include "core/link/period.h"

#include <gtest/gtest.h>

#include <string>

namespace varda::test {
namespace {

struct Typed {
    std::string text;
    int period;
};

std::ostream& operator<<(std::ostream& out, const Typed& typed) { return out << '"' << typed.text << '"'; }

class PeriodTest : public testing::TestWithParam<Typed> {};

INSTANTIATE_TEST_SUITE_P(Texts, PeriodTest,
                         testing::Values(Typed{"100", 100}, Typed{"101", 101}, Typed{"250", 250},
                                         Typed{"32767", 32767}, Typed{"&H80", 128}, Typed{" 250 ", 250},
                                         // below 100
                                         Typed{"99", 100}, Typed{"50", 100}, Typed{"1", 100}, Typed{"0", 100},
                                         Typed{"-1", 100}, Typed{"-32768", 100}, Typed{"&HFFFF", 100},
                                         // no 16-bit number
                                         Typed{"abc", 500}, Typed{"", 500}, Typed{" ", 500},
                                         Typed{"32768", 500}, Typed{"65535", 500}, Typed{"65536", 500},
                                         Typed{"99999999999999999999", 500}, Typed{"-32769", 500},
                                         Typed{"100x", 500}));

TEST_P(PeriodTest, IsNoShorterThan100AndIs500WhereTheTextIsNoNumber) {
    EXPECT_EQ(periodOf(GetParam().text), GetParam().period);
}

} // namespace
} // namespace varda::test
