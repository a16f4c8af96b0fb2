#include "core/pairs/send_data_check.h"

#include <algorithm>
#include <array>

namespace varda::inline core {
namespace {

constexpr std::string_view hexDigits = "0123456789ABCDEFabcdef";

bool isOnOrOff(std::string_view group) { return group == "00" || group == "FF"; }

bool isWord(std::string_view group) { return group.find_first_not_of(hexDigits) == std::string_view::npos; }

bool alwaysAccepted(std::string_view) { return true; }

struct SendDataRule {
    std::string_view kind;
    std::size_t digits; ///< of one value
    bool (*accepts)(std::string_view group);
    std::string_view message;
};

constexpr std::string_view bitMessage = "In BIT_READ Mode,Only possible to enter 00 or FF";
constexpr std::string_view wordMessage = "In WORD_READ Mode,Only possible to enter 0000 to FFFF";

constexpr std::array<SendDataRule, 4> rules = {{
    {"BIT_READ", 2, isOnOrOff, bitMessage},
    {"WORD_READ", 4, isWord, wordMessage},
    {"BIT_WRITE", 1, alwaysAccepted, bitMessage}, // kept: the writes tell the messages of the reads
    {"WORD_WRITE", 1, alwaysAccepted, wordMessage},
}};

const SendDataRule* findRule(std::string_view kind) {
    const auto* const found = std::ranges::find(rules, kind, &SendDataRule::kind);
    return found != rules.end() ? found : nullptr;
}

bool everyGroupAccepted(const SendDataRule& rule, std::string_view text) {
    for (; !text.empty(); text.remove_prefix(rule.digits)) {
        if (!rule.accepts(text.substr(0, rule.digits))) {
            return false;
        }
    }
    return true;
}

struct KeyRule {
    std::string_view answerKind;
    std::string_view passing;
};

constexpr std::array<KeyRule, 2> keyRules = {{
    {"Bit Read ANS", "0F"},
    {"Word Read ANS", "0123456789ABCDEF"},
}};

/// kept: 37 and 39 are the codes of the cursor keys left and right; as characters they let "%" and "'" in
constexpr std::string_view alwaysPassing = "\x08\x09%'";

bool contains(std::string_view set, char key) { return set.find(key) != std::string_view::npos; }

} // namespace

SendDataVerdict CheckSimSendData(std::string_view kind, std::string_view text) {
    const SendDataRule* const rule = findRule(kind);
    if (rule == nullptr) {
        return SendDataVerdict::ValueRefused;
    }
    if (text.size() % rule->digits != 0) {
        return SendDataVerdict::LengthDiffers;
    }
    return everyGroupAccepted(*rule, text) ? SendDataVerdict::Accepted : SendDataVerdict::ValueRefused;
}

std::vector<std::string> sendDataMessages(std::string_view kind, SendDataVerdict verdict) {
    std::vector<std::string> messages;
    if (verdict == SendDataVerdict::LengthDiffers) {
        messages.emplace_back("Data Length is different !!");
    }
    const SendDataRule* const rule = findRule(kind);
    if (verdict != SendDataVerdict::Accepted && rule != nullptr) {
        messages.emplace_back(rule->message);
    }
    return messages;
}

std::optional<char> filterSendDataKey(std::string_view answerKind, char key) {
    if (key >= 'a' && key <= 'f') {
        key = static_cast<char>(key - 'a' + 'A');
    }
    const auto* const rule = std::ranges::find(keyRules, answerKind, &KeyRule::answerKind);
    if (rule == keyRules.end() || contains(rule->passing, key) || contains(alwaysPassing, key)) {
        return key;
    }
    return std::nullopt;
}

} // namespace varda::core
