#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace varda::inline core {

/// The path that a text of ours stands for: UTF-8 on Windows, whose names are Unicode, and the name's own
/// bytes, whatever they are, elsewhere.
/// @throws std::system_error where the text is no UTF-8, on Windows
inline std::filesystem::path filePath(std::string_view text) {
    return {std::u8string(text.begin(), text.end())};
}

} // namespace varda::core
