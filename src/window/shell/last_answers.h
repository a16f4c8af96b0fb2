#pragma once

#include "core/base/bytes.h"
#include "core/link/exchange.h"

#include <map>

namespace varda::window {

class Form;
struct PageNames;

/// Keeps the last answer of each page in sight, in grey, while the next one is awaited: a send empties Answer
/// and Status, and a page that sends again and again would show nothing most of the time. The fields' texts
/// stay empty.
///
/// What is grey is old, so it goes when something else is asked, when a controller stays silent, when the
/// line goes away, and when so many requests in a row had no answer that was taken as ticks of silence end a
/// wait.
class LastAnswers : public LinkObserver {
public:
    explicit LastAnswers(Form& form) : form_(form) {}

    void told(const Exchange& exchange) override;

private:
    void keep(const Exchange& exchange);
    void forgetUnless(const Exchange& exchange);
    void forget(Mode mode);
    void countUnanswered(Mode mode);

    Form& form_;
    int unanswered_ = 0;                         ///< requests in a row
    std::map<const PageNames*, Bytes> requests_; ///< of what is grey
};

} // namespace varda::window
