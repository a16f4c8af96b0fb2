#include "simulator/sim_kinds.h"

#include <algorithm>

namespace varda {

const SimKind* findSimKind(std::string_view mode) {
    const auto* const found = std::ranges::find(simKinds, mode, &SimKind::mode);
    return found != simKinds.end() ? found : nullptr;
}

const SimKind* findSimAnswerKind(std::string_view answerMode) {
    const auto* const found = std::ranges::find(simKinds, answerMode, &SimKind::answerMode);
    return found != simKinds.end() ? found : nullptr;
}

} // namespace varda
