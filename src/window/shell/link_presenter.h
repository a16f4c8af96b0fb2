#pragma once

#include "core/link/exchange.h"

#include <string_view>

namespace varda::window {

class Form;

/// Tells the user what the link does: alone in knowing which field of the window is told what.
class LinkPresenter : public LinkObserver {
public:
    explicit LinkPresenter(Form& form) : form_(form) {}

    void told(const Exchange& exchange) override;
    void counted(Counter counter, int value) override;

    /// Whether a scenario or the monitor may start: the port is open and neither the read nor the write page
    /// sends continuously; else shows the message that says so.
    bool isFreeForRun(bool portIsOpen);

private:
    void showAnswer(const Exchange& exchange);
    void showSilence(Mode mode);

    Form& form_;
};

} // namespace varda::window
