#include "window/controls/saving.h"

#include "core/files/atomic_file.h"

#include <memory>
#include <utility>

namespace varda::window {
namespace {

void overwrite(const FileWriting& writing, const FileTalk& talk, const std::function<void()>& saved) {
    try {
        writing.overwrite();
    } catch (const RuntimeError& error) {
        talk.tell(error);
        return;
    }
    saved();
}

void askToOverwrite(const std::string& path, const FileWriting& writing, const FileTalk& talk,
                    const std::function<void()>& saved) {
    talk.ask('"' + path +
                 "\" cannot be replaced in one step: its folder takes no new file. Do you want to "
                 "write into the file itself? If that is interrupted, the file is damaged.",
             [writing, talk, saved](bool yes) {
                 if (yes) {
                     overwrite(writing, talk, saved);
                 }
             });
}

} // namespace

void saveOrTell(const std::string& path, const FileWriting& writing, const FileTalk& talk,
                const std::function<void()>& saved) {
    try {
        writing.replace();
    } catch (const OnlyInPlace&) {
        askToOverwrite(path, writing, talk, saved);
        return;
    } catch (const RuntimeError& error) {
        talk.tell(error);
        return;
    }
    saved();
}

void saveTextOrTell(const std::string& path, std::string text, const FileTalk& talk,
                    const std::function<void()>& saved) {
    const auto kept = std::make_shared<const std::string>(std::move(text));
    saveOrTell(path,
               {.replace = [path, kept] { replaceFile(path, *kept); },
                .overwrite = [path, kept] { overwriteFile(path, *kept); }},
               talk, saved);
}

} // namespace varda::window
