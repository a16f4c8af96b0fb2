#pragma once

#include <cstddef>
#include <string>

namespace varda::walks {

/// A period field: what its text becomes at a key, a paste or whatever else alters it, and where the caret
/// goes.
class PeriodModel {
public:
    explicit PeriodModel(std::string text) : text_(std::move(text)) { toEnd(); }

    const std::string& text() const { return text_; }
    int interval() const { return std::stoi(text_); }

    /// Digits typed one after another continue each other over a rewriting.
    void key(char character);
    /// Another text altogether, as a paste over the marked text brings it.
    void put(const std::string& text);
    void backspace();
    void erase();
    /// The whole text is marked.
    void mark();
    void move(std::size_t place);
    void toEnd() { move(text_.size()); }
    std::size_t caret() const { return caret_; }
    bool isMarked() const { return marked_; }
    /// An arrow key or the wheel.
    void step(int difference);
    /// Whatever ends the series without altering the text.
    void interrupt() { continues_ = false; }

private:
    void set(const std::string& text, std::size_t caret);

    std::string text_;
    std::size_t caret_ = 0;
    bool marked_ = false;
    std::string typed_;      ///< the digits of the series
    bool continues_ = false; ///< the text was rewritten after a digit, and the next digit goes on from there
};

} // namespace varda::walks
