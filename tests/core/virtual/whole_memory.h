#pragma once

#include "core/virtual/controller.h"

#include <cstdint>
#include <vector>

namespace varda {

/// Every word of the controller, to be compared with another moment's.
inline std::vector<std::uint16_t> wholeMemory(const Controller& controller) {
    std::vector<std::uint16_t> words;
    words.reserve(Controller::wordCount);
    for (int address = 0; address < Controller::wordCount; ++address) {
        words.push_back(controller.word(address));
    }
    return words;
}

} // namespace varda
