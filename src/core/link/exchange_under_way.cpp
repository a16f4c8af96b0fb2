#include "core/link/exchange_under_way.h"

namespace varda::inline core {

void ExchangeUnderWay::tell(Outcome outcome) {
    known_.mode = mode_;
    known_.outcome = outcome;
    Exchange told = std::exchange(spare_, {}); // whose memory is used again; not by what is told inside
    told = known_;                             // what an observer begins meanwhile is not told in its place
    for (LinkObserver* const observer : observers_) {
        observer->told(told);
    }
    spare_ = std::move(told);
}

void ExchangeUnderWay::tellConnected() const {
    for (LinkObserver* const observer : observers_) {
        observer->connected();
    }
}

void ExchangeUnderWay::count(Counter counter, int value) const {
    for (CounterObserver* const observer : counterObservers_) {
        observer->counted(counter, value);
    }
}

void ExchangeUnderWay::begin(Bytes request, int expected) {
    giveUp();
    known_ = {};
    known_.request = std::move(request);
    known_.expected = expected;
}

void ExchangeUnderWay::beginUnlessPending() {
    if (!isPending_) {
        begin({}, 0);
    }
}

void ExchangeUnderWay::giveUp() {
    if (std::exchange(isPending_, false)) {
        tell(Outcome::Overtaken);
    }
}

} // namespace varda::core
