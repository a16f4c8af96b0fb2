#include "core/runs/file_kind.h"

#include "core/files/modVarda.h"

#include <string_view>

namespace varda::inline core {
namespace {

bool holds(const ProfileFile& file, std::string_view section, std::string_view key) {
    constexpr std::size_t enoughToSee = 16;
    return !GetPrivateProfileStringA(section, key, "", enoughToSee, file).empty();
}

} // namespace

FileKind kindOf(const ProfileFile& file) {
    if (holds(file, "Receive", "0")) {
        return FileKind::Packets;
    }
    return holds(file, "Scenario", "Scenario0") ? FileKind::Scenario : FileKind::Neither;
}

} // namespace varda::core
