#include "core/base/system_text.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <clocale>
#include <ios>

namespace varda {
namespace {

/// Of the languages that a system may have, with letters of several bytes, or of one that is no UTF-8.
constexpr std::array locales = {
    "C", "C.UTF-8", "de_DE.UTF-8", "de_DE.ISO-8859-1", "fr_FR.ISO-8859-1", "ja_JP.EUC-JP"};

std::error_code ofSystem(std::errc number) { return std::make_error_code(number); }

TEST(SystemText, IsTheSamePlainOneInEveryLanguage) {
    for (const char* const locale : locales) {
        std::setlocale(LC_ALL, locale); // where this system has it
        EXPECT_EQ(systemText(ofSystem(std::errc::too_many_files_open)), "Too many open files") << locale;
        EXPECT_EQ(systemText(ofSystem(std::errc::invalid_argument)), "Invalid argument") << locale;
    }
    std::setlocale(LC_ALL, "C");
}

#ifndef _WIN32
TEST(SystemText, NamesTheNumberOfAnErrorThatNobodyKnows) {
    EXPECT_NE(systemText({123456, std::generic_category()}).find("123456"), std::string::npos);
    EXPECT_EQ(systemText({EIO, std::system_category()}), "Input/output error");
}
#else
TEST(SystemText, OfTheSystemsOwnNumbersEndsInNoFullStop) {
    const std::string text = systemText({2, std::system_category()});
    ASSERT_FALSE(text.empty());
    EXPECT_EQ(std::string(" .\r\n").find(text.back()), std::string::npos) << text;
}
#endif

TEST(SystemText, OfALibrarysOwnErrorIsTheLibrarysOwn) {
    EXPECT_EQ(systemText(std::make_error_code(std::io_errc::stream)),
              std::make_error_code(std::io_errc::stream).message());
}

} // namespace
} // namespace varda
