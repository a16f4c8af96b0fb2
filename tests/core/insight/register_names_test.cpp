#include "core/insight/register_names.h"

#include <gtest/gtest.h>

namespace varda::test {
namespace {

TEST(RegisterNames, EachLineNamesARegister) {
    const RegisterNames names =
        RegisterNames::parse("\xEF\xBB\xBF# tanks\r\nW 0100,tank level\r\n\r\n"
                             "R 0012.3, \"pump, \"\"left\"\"\"\nW 0100 , level\nnonsense\nW 1,");
    EXPECT_EQ(names.size(), 2U);
    EXPECT_EQ(names.describe({Access::Word, 612}), "W 0100 (level)");
    EXPECT_EQ(names.describe({Access::Bit, 195}), "R 0012.3 (pump, \"left\")");
    EXPECT_EQ(names.describe({Access::Word, 613}), "W 0101");
    EXPECT_EQ(names.badLines(), (std::vector<std::size_t>{6, 7}));
}

} // namespace
} // namespace varda::test
