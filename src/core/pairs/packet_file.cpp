#include "core/pairs/packet_file.h"

#include "core/base/blanks.h"
#include "core/base/conversion.h"
#include "core/base/runtime_error.h"
#include "core/files/modVarda.h"
#include "core/pairs/packet_table.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

namespace varda::inline core {
namespace {

constexpr std::size_t valueBuffer = 1024; ///< a longer value is cut to one character less
constexpr std::string_view information = "Information";
constexpr std::string_view total = "Total";
constexpr std::string_view receive = "Receive";
constexpr std::string_view send = "Send";

std::vector<std::string> entries(const ProfileFile& file, std::string_view section, std::size_t most) {
    const std::vector<std::string_view> values = file.numberedValues(section, most, valueBuffer);
    std::vector<std::string> list;
    list.reserve(values.size());
    for (const std::string_view value : values) {
        list.emplace_back(withoutBlanksAround(value)); // blanks survive the reading only within quotes
    }
    return list;
}

/// @throws RuntimeError 13 where it is no number, 6 where it is too large
std::int32_t pairsOf(const std::string& totalText) {
    return advised([&] { return toLong(totalText); },
                   [&](const RuntimeError& /*error*/) {
                       return "Total of the file is \"" + totalText +
                              "\", no number of pairs. Mend the file, or choose another.";
                   });
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
    const std::string totalText = GetPrivateProfileStringA(information, total, "", valueBuffer, file);
    if (totalText.empty()) {
        return file.isText() ? PacketLoad::NoTotal : PacketLoad::NoText;
    }
    std::int32_t pairs = 0;
    try {
        pairs = pairsOf(totalText);
    } catch (const RuntimeError&) {
        table.clear();
        throw;
    }
    if (pairs < 1) {
        table.clear();
        return PacketLoad::Corrupted;
    }
    // Row by row it would end at the first entry that is missing: a request has gone before its answer then.
    std::vector<std::string> answers = entries(file, send, static_cast<std::size_t>(pairs));
    std::vector<std::string> requests =
        entries(file, receive, std::min(static_cast<std::size_t>(pairs), answers.size() + 1));
    answers.resize(std::min(answers.size(), requests.size()));
    const bool isComplete = answers.size() == static_cast<std::size_t>(pairs);
    table.replace(std::move(requests), std::move(answers));
    return isComplete ? PacketLoad::Complete : PacketLoad::Incomplete;
}

} // namespace varda::core
