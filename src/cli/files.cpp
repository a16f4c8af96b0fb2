#include "cli/files.h"

#include "cli/failure.h"
#include "core/files/file_path.h"
#include "core/files/profile_file.h"
#include "core/files/text_form.h"
#include "core/insight/taken_expectations.h"
#include "core/pairs/packet_file.h"
#include "core/recordings/capture_loading.h"
#include "core/runs/scenario_file.h"
#include "core/runs/scenario_frame.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <ostream>
#include <utility>

namespace varda::cli {
namespace {

ProfileFile load(const std::string& path) {
    ProfileFile file = ProfileFile::load(path);
    if (file.problem()) {
        throw Failure(ExitCode::File, path + ": " + file.problem()->what());
    }
    return file;
}

/// Names the file and ends with its code where something in it is not understood, which is no matter of the
/// command line.
template <typename Read>
auto understood(const std::string& path, Read&& read) {
    const ProfileFile file = load(path);
    try {
        return read(file);
    } catch (const RuntimeError& error) {
        throw Failure(ExitCode::File, path + ": " + (error.advice().empty() ? error.what() : error.advice()));
    }
}

/// @throws Failure File where the line is no frame
void requireFrame(const std::string& path, const std::string& line) {
    try {
        scenarioAnswerLength(scenarioFrame(line));
    } catch (const RuntimeError&) {
        throw Failure(ExitCode::File, path + ": \"" + line.substr(0, 40) + "\" is no frame.");
    }
}

/// A file that is not there yet has a name all the same.
std::filesystem::path withoutDetours(const std::string& path) {
    std::error_code error;
    std::filesystem::path straight =
        std::filesystem::weakly_canonical(std::filesystem::absolute(filePath(path), error), error);
    return error ? filePath(path) : straight;
}

} // namespace

void requireOwnFile(const std::string& written, const std::vector<std::string>& others) {
    const auto isSame = [&written](const std::string& other) {
        return !other.empty() && withoutDetours(other) == withoutDetours(written);
    };
    if (!written.empty() && std::ranges::any_of(others, isSame)) {
        throw Failure(ExitCode::Usage, written + " is named twice, and one would be written over the other. "
                                                 "Give each a file of its own.");
    }
}

std::string readableName(const std::string& path) {
    constexpr TextForm strict = TextForm::Utf16LittleEndian; // which has no other letters
    std::string name = *decodedText(encodedText(path, strict), strict);
    std::ranges::replace_if(
        name, [](char character) { return static_cast<unsigned char>(character) < ' '; }, '?');
    return name;
}

/// The parser's own knows only names that fit into the system's code page.
CLI::Validator existingFile() {
    const auto refusal = [](const std::string& name) -> std::string {
        std::error_code error;
        switch (std::filesystem::status(filePath(name), error).type()) {
        case std::filesystem::file_type::not_found:
            return "File does not exist: " + name;
        case std::filesystem::file_type::directory:
            return name + " is a folder, and a file is wanted.";
        default: // what cannot be told yet, in a folder that is closed to the user for example, the loading
                 // tells
            return {};
        }
    };
    return {[refusal](std::string& name) { return refusal(name); }, "FILE"};
}

void addPairs(PacketTable& table, const std::string& path) {
    PacketTable own;
    const auto loaded = understood(path, [&own](const ProfileFile& file) { return loadPackets(own, file); });
    if (loaded != PacketLoad::Complete) {
        throw Failure(ExitCode::File, path + " does not hold the pairs that it should: " +
                                          std::to_string(own.answers().size()) + " whole ones were found.");
    }
    for (std::size_t row = 0; row < own.requests().size(); ++row) {
        table.addPair(own.requests()[row], own.answer(row));
    }
}

std::vector<std::string> scenarioLines(const std::string& path) {
    std::optional<LoadedScenario> scenario = loadScenario(load(path));
    if (!scenario || !scenario->isComplete) {
        throw Failure(ExitCode::File, path + " does not hold the lines of a scenario that it should.");
    }
    for (const std::string& line : scenario->lines) {
        requireFrame(path, line);
    }
    return std::move(scenario->lines);
}

std::vector<std::optional<Expectation>> expectations(const std::string& path, std::size_t lines) {
    auto wanted =
        understood(path, [lines](const ProfileFile& file) { return loadExpectations(file, lines); });
    if (std::ranges::none_of(wanted, [](const auto& entry) { return entry.has_value(); })) {
        throw Failure(ExitCode::File, path +
                                          " holds no expectation of these lines: entries Expect0 .. Expect" +
                                          std::to_string(lines - 1) + " of section [Expect].");
    }
    return wanted;
}

Recording recording(const std::string& path, std::ostream& error) {
    ReadCapture read = loadCapture(path);
    if (read.isCut) {
        error << path << " ends within a packet; the " << read.recording.size() << " before it were read.\n";
    }
    if (read.incomplete > 0) {
        error << path << " holds " << read.incomplete
              << (read.incomplete == 1 ? " packet that was not kept whole; it is left out.\n"
                                       : " packets that were not kept whole; they are left out.\n");
    }
    return std::move(read.recording);
}

void saveExpectations(const std::string& path, const std::vector<std::string>& texts) {
    ProfileFile file = load(path);
    storeExpectations(texts, file);
    file.save(path);
}

} // namespace varda::cli
