#include "walks/period_model.h"

#include "walks/arithmetic.h"

#include <algorithm>

namespace varda::walks {

void PeriodModel::set(const std::string& text, std::size_t caret) {
    const Number number = number16(text);
    marked_ = false;
    text_ = !number ? "500" : number.value < 100 ? "100" : text;
    caret_ = text_ == text ? caret : text_.size();
}

void PeriodModel::put(const std::string& text) {
    interrupt();
    set(text, text.size());
}

void PeriodModel::key(char character) {
    const bool digit = character >= '0' && character <= '9';
    std::string text = marked_ ? std::string() : text_;
    const std::size_t place = marked_ ? 0 : caret_;
    text.insert(place, 1, character);
    if (!digit) {
        interrupt();
        set(text, place + 1);
        return;
    }
    const bool continues = continues_ && !marked_;
    if (continues) {
        text = typed_ + character;
    }
    typed_ = text;
    set(text, continues ? text.size() : place + 1);
    continues_ = caret_ == text_.size() && (continues_ || text_ != text);
}

void PeriodModel::mark() {
    interrupt();
    marked_ = !text_.empty();
    caret_ = text_.size();
}

void PeriodModel::move(std::size_t place) {
    interrupt();
    marked_ = false;
    caret_ = std::min(place, text_.size());
}

void PeriodModel::backspace() {
    interrupt();
    if (marked_) {
        set("", 0);
    } else if (caret_ > 0) {
        set(text_.substr(0, caret_ - 1) + text_.substr(caret_), caret_ - 1);
    }
}

void PeriodModel::erase() {
    interrupt();
    if (marked_) {
        set("", 0);
    } else if (caret_ < text_.size()) {
        set(text_.substr(0, caret_) + text_.substr(caret_ + 1), caret_);
    }
}

void PeriodModel::step(int difference) {
    interrupt();
    const int period = std::clamp(interval() + difference, 100, 32767);
    set(std::to_string(period), 5);
    toEnd();
}

} // namespace varda::walks
