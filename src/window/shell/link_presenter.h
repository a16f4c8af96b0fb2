#pragma once

#include "core/link/exchange.h"

#include <string_view>

namespace varda::window {

class Form;

/// Tells the user what becomes of requests, and the counters: alone in knowing which field of which page is
/// told what.
class LinkPresenter : public LinkObserver, public CounterObserver {
public:
    explicit LinkPresenter(Form& form) : form_(form) {}

    void told(const Exchange& exchange) override;
    void counted(Counter counter, int value) override;

private:
    void showAnswer(const Exchange& exchange);
    void showSilence(Mode mode);

    Form& form_;
};

} // namespace varda::window
