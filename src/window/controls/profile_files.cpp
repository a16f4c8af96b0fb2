#include "window/controls/profile_files.h"

#include "core/base/runtime_error.h"
#include "core/files/profile_file.h"
#include "window/controls/events.h"
#include "window/controls/form.h"
#include "window/controls/saving.h"

#include <memory>
#include <utility>

namespace varda::window {
namespace {

void tellIn(Form& form, const RuntimeError& error) {
    form.showAdvised(error.what(), "Error", error.advice());
}

} // namespace

bool tellWhyUnreadable(const ProfileFile& file, const PageContext& context) {
    const bool unreadable = file.problem() && file.isText();
    if (unreadable) {
        tellIn(context.form, *file.problem());
    }
    return unreadable;
}

void saveOrTell(const ProfileFile& file, const std::string& path, const PageContext& context,
                const std::function<void()>& saved) {
    Form& form = context.form;
    Events& events = context.events;
    saveOrTell(file, path,
               {.tell = [&form](const RuntimeError& error) { tellIn(form, error); },
                .ask =
                    [&form, &events](const std::string& question, std::function<void(bool yes)> answered) {
                        form.ask(question, "Confirm", events.guarded(std::move(answered)));
                    }},
               saved);
}

void saveOrTell(const ProfileFile& file, const std::string& path, const FileTalk& talk,
                const std::function<void()>& saved) {
    const auto kept = std::make_shared<const ProfileFile>(file);
    saveOrTell(path,
               {.replace = [kept, path] { kept->save(path); },
                .overwrite = [kept, path] { kept->saveInPlace(path); }},
               talk, saved);
}

} // namespace varda::window
