#include "monkey/peer.h"

#include <algorithm>
#include <array>

namespace varda::monkey {

void Peer::act(const Bytes& written) {
    using Act = void (Peer::*)(const Bytes&);
    static constexpr std::array<Act, 12> acts{&Peer::answer,        &Peer::answer, &Peer::answer,
                                              &Peer::answer,        &Peer::answer, &Peer::answerInPieces,
                                              &Peer::ask,           &Peer::ask,    &Peer::answerWrongly,
                                              &Peer::answerWrongly, &Peer::flood,  &Peer::hangUp};
    if (!written.empty()) {
        request_ = written;
    }
    (this->*acts.at(static_cast<std::size_t>(below(random_, static_cast<int>(acts.size())))))(request_);
}

void Peer::answer(const Bytes& request) {
    if (const auto bytes = controller_.answer(request)) {
        window_.farEnd().deliver(*bytes);
    }
}

void Peer::answerInPieces(const Bytes& request) {
    const Bytes bytes = controller_.answer(request).value_or(anything(20));
    for (std::size_t from = 0; from < bytes.size();) {
        const std::size_t to = std::min(bytes.size(), from + static_cast<std::size_t>(1 + below(random_, 5)));
        window_.farEnd().deliver({bytes.begin() + static_cast<std::ptrdiff_t>(from),
                                  bytes.begin() + static_cast<std::ptrdiff_t>(to)});
        window_.advance(below(random_, 60));
        from = to;
    }
}

void Peer::answerWrongly(const Bytes& request) {
    Bytes bytes = controller_.answer(request).value_or(anything(20));
    if (!bytes.empty()) {
        bytes[static_cast<std::size_t>(below(random_, static_cast<int>(bytes.size())))] ^= 0x10;
    }
    if (below(random_, 2) == 0) {
        bytes.push_back(0);
    }
    window_.farEnd().deliver(bytes);
}

void Peer::ask(const Bytes& request) { window_.farEnd().deliver(request.empty() ? anything(9) : request); }

void Peer::flood(const Bytes& /*request*/) {
    for (int burst = 0; burst < 10; ++burst) {
        window_.farEnd().deliver(anything(2000));
        window_.advance(below(random_, 40));
    }
}

void Peer::hangUp(const Bytes& /*request*/) {
    if (below(random_, 4) == 0) {
        window_.farEnd().hangUp("the line is gone");
    }
}

Bytes Peer::anything(int most) {
    Bytes bytes(static_cast<std::size_t>(below(random_, most)));
    std::generate(bytes.begin(), bytes.end(), [this] { return static_cast<std::uint8_t>(random_()); });
    return bytes;
}

} // namespace varda::monkey
