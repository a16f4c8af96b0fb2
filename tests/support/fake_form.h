#pragma once

#include "window/controls/form.h"

#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace varda::test {

struct Message {
    std::string text;
    std::string title;
    bool operator==(const Message&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Message& message) {
    return out << '"' << message.text << "\" titled \"" << message.title << '"';
}

/// A main window without a screen. Any name is a control; a control that nobody has touched is empty, not
/// ticked and enabled.
class FakeForm : public window::Form {
public:
    using Handler = std::function<void()>;
    using Answered = std::function<void(bool yes)>;

    std::string text(std::string_view control) const override { return valueOr(texts_, control, {}); }
    void setText(std::string_view control, std::string_view text) override {
        const bool changed = this->text(control) != text;
        texts_[std::string(control)] = text;
        told_.emplace_back(control, text);
        if (changed) {
            run(textChanges_, control);
        }
    }
    void setPlaceholder(std::string_view /*control*/, std::string_view /*text*/) override {}
    bool isTicked(std::string_view control) const override { return valueOr(ticks_, control, false); }
    void setTicked(std::string_view control, bool ticked) { ticks_[std::string(control)] = ticked; }
    bool isEnabled(std::string_view control) const { return valueOr(enabled_, control, true); }
    void setEnabled(std::string_view control, bool enabled) override {
        enabled_[std::string(control)] = enabled;
    }
    void enableGroup(window::ControlGroup group, bool enabled) override {
        groups_.emplace_back(group, enabled);
    }
    void SetScenarioButtons(bool enabled) override { setEnabled("cmdAddScenario", enabled); }

    void press(std::string_view button) override { ++presses_[std::string(button)]; }
    void showMessage(const std::string& text, const std::string& title) override {
        messages_.push_back({text, title});
    }
    void showMessage(const std::string& text, const std::string& title, const Tick& tick) override {
        showMessage(text, title);
        offers_.push_back(tick);
    }
    void showAdvised(const std::string& text, const std::string& title, const std::string& advice) override {
        showMessage(text, title);
        advice_ = advice;
    }
    void ask(const std::string& text, const std::string& title, Answered /*answered*/) override {
        messages_.push_back({text, title});
    }

    /// Registers what runs inside setText() wherever that alters the text, as the fields of a window do.
    void onTextChange(std::string_view field, Handler handler) {
        set(textChanges_, field, std::move(handler));
    }

    int presses(std::string_view button) const { return valueOr(presses_, button, 0); }
    int presses() const { return total(presses_); }

    /// Every text a control was given, the first one first.
    std::vector<std::string> told(std::string_view control) const {
        std::vector<std::string> texts;
        for (const auto& [name, text] : told_) {
            if (name == control) {
                texts.push_back(text);
            }
        }
        return texts;
    }
    /// The names of the controls whose text is `text`.
    std::vector<std::string> controlsShowing(std::string_view text) const {
        std::vector<std::string> controls;
        for (const auto& [name, shown] : texts_) {
            if (shown == text) {
                controls.push_back(name);
            }
        }
        return controls;
    }
    void forgetTold() { told_.clear(); }

    const std::vector<Message>& messages() const { return messages_; }
    /// What stood below the text of the last message box that may have such a line.
    const std::string& advice() const { return advice_; }
    /// What message boxes offered to tick.
    const std::vector<Tick>& offers() const { return offers_; }
    const std::vector<std::pair<window::ControlGroup, bool>>& groups() const { return groups_; }

private:
    template <typename Value>
    using ByName = std::map<std::string, Value, std::less<>>;

    template <typename Value>
    static Value valueOr(const ByName<Value>& values, std::string_view name, Value otherwise) {
        const auto found = values.find(name);
        return found == values.end() ? otherwise : found->second;
    }
    static int total(const ByName<int>& counts) {
        int sum = 0;
        for (const auto& [name, count] : counts) {
            sum += count;
        }
        return sum;
    }
    static void set(ByName<Handler>& handlers, std::string_view name, Handler handler) {
        handlers[std::string(name)] = std::move(handler);
    }
    static void run(const ByName<Handler>& handlers, std::string_view name) {
        if (const Handler handler = valueOr(handlers, name, Handler())) {
            handler();
        }
    }

    ByName<std::string> texts_;
    ByName<bool> ticks_;
    ByName<bool> enabled_;
    ByName<int> presses_;
    ByName<Handler> textChanges_;
    std::vector<std::pair<std::string, std::string>> told_;
    std::vector<std::pair<window::ControlGroup, bool>> groups_;
    std::vector<Message> messages_;
    std::string advice_;
    std::vector<Tick> offers_;
};

} // namespace varda::test
