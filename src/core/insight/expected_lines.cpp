#include "core/insight/expected_lines.h"

#include "core/base/runtime_error.h"
#include "core/files/profile_file.h"

#include <algorithm>
#include <utility>

namespace varda::inline core {

std::size_t ExpectedLines::right() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(lines_, [](const Line& line) { return line.isJudged && line.why.empty(); }));
}

std::size_t ExpectedLines::wrong() const {
    return static_cast<std::size_t>(
        std::ranges::count_if(lines_, [](const Line& line) { return line.isJudged && !line.why.empty(); }));
}

void ExpectedLines::insert(std::size_t first, std::size_t count) {
    lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(first), count, Line());
    begin();
}

void ExpectedLines::remove(std::size_t first, std::size_t count) {
    const auto begun = lines_.begin() + static_cast<std::ptrdiff_t>(first);
    lines_.erase(begun, begun + static_cast<std::ptrdiff_t>(count));
    begin();
}

void ExpectedLines::clear() {
    lines_.clear();
    begin();
}

bool ExpectedLines::isSilenceExpected(std::size_t line) const {
    return line < lines_.size() && lines_[line].wanted && lines_[line].wanted->isSilence();
}

void ExpectedLines::setText(std::size_t line, ExpectationText text) {
    Line made;
    try {
        made.wanted = readExpectation(text, line);
    } catch (const RuntimeError& error) {
        made.flaw = error.advice().empty() ? error.what() : error.advice();
    }
    made.text = std::move(text);
    lines_.at(line) = std::move(made);
}

void ExpectedLines::load(const ProfileFile& file) {
    std::size_t line = 0;
    for (ExpectationText& text : expectationTexts(file, lines_.size())) {
        setText(line++, std::move(text));
    }
}

/// An entry that is empty is written only where it empties another one.
void ExpectedLines::store(ProfileFile& file) const {
    const std::vector<ExpectationText> before = expectationTexts(file, lines_.size());
    for (std::size_t line = 0; line < lines_.size(); ++line) {
        const ExpectationText& text = lines_[line].text;
        const std::string number = std::to_string(line);
        if (text.wanted != before[line].wanted) {
            file.setValue("Expect", "Expect" + number, text.wanted);
        }
        if (text.limit != before[line].limit) {
            file.setValue("Limit", "Limit" + number, text.limit);
        }
    }
}

void ExpectedLines::begin() {
    for (Line& line : lines_) {
        line.isJudged = false;
        line.why.clear();
        line.right = 0;
        line.wrong = 0;
    }
    taken_ = TakenExpectations(lines_.size());
    underWay_.reset();
}

/// The line before is overtaken inside the send of the next one, before that is told as sent.
void ExpectedLines::told(const Exchange& exchange, std::optional<std::size_t> sent) {
    if (exchange.outcome == Outcome::Sent) {
        underWay_ = sent;
    } else if (exchange.outcome == Outcome::NotSent && sent) {
        judge(*sent, exchange);
    } else if (isEnd(exchange.outcome) && underWay_) {
        judge(*underWay_, exchange);
    }
}

void ExpectedLines::judge(std::size_t line, const Exchange& exchange) {
    underWay_.reset();
    if (line >= lines_.size()) {
        return;
    }
    taken_.take(line, exchange);
    Line& judged = lines_[line];
    if (judged.wanted) {
        judged.why = judged.wanted->judge(exchange);
        judged.isJudged = true;
        ++(judged.why.empty() ? judged.right : judged.wrong);
    }
}

std::size_t ExpectedLines::takeFromRun() {
    const std::vector<std::string> texts = taken_.texts();
    std::size_t known = 0;
    for (std::size_t line = 0; line < lines_.size(); ++line) {
        if (!texts[line].empty()) {
            ++known;
            setText(line, {texts[line], lines_[line].text.limit});
        }
    }
    return known;
}

} // namespace varda::core
