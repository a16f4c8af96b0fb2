#include "window/shell/last_answers.h"

#include "core/link/serial_link.h"
#include "core/protocol/frame.h"
#include "core/protocol/hex_text.h"
#include "window/controls/form.h"
#include "window/shell/page_names.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>

namespace varda::window {
namespace {

/// What a request asks for. A single write is answered alike whatever it writes, and may draw other words at
/// each send: its data are left out.
std::span<const std::uint8_t> asked(Mode mode, const Bytes& request) {
    const bool isSingleWrite = mode == Mode::BitWrite || mode == Mode::WordWrite;
    const std::size_t length =
        isSingleWrite ? std::min(request.size(), std::size_t{offset::data}) : request.size();
    return std::span(request).first(length);
}

} // namespace

void LastAnswers::told(const Exchange& exchange) {
    switch (exchange.outcome) {
    case Outcome::Sent:
        forgetUnless(exchange);
        break;
    case Outcome::Answered:
        keep(exchange);
        break;
    case Outcome::Overtaken:
    case Outcome::WrongLength:
        countUnanswered(exchange.mode);
        break;
    case Outcome::Silent:
    case Outcome::HungUp:
    case Outcome::NotSent:
        forget(exchange.mode);
        break;
    default: // says nothing of the answer that is shown
        break;
    }
}

void LastAnswers::keep(const Exchange& exchange) {
    unanswered_ = 0;
    if (const PageNames* const page = findPageNames(exchange.mode)) {
        form_.setPlaceholder(page->answer, hexGroups(exchange.answer));
        form_.setPlaceholder(page->completionStatus, answeredStatus);
        requests_[page] = exchange.request;
    }
}

/// The answer to another request would pass for the one that is awaited.
void LastAnswers::forgetUnless(const Exchange& exchange) {
    const auto kept = requests_.find(findPageNames(exchange.mode));
    if (kept != requests_.end() &&
        !std::ranges::equal(asked(exchange.mode, kept->second), asked(exchange.mode, exchange.request))) {
        forget(exchange.mode);
    }
}

void LastAnswers::countUnanswered(Mode mode) {
    if (++unanswered_ >= SerialLink::ticksOfSilence) {
        forget(mode);
    }
}

void LastAnswers::forget(Mode mode) {
    unanswered_ = 0;
    if (const PageNames* const page = findPageNames(mode)) {
        form_.setPlaceholder(page->answer, {});
        form_.setPlaceholder(page->completionStatus, {});
        requests_.erase(page);
    }
}

} // namespace varda::window
