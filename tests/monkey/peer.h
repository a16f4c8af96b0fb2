#pragma once

#include "core/virtual/controller.h"
#include "support/driven_window.h"

#include <random>

namespace varda::monkey {

using namespace window;

using Random = std::mt19937_64;

/// A number of 0 .. count - 1, the same on every system.
inline int below(Random& random, int count) {
    return static_cast<int>(random() % static_cast<std::uint64_t>(count));
}

/// Whoever is at the far end of the line: answers as a controller does, late, wrongly, in pieces, or says
/// much more than that.
class Peer {
public:
    Peer(test::DrivenWindow& window, Random& random) : window_(window), random_(random) {}

    /// Does one thing. @param written what has gone out last
    void act(const Bytes& written);

private:
    void answer(const Bytes& request);
    void answerInPieces(const Bytes& request);
    void answerWrongly(const Bytes& request);
    void ask(const Bytes& request);
    void flood(const Bytes& request);
    void hangUp(const Bytes& request);
    Bytes anything(int most);

    test::DrivenWindow& window_;
    Random& random_;
    Controller controller_;
    Bytes request_; ///< one that came, to be sent back as a master would
};

} // namespace varda::monkey
