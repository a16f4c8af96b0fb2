#include "core/files/atomic_file.h"

#include "core/base/system_text.h"
#include "core/files/file_calls.h"
#include "core/files/file_path.h"

#include <algorithm>
#include <filesystem>
#include <random>
#include <system_error>

namespace varda::inline core {
namespace {

namespace fs = std::filesystem;

enum class Existing { No, Yes };

struct Reason {
    int number;
    std::string text;
    std::string loadRemedy;
    std::string saveRemedy;
};

/// The numbers of the report are few; the reason is told in our own words where one number fits it.
Reason reasonFor(const std::error_code& error) {
    if (error == std::errc::no_space_on_device || error == std::errc::file_too_large) {
        return {run_time_error::diskFull, "the disk is full", "",
                "Make room on that disk, or save to another one."};
    }
    if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted) {
        return {run_time_error::permissionDenied, "permission denied",
                "Choose a file that you may read, or ask its owner for access.",
                "Save to a folder that you may write to, as a new file."};
    }
    if (error == std::errc::read_only_file_system) {
        return {run_time_error::permissionDenied, "the disk is read-only", "",
                "Save to a disk that can be written to."};
    }
    if (error == std::errc::too_many_files_open || error == std::errc::too_many_files_open_in_system) {
        const std::string remedy = "Close other programs or windows, and try again.";
        return {run_time_error::tooManyFiles, "too many files are open", remedy, remedy};
    }
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory) {
        return {run_time_error::pathNotFound, "path not found", "Choose a file in a folder that is there.",
                "Save to a folder that is there."};
    }
    return {error == std::errc::io_error ? run_time_error::deviceError : run_time_error::fileAccessError,
            systemText(error), "Choose a copy of the file, on another disk.", "Save to another place."};
}

RuntimeError withAdvice(RuntimeError error, const std::string& advice) {
    error.advise(advice);
    return error;
}

RuntimeError noRegularFile(const std::string& path) {
    return withAdvice(fileError(path, "is no regular file"),
                      "A folder, a device or a pipe holds no such file. Choose another name.");
}

/// A zero byte would end the message.
std::string quoted(std::string path) {
    std::replace(path.begin(), path.end(), '\0', '?');
    return '"' + path + '"';
}

RuntimeError loadError(const std::string& path, const std::error_code& error) {
    const Reason reason = reasonFor(error);
    return withAdvice({reason.number, quoted(path) + " could not be read: " + reason.text + "."},
                      reason.loadRemedy);
}

RuntimeError saveError(const std::string& path, const std::error_code& error) {
    const Reason reason = reasonFor(error);
    return withAdvice({reason.number, quoted(path) + " could not be saved: " + reason.text +
                                          ". Nothing was changed on the disk."},
                      reason.saveRemedy);
}

RuntimeError damageError(const std::string& path, const std::error_code& error) {
    const Reason reason = reasonFor(error);
    return {reason.number, quoted(path) + " could not be saved whole: " + reason.text +
                               ". It is damaged now: save to another place."};
}

/// A path with a zero byte would lead to the file that its first part names.
fs::path checkedPath(const std::string& path) {
    if (path.empty() || path.find('\0') != std::string::npos) {
        throw std::system_error(std::make_error_code(std::errc::invalid_argument));
    }
    return filePath(path);
}

/// Where the content belongs: at the end of the chain of symbolic links, whether a file is there yet or not.
fs::path withoutLinks(fs::path path) {
    constexpr int longestChain = 40;
    for (int links = 0; fs::is_symlink(fs::symlink_status(path)); ++links) {
        if (links == longestChain) {
            throw std::system_error(std::make_error_code(std::errc::too_many_symbolic_link_levels));
        }
        path = path.parent_path() / fs::read_symlink(path);
    }
    return path;
}

constexpr std::string_view temporaryBegin = ".varda-";
constexpr std::string_view temporaryEnd = ".tmp";

std::string temporaryName(unsigned number) {
    return std::string(temporaryBegin) + std::to_string(number) + std::string(temporaryEnd);
}

/// By its native letters: not every name is a text.
bool isTemporaryName(const fs::path& name) {
    const fs::path::string_type& letters = name.native();
    const fs::path::string_type begin = fs::path(temporaryBegin).native();
    const fs::path::string_type end = fs::path(temporaryEnd).native();
    return letters.size() > begin.size() + end.size() && letters.starts_with(begin) &&
           letters.ends_with(end) &&
           std::all_of(letters.begin() + static_cast<std::ptrdiff_t>(begin.size()),
                       letters.end() - static_cast<std::ptrdiff_t>(end.size()),
                       [](auto letter) { return letter >= '0' && letter <= '9'; });
}

