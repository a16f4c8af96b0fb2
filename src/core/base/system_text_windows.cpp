#include "core/base/system_text.h"

#include "core/base/utf8_windows.h"

#include <array>

namespace varda::inline core {
namespace {

/// Without the full stop and the line's end that such a text comes with.
std::wstring_view trimmed(std::wstring_view text) {
    return text.substr(0, text.find_last_not_of(L" .\r\n") + 1);
}

std::string textOfSystem(DWORD error) {
    std::array<wchar_t, 512> text{};
    const DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                          error, 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
    return length > 0 ? utf8(trimmed({text.data(), length})) : "error " + std::to_string(error);
}

} // namespace

/// The numbers that every system has are told by the library, in English.
std::string systemText(const std::error_code& error) {
    return error.category() == std::system_category() ? textOfSystem(static_cast<DWORD>(error.value()))
                                                      : error.message();
}

} // namespace varda::core
