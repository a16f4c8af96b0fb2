#include "core/base/system_text.h"

#include <clocale>
#include <cstring>

namespace varda::inline core {
namespace {

std::string plainText(int error) {
#ifdef __linux__
    static const locale_t plain = ::newlocale(LC_ALL_MASK, "C", locale_t{});
    return plain != locale_t{} ? ::strerror_l(error, plain) : "error " + std::to_string(error);
#else
    return std::strerror(error);
#endif
}

} // namespace

std::string systemText(const std::error_code& error) {
    const auto& category = error.category();
    const bool isOfSystem = category == std::generic_category() || category == std::system_category();
    return isOfSystem ? plainText(error.value()) : error.message();
}

} // namespace varda::core
