#pragma once

#include "core/link/exchange.h"

namespace varda::window {

class Form;

/// Keeps the last answer of each page in sight, in grey, while the next one is awaited: a send empties Answer
/// and Status, and a page that sends again and again would show nothing most of the time. The fields' texts
/// stay empty.
///
/// What is grey is old, so it goes when a controller stays silent, when the line goes away, and when so many
/// requests in a row had no answer as ticks of silence end a wait.
class LastAnswers : public LinkObserver {
public:
    explicit LastAnswers(Form& form) : form_(form) {}

    void told(const Exchange& exchange) override;

private:
    void keep(const Exchange& exchange);
    void forget(Mode mode);
    void countUnanswered(Mode mode);

    Form& form_;
    int unanswered_ = 0; ///< requests in a row
};

} // namespace varda::window
