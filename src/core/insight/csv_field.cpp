#include "core/insight/csv_field.h"

namespace varda::inline core {

std::string csvField(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        return std::string(text);
    }
    std::string field = "\"";
    for (const char character : text) {
        field += character == '"' ? "\"\"" : std::string(1, character);
    }
    return field + '"';
}

} // namespace varda::core
