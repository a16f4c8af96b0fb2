#include "core/faults/fault_plan.h"
#include "core/files/profile_file.h"
#include "core/runs/file_kind.h"
#include "core/runs/scenario_file.h"
#include "core/virtual/controller_memory.h"
#include "input.h"

/// Any text as the memory of a controller, as faults on purpose, and as the file of a scenario.
namespace {

using namespace varda;
using fuzz::require;

void readMemoryText(const std::string& text) {
    if (const auto memory = fuzz::attempt({13}, [&text] { return readMemory(text); })) {
        require(readMemory(memoryText(*memory)) == *memory, "a memory reads back");
    }
}

void readFaults(const std::string& text) {
    if (const auto plan = fuzz::attempt({13}, [&text] { return parseFaults(text); })) {
        require(parseFaults(faultText(*plan)) == *plan, "faults read back");
    }
}

void readScenario(const std::string& text) {
    const ProfileFile file = ProfileFile::parse(text);
    kindOf(file);
    const auto loaded = loadScenario(file);
    if (!loaded || !loaded->isComplete) {
        return;
    }
    ProfileFile stored;
    fuzz::attempt({5}, [&] { storeScenario(loaded->lines, stored); });
    const auto again = loadScenario(stored);
    require(again && again->lines.size() <= loaded->lines.size(), "no more lines come back than were stored");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text = fuzz::Input(data, size).rest();
    readMemoryText(text);
    readFaults(text);
    readScenario(text);
    return 0;
}
