#pragma once

#include "core/link/exchange.h"

#include <utility>
#include <vector>

namespace varda::inline core {

/// The exchange under way, and those who are told what becomes of it.
class ExchangeUnderWay {
public:
    /// @param mode of the link, whenever something is told
    explicit ExchangeUnderWay(const Mode& mode) : mode_(mode) {}

    void observe(LinkObserver& observer) { observers_.push_back(&observer); }
    void observeCounters(CounterObserver& observer) { counterObservers_.push_back(&observer); }

    /// What is known of it: of the last one that was begun.
    Exchange& known() { return known_; }

    /// Begins another one; one that still is without an answer has been overtaken by it.
    void begin(Bytes request, int expected);
    /// Begins one without a request, unless one still is without an answer: what is told next has to do with
    /// a request only then.
    void beginUnlessPending();
    /// Its request has gone out; from now on something must become of it.
    void setPending() { isPending_ = true; }
    /// What became of it is known.
    void settle() { isPending_ = false; }
    /// Nothing can become of it any more: where something still had to, it has been overtaken.
    void giveUp();

    void tell(Outcome outcome);
    void tellConnected() const;
    void count(Counter counter, int value) const;

private:
    const Mode& mode_;
    std::vector<LinkObserver*> observers_;
    std::vector<CounterObserver*> counterObservers_;
    Exchange known_;
    Exchange spare_;         ///< of the last telling
    bool isPending_ = false; ///< nothing has become of it yet
};

} // namespace varda::core
