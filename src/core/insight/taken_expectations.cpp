#include "core/insight/taken_expectations.h"

#include "core/files/profile_file.h"
#include "core/insight/expectation.h"
#include "core/protocol/hex_text.h"

namespace varda::inline core {

void TakenExpectations::take(std::size_t line, const Exchange& exchange) {
    if (!isSilent(exchange) && !hasAnswer(exchange)) {
        return;
    }
    const Bytes answer = isSilent(exchange) ? Bytes() : exchange.answer;
    Line& taken = lines_.at(line);
    if (!taken.isTaken) {
        taken.isTaken = true;
        taken.bytes.assign(answer.begin(), answer.end());
    }
    if (taken.bytes.size() != answer.size()) {
        taken.isUnclear = true;
        return;
    }
    for (std::size_t index = 0; index < answer.size(); ++index) {
        if (taken.bytes[index] != answer[index]) {
            taken.bytes[index].reset();
        }
    }
}

std::vector<std::string> TakenExpectations::texts() const {
    std::vector<std::string> texts;
    for (const Line& line : lines_) {
        const bool wasSilent = line.isTaken && !line.isUnclear && line.bytes.empty();
        std::string text(wasSilent ? expectedSilence : "");
        for (const auto& byte : line.bytes) {
            text += (text.empty() ? "" : " ") + (byte ? hex(*byte, 2) : "..");
        }
        texts.push_back(line.isUnclear ? "" : text);
    }
    return texts;
}

void storeExpectations(const std::vector<std::string>& texts, ProfileFile& file) {
    for (std::size_t line = 0; line < texts.size(); ++line) {
        if (!texts[line].empty()) {
            file.setValue("Expect", "Expect" + std::to_string(line), texts[line]);
        }
    }
}

} // namespace varda::core
