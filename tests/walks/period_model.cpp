#include "walks/period_model.h"

#include "walks/arithmetic.h"

namespace varda::walks {

void PeriodModel::rewrite(const std::string& text) {
    const Number number = number16(text);
    if (!number) {
        text_ = "500";
    } else if (number.value < 100) {
        text_ = "100";
    } else {
        text_ = text;
    }
    rewritten_ = text_ != text;
}

void PeriodModel::put(const std::string& text) {
    typed_.clear();
    rewrite(text);
}

void PeriodModel::key(char character, bool marked) {
    const bool digit = character >= '0' && character <= '9';
    const bool continues = digit && rewritten_ && !marked;
    const std::string before = marked ? std::string() : text_;
    if (!digit) {
        typed_.clear();
        rewrite(before + character);
        return;
    }
    typed_ = continues ? typed_ + character : before + character;
    rewrite(typed_);
}

} // namespace varda::walks
