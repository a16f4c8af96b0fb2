#include "core/pairs/sim_kinds.h"

#include <algorithm>

namespace varda::inline core {
namespace {

constexpr int highestStation = 255;

} // namespace

std::vector<std::string> simModeTexts() {
    std::vector<std::string> texts;
    for (const SimKind& kind : simKinds) {
        texts.emplace_back(kind.mode);
    }
    texts.emplace_back(mixedReadMode);
    texts.emplace_back(mixedWriteMode);
    return texts;
}

std::vector<std::string> simAnswerModeTexts() {
    std::vector<std::string> texts = simModeTexts();
    std::ranges::for_each(texts, [](std::string& text) { text += " ANS"; });
    return texts;
}

std::vector<std::string> simStationTexts() {
    std::vector<std::string> texts;
    for (int station = 0; station <= highestStation; ++station) {
        texts.push_back(std::to_string(station));
    }
    return texts;
}

std::vector<std::string> simRegisterTexts(Access access) {
    std::vector<std::string> texts = kindListTexts(access);
    texts.pop_back();
    return texts;
}

const SimKind* findSimKind(std::string_view mode) {
    const auto* const found = std::ranges::find(simKinds, mode, &SimKind::mode);
    return found != simKinds.end() ? found : nullptr;
}

const SimKind* findSimAnswerKind(std::string_view answerMode) {
    const auto* const found = std::ranges::find(simKinds, answerMode, &SimKind::answerMode);
    return found != simKinds.end() ? found : nullptr;
}

} // namespace varda::core
