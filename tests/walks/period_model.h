#pragma once

#include <string>

namespace varda::walks {

/// A period field: what its text becomes at a key, a paste or whatever else alters it.
class PeriodModel {
public:
    explicit PeriodModel(std::string text) : text_(std::move(text)) {}

    const std::string& text() const { return text_; }
    int interval() const { return std::stoi(text_); }

    /// Digits typed one after another continue each other over a rewriting.
    /// @param marked the whole text is selected, so that the key replaces it; otherwise the caret is behind it
    void key(char character, bool marked);
    /// Another text altogether, as a paste brings it.
    void put(const std::string& text);
    /// The last character goes.
    void backspace() { put(text_.substr(0, text_.size() - 1)); }
    /// Whatever ends the series without altering the text.
    void interrupt() { rewritten_ = false; }
    /// What an arrow key or the wheel made of it is its own affair.
    void adopt(const std::string& text) {
        text_ = text;
        interrupt();
    }

private:
    void rewrite(const std::string& text);

    std::string text_;
    std::string typed_;      ///< the digits of the series
    bool rewritten_ = false; ///< the text is not what was typed, and the series goes on
};

} // namespace varda::walks
