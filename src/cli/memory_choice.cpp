#include "cli/memory_choice.h"

#include "cli/failure.h"
#include "core/files/atomic_file.h"
#include "core/files/file_path.h"

#include <filesystem>

namespace varda::cli {

void MemoryChoice::declare(CLI::App& app) {
    app.add_flag("--memory", isOn, "Answer what no prepared pair does like a controller with a memory");
    CLI::Option* const loaded =
        app.add_option("--memory-file", file, "Begin with the registers of this CSV file: W 0100,4660");
    app.add_flag("--save-memory", isSaved, "Write the memory back to that file at the end")->needs(loaded);
}

void MemoryChoice::load(Controller& controller) const {
    if (file.empty()) {
        return;
    }
    std::error_code ignored;
    if (!isSaved && !std::filesystem::exists(filePath(file), ignored)) {
        throw Failure(ExitCode::File,
                      file + " is not there. Check its name, or let it be made: --save-memory.");
    }
    const FileText read = readRegularFile(file, largestMemoryFile);
    if (read.problem) {
        throw RuntimeError(*read.problem);
    }
    try {
        controller.setMemory(readMemory(read.text));
    } catch (const RuntimeError& error) {
        throw Failure(ExitCode::File, file + ": " + error.what());
    }
}

void MemoryChoice::save(const Controller& controller) const {
    if (isSaved) {
        replaceFile(file, memoryText(controller.memory()));
    }
}

} // namespace varda::cli
