#include "core/protocol/frame.h"
#include "core/virtual/controller.h"
#include "input.h"

#include <array>

/// Any bytes as requests to the embedded controller, one after another.
namespace {

using namespace varda;
using fuzz::require;

std::array<std::uint16_t, Controller::wordCount> memoryOf(const Controller& controller) {
    std::array<std::uint16_t, Controller::wordCount> memory{};
    for (int address = 0; address < Controller::wordCount; ++address) {
        memory.at(static_cast<std::size_t>(address)) = controller.word(address);
    }
    return memory;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    Controller controller;
    while (!input.isEmpty()) {
        const Bytes request = input.bytes(300);
        const auto before = memoryOf(controller);
        const auto answer = controller.answer(request);
        require(answer || memoryOf(controller) == before, "what is not answered changes nothing");
        if (answer) {
            require(parse(request).has_value(), "only a frame is answered");
            require(answer->at(offset::destination) == request.at(offset::source), "stations change places");
            require(answer->at(offset::command) == (request.at(offset::command) | answerMark), "its code");
        }
    }
    return 0;
}