/// A save that was killed leaves its file; the next one into that folder clears it away.
void removeAllLeftBehind(const fs::path& folder) {
    std::error_code error;
    for (fs::directory_iterator entry(folder, error); !error && entry != fs::directory_iterator();
         entry.increment(error)) {
        if (isTemporaryName(entry->path().filename())) {
            removeLeftBehind(entry->path());
        }
    }
}

/// By way of a file of a name that is free in the folder of the target.
void replaceFromBeside(const fs::path& target, std::string_view content, Existing existing) {
    constexpr int attempts = 100;
    std::random_device random;
    for (int attempt = 1;; ++attempt) {
        const fs::path beside = target.parent_path() / temporaryName(random());
        try {
            replaceByNewFile(beside, content, existing == Existing::Yes ? &target : nullptr, target);
            return;
        } catch (const std::system_error& problem) {
            if (problem.code() != std::errc::file_exists || attempt == attempts) {
                throw;
            }
        }
    }
}

bool isRefusal(const std::error_code& error) {
    return error == std::errc::permission_denied || error == std::errc::operation_not_permitted;
}

/// @param target without links
Existing checkedTarget(const std::string& path, const fs::path& target) {
    const fs::file_status status = statusOf(target);
    if (!fs::exists(status)) {
        return Existing::No;
    }
    if (!fs::is_regular_file(status)) {
        throw noRegularFile(path);
    }
    requireWritable(target);
    return Existing::Yes;
}

void replaceTarget(const std::string& path, std::string_view content) {
    const fs::path target = withoutLinks(checkedPath(path));
    const fs::path folder = target.has_parent_path() ? target.parent_path() : fs::path(".");
    const Existing existing = checkedTarget(path, target);
    removeAllLeftBehind(folder);
    try {
        replaceFromBeside(target, content, existing);
    } catch (const std::system_error& problem) {
        if (existing == Existing::Yes && isRefusal(problem.code())) {
            throw OnlyInPlace(saveError(path, problem.code()));
        }
        throw;
    }
    syncFolder(folder);
}

/// @return nothing where no file is there
std::optional<fs::path> regularFile(const std::string& path) {
    fs::path file = checkedPath(path);
    const fs::file_status status = statusOf(file);
    if (!fs::exists(status)) {
        return std::nullopt;
    }
    if (!fs::is_regular_file(status)) {
        throw noRegularFile(path);
    }
    return file;
}

std::string readTarget(const std::string& path, std::size_t limit) {
    const std::optional<fs::path> file = regularFile(path);
    std::string text = file ? readFile(*file, limit + 1) : std::string();
    if (text.size() > limit) {
        throw fileTooLarge(path);
    }
    return text;
}

std::string readPartOfTarget(const std::string& path, std::size_t from, std::size_t limit) {
    const std::optional<fs::path> file = regularFile(path);
    return file ? readFile(*file, limit, from) : std::string();
}

template <typename Read>
FileText fileText(const std::string& path, Read&& read) {
    try {
        return {read(), std::nullopt};
    } catch (const RuntimeError& problem) {
        return {{}, problem};
    } catch (const std::system_error& problem) {
        return {{}, loadError(path, problem.code())};
    }
}

} // namespace

FileText readRegularFile(const std::string& path, std::size_t limit) {
    return fileText(path, [&] { return readTarget(path, limit); });
}

FileText readPartOfFile(const std::string& path, std::size_t from, std::size_t limit) {
    return fileText(path, [&] { return readPartOfTarget(path, from, limit); });
}

void replaceFile(const std::string& path, std::string_view content) {
    try {
        replaceTarget(path, content);
    } catch (const std::system_error& problem) {
        throw saveError(path, problem.code());
    }
}

void overwriteFile(const std::string& path, std::string_view content) {
    bool isTouched = false;
    try {
        const fs::path target = withoutLinks(checkedPath(path));
        checkedTarget(path, target);
        overwriteFile(target, content, isTouched);
    } catch (const std::system_error& problem) {
        throw isTouched ? damageError(path, problem.code()) : saveError(path, problem.code());
    }
}

RuntimeError fileTooLarge(const std::string& path) {
    return withAdvice(fileError(path, "is too large"), "Choose a smaller file.");
}

RuntimeError fileError(const std::string& path, const std::string& reason) {
    return {run_time_error::fileAccessError, quoted(path) + ' ' + reason + "."};
}

} // namespace varda::core
