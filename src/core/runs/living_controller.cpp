#include "core/runs/living_controller.h"

#include "core/protocol/hex_text.h"

#include <utility>

namespace varda::inline core {

std::optional<PreparedAnswer> LivingController::answerTo(std::span<const std::uint8_t> request) {
    if (auto prepared = responder_.answerTo(request)) {
        return prepared;
    }
    std::optional<Bytes> answer = isOn_ ? controller_.answer(request) : std::nullopt;
    return answer ? std::optional(PreparedAnswer{std::nullopt, std::move(*answer)}) : std::nullopt;
}

std::optional<PairTexts> pairFromMemory(std::span<const std::uint8_t> request,
                                        const ControllerMemory& memory) {
    Controller asked; // another one, for a write would change the memory
    asked.setMemory(memory);
    const std::optional<Bytes> answer = asked.answer(request);
    return answer ? std::optional(PairTexts{hexRun(request), hexRun(*answer)}) : std::nullopt;
}

} // namespace varda::core
