#include "core/insight/expectation.h"

#include "core/base/blanks.h"
#include "core/base/conversion.h"
#include "core/base/runtime_error.h"
#include "core/files/profile_file.h"
#include "core/insight/field_words.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/pasted_words.h"

#include <algorithm>
#include <array>

namespace varda::inline core {
namespace {

constexpr std::string_view anyByte = "..";
constexpr std::size_t longestEntry = 65536; ///< characters

RuntimeError notUnderstood(std::string_view part) {
    RuntimeError error = typeMismatch();
    error.advise(
        '"' + std::string(part) +
        "\" is no expectation: silence, the bytes of an answer with .. for any of them, or a value as "
        "W 0100 >= 10.");
    return error;
}

template <typename Take>
void forEachPart(std::string_view text, char separator, Take&& take) {
    while (!text.empty()) {
        const auto end = std::min(text.find(separator), text.size());
        const std::string_view part = withoutBlanksAround(text.substr(0, end));
        if (!part.empty()) {
            take(part);
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

int numberOf(std::string_view text, Access access, std::string_view whole) {
    const std::optional<int> number = access == Access::Bit ? readBit(text) : readWord(text);
    if (!number) {
        throw notUnderstood(whole);
    }
    return *number;
}

std::string foundInWords(const Field& value) {
    return value.point->access == Access::Bit ? bitValue(value.number)
                                              : wordInWords(nameOf(*value.point), value.number);
}

} // namespace

bool isSilent(const Exchange& exchange) {
    return exchange.outcome == Outcome::Silent || exchange.outcome == Outcome::Overtaken;
}

bool hasAnswer(const Exchange& exchange) {
    return exchange.outcome == Outcome::Answered || exchange.outcome == Outcome::WrongLength;
}

std::string whyNoAnswer(const Exchange& exchange) {
    switch (exchange.outcome) {
    case Outcome::Silent:
        return "No answer came.";
    case Outcome::WrongLength:
        return counted(exchange.answer.size(), "byte") + " came where " + std::to_string(exchange.expected) +
               " were awaited.";
    case Outcome::NotSent:
        return "The request was not sent.";
    case Outcome::HungUp:
        return "The line went away.";
    case Outcome::NothingToRead:
        return "The port told of bytes, and none were there.";
    default:
        return "The next request went out before an answer came.";
    }
}

Expectation Expectation::parse(std::string_view text) {
    Expectation wanted;
    text = withoutBlanksAround(text);
    if (text == expectedSilence) {
        wanted.isSilence_ = true;
    } else if (text.find_first_of("<>=!") != std::string_view::npos) {
        forEachPart(text, ';', [&](std::string_view part) { wanted.values_.push_back(parseValue(part)); });
    } else {
        forEachPart(text, ' ', [&](std::string_view group) {
            const std::optional<Bytes> byte = group.size() == 2 ? readHexRun(group) : std::nullopt;
            if (!byte && group != anyByte) {
                throw notUnderstood(group);
            }
            wanted.bytes_.push_back(byte ? std::optional(byte->front()) : std::nullopt);
        });
    }
    if (!wanted.isSilence_ && wanted.values_.empty() && wanted.bytes_.empty()) {
        throw notUnderstood(text);
    }
    return wanted;
}

Expectation::Value Expectation::parseValue(std::string_view text) {
    struct Sign {
        std::string_view text;
        Comparison comparison;
    };
    constexpr std::array signs = {// the longer ones first, for they begin as the shorter ones do
                                  Sign{">=", Comparison::AtLeast}, Sign{"<=", Comparison::AtMost},
                                  Sign{"!=", Comparison::Unequal}, Sign{">", Comparison::Above},
                                  Sign{"<", Comparison::Below},    Sign{"=", Comparison::Equal}};
    for (const Sign& sign : signs) {
        const auto at = text.find(sign.text);
        if (at == std::string_view::npos) {
            continue;
        }
        const std::optional<Point> point = readPoint(text.substr(0, at));
        const std::string_view number = withoutBlanksAround(text.substr(at + sign.text.size()));
        if (!point) {
            throw notUnderstood(text);
        }
        return {std::string(text), *point, sign.comparison, numberOf(number, point->access, text)};
    }
    throw notUnderstood(text);
}

bool Expectation::holds(Comparison comparison, int found, int wanted) {
    switch (comparison) {
    case Comparison::Equal:
        return found == wanted;
    case Comparison::Unequal:
        return found != wanted;
    case Comparison::Below:
        return found < wanted;
    case Comparison::AtMost:
        return found <= wanted;
    case Comparison::Above:
        return found > wanted;
    case Comparison::AtLeast:
        return found >= wanted;
    }
    return false;
}

std::string Expectation::judge(const Exchange& exchange) const {
    if (isSilence_) {
        return isSilent(exchange)    ? ""
               : hasAnswer(exchange) ? "Silence was wanted, and an answer came."
                                     : whyNoAnswer(exchange);
    }
    const bool isLookedAt = exchange.outcome == Outcome::Answered ||
                            (exchange.outcome == Outcome::WrongLength && !bytes_.empty());
    if (!isLookedAt) {
        return whyNoAnswer(exchange);
    }
    const auto time =
        std::chrono::duration_cast<std::chrono::milliseconds>(exchange.received.last - exchange.sent.first);
    if (limit_ && time > *limit_) {
        return "The answer took " + std::to_string(time.count()) + " ms, where " +
               std::to_string(limit_->count()) + " ms were allowed.";
    }
    return bytes_.empty() ? judgeValues(exchange) : judgeBytes(exchange.answer);
}

std::string Expectation::judgeBytes(const Bytes& answer) const {
    if (answer.size() != bytes_.size()) {
        return counted(answer.size(), "byte") + " came, and " + std::to_string(bytes_.size()) +
               " were wanted.";
    }
    for (std::size_t index = 0; index < answer.size(); ++index) {
        if (bytes_[index] && *bytes_[index] != answer[index]) {
            return "Byte " + std::to_string(index + 1) + " is " + hex(answer[index], 2) + ", and " +
                   hex(*bytes_[index], 2) + " was wanted.";
        }
    }
    return {};
}

std::string Expectation::judgeValues(const Exchange& exchange) const {
    const DecodedFrame answer = decode(exchange.answer, exchange.request);
    if (!answer.isSound()) {
        return "The answer has a flaw, so its values mean nothing.";
    }
    for (const Value& value : values_) {
        const auto field = std::ranges::find_if(answer.fields, [&value](const Field& candidate) {
            return candidate.role == FieldRole::Value && candidate.point == value.point;
        });
        if (field == answer.fields.end()) {
            return value.text + ": the answer does not bring this register.";
        }
        const bool isBit = value.point.access == Access::Bit;
        if (!holds(value.comparison, isBit ? (field->number != 0 ? 1 : 0) : field->number, value.number)) {
            return value.text + " was wanted, and it is " + foundInWords(*field) + '.';
        }
    }
    return {};
}

std::vector<ExpectationText> expectationTexts(const ProfileFile& file, std::size_t lines) {
    std::vector<ExpectationText> texts;
    for (std::size_t line = 0; line < lines; ++line) {
        const std::string number = std::to_string(line);
        texts.push_back({file.value("Expect", "Expect" + number, "", longestEntry),
                         file.value("Limit", "Limit" + number, "", longestEntry)});
    }
    return texts;
}

bool holdsExpectations(const ProfileFile& file, std::size_t lines) {
    return std::ranges::any_of(expectationTexts(file, lines),
                               [](const ExpectationText& text) { return !text.wanted.empty(); });
}

std::optional<Expectation> readExpectation(const ExpectationText& text, std::size_t line) {
    if (text.wanted.empty()) {
        return std::nullopt;
    }
    Expectation wanted = Expectation::parse(text.wanted);
    if (!text.limit.empty()) {
        wanted.setLimit(std::chrono::milliseconds(toLong(text.limit, "Limit" + std::to_string(line))));
    }
    return wanted;
}

std::vector<std::optional<Expectation>> loadExpectations(const ProfileFile& file, std::size_t lines) {
    std::vector<std::optional<Expectation>> wanted;
    for (const ExpectationText& text : expectationTexts(file, lines)) {
        wanted.push_back(readExpectation(text, wanted.size()));
    }
    return wanted;
}

} // namespace varda::core
