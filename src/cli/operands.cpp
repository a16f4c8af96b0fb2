#include "cli/operands.h"

#include "cli/failure.h"
#include "core/base/conversion.h"
#include "core/protocol/pasted_words.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace varda::cli {
namespace {

bool isDigit(char character) { return character >= '0' && character <= '9'; }

bool isNumber(std::string_view token) { return !token.empty() && std::ranges::all_of(token, isDigit); }

bool hasDigit(std::string_view token) { return std::ranges::any_of(token, isDigit); }

/// The blanks between the words of a command line mean nothing, nor do those round an "=".
std::vector<std::string> tokensOf(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        for (const char character : word) {
            text += character == '=' ? " = " : std::string(1, character);
        }
        text += ' ';
    }
    std::vector<std::string> tokens;
    std::istringstream stream(text);
    for (std::string token; stream >> token;) {
        tokens.push_back(token);
    }
    return tokens;
}

Failure notUnderstood(const std::string& text) { return {ExitCode::Usage, text}; }

std::string kindNames() {
    std::string names;
    for (const RegisterKind& kind : registerKinds()) {
        names += (names.empty() ? "" : ", ") + std::string(kind.name);
    }
    return names;
}

int wordValue(const std::string& text) {
    const std::optional<int> word = readWord(text);
    if (!word) {
        throw notUnderstood(
            '"' + text + "\" is no word. A word is 0 to 65535, or hexadecimal with an h behind it: 1A2Bh.");
    }
    return *word;
}

int bitValue(const std::string& text) {
    const std::optional<bool> bit = readBit(text);
    if (!bit) {
        throw notUnderstood('"' + text + "\" is no bit's value. Write ON or OFF.");
    }
    return *bit ? 1 : 0;
}

std::vector<int> valuesOf(const std::string& text, Access access) {
    std::vector<int> values;
    std::istringstream stream(text);
    for (std::string value; std::getline(stream, value, ',');) {
        values.push_back(access == Access::Bit ? bitValue(value) : wordValue(value));
    }
    if (values.empty()) {
        throw notUnderstood("A value is missing behind the \"=\".");
    }
    if (text.ends_with(',')) {
        throw notUnderstood(R"(A value is missing behind the "," at the end of ")" + text + "\".");
    }
    return values;
}

int countOf(const std::string& text) {
    const std::optional<std::int32_t> count = readLong(text);
    if (!count || *count < 1) {
        throw notUnderstood('"' + text + "\" is no count: one or more.");
    }
    return *count;
}

class Reader {
public:
    explicit Reader(std::vector<std::string> tokens) : tokens_(std::move(tokens)) {}

    bool isAtEnd() const { return next_ == tokens_.size(); }

    Operand readOperand() {
        Operand operand{readRegister(), std::nullopt, {}};
        if (isNext("=")) {
            ++next_;
            operand.values = valuesOf(isAtEnd() ? std::string() : tokens_[next_++], operand.first.access);
        } else if (!isAtEnd() && isNumber(tokens_[next_])) {
            operand.count = countOf(tokens_[next_++]);
        }
        return operand;
    }

private:
    bool isNext(std::string_view token) const { return !isAtEnd() && tokens_[next_] == token; }

    /// The kind and its number may stand apart.
    Point readRegister() {
        std::string text = tokens_[next_++];
        if (!hasDigit(text) && !isAtEnd()) {
            text += ' ' + tokens_[next_++];
        }
        const std::optional<Point> point = readPoint(text);
        if (!point) {
            throw notUnderstood('"' + text + "\" is no register. Write its kind (" + kindNames() +
                                R"() and a number that it has, as "W 0100", and a bit as "R 0012.3".)");
        }
        return *point;
    }

    std::vector<std::string> tokens_;
    std::size_t next_ = 0;
};

} // namespace

std::vector<Operand> readOperands(const std::vector<std::string>& words) {
    Reader reader(tokensOf(words));
    std::vector<Operand> operands;
    while (!reader.isAtEnd()) {
        operands.push_back(reader.readOperand());
    }
    if (operands.empty()) { // a variable of a script without a value, most likely
        throw notUnderstood(R"(No register is named. Write its kind and number, as "W 0100".)");
    }
    return operands;
}

} // namespace varda::cli
