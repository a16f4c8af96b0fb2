#include "core/pairs/packet_file.h"

#include "core/base/blanks.h"
#include "core/base/conversion.h"
#include "core/base/runtime_error.h"
#include "core/files/modVarda.h"
#include "core/pairs/packet_table.h"

#include <string_view>
#include <vector>

namespace varda::inline core {
namespace {

constexpr std::size_t valueBuffer = 1024; ///< a longer value is cut to one character less
constexpr std::string_view information = "Information";
constexpr std::string_view total = "Total";
constexpr std::string_view receive = "Receive";
constexpr std::string_view send = "Send";

std::string read(const ProfileFile& file, std::string_view section, std::string_view key) {
    return GetPrivateProfileStringA(section, key, "", valueBuffer, file);
}

/// @return false where the file has no such entry
bool appendEntry(const ProfileFile& file, std::string_view section, std::int32_t row,
                 std::vector<std::string>& list) {
    const std::string value = read(file, section, std::to_string(row));
    if (value.empty()) {
        return false;
    }
    list.emplace_back(withoutBlanksAround(value)); // blanks survive the reading only within quotes
    return true;
}

} // namespace

bool storePackets(const PacketTable& table, ProfileFile& file) {
    const auto& requests = table.requests();
    const auto& answers = table.answers();
    WritePrivateProfileStringA(information, total, std::to_string(requests.size()), file);
    for (std::size_t row = 0; row < requests.size(); ++row) {
        const std::string key = std::to_string(row);
        WritePrivateProfileStringA(receive, key, requests[row], file);
        if (row >= answers.size()) {
            return false;
        }
        WritePrivateProfileStringA(send, key, answers[row], file);
    }
    return true;
}

PacketLoad loadPackets(PacketTable& table, const ProfileFile& file) {
    const std::string totalText = read(file, information, total);
    if (totalText.empty()) {
        return file.isText() ? PacketLoad::NoTotal : PacketLoad::NoText;
    }
    table.clear();
    const std::int32_t pairs = advised([&] { return toLong(totalText); },
                                       [&](const RuntimeError& /*error*/) {
                                           return "Total of the file is \"" + totalText +
                                                  "\", no number of pairs. Mend the file, or choose another.";
                                       });
    if (pairs < 1) {
        return PacketLoad::Corrupted;
    }
    std::vector<std::string> requests;
    std::vector<std::string> answers;
    std::int32_t row = 0;
    while (row < pairs && appendEntry(file, receive, row, requests) &&
           appendEntry(file, send, row, answers)) {
        ++row;
    }
    table.replace(std::move(requests), std::move(answers));
    return row == pairs ? PacketLoad::Complete : PacketLoad::Incomplete;
}

} // namespace varda::core
