#pragma once

#include "core/link/exchange.h"

#include <functional>
#include <utility>

namespace varda::test {

/// Does something whenever an exchange comes to one outcome.
class LinkEar : public LinkObserver {
public:
    LinkEar(Outcome outcome, std::function<void(const Exchange&)> heard)
        : outcome_(outcome), heard_(std::move(heard)) {}

    void told(const Exchange& exchange) override {
        if (exchange.outcome == outcome_) {
            heard_(exchange);
        }
    }

private:
    Outcome outcome_;
    std::function<void(const Exchange&)> heard_;
};

} // namespace varda::test
