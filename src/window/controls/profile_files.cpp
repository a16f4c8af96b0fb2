#include "window/controls/profile_files.h"

#include "core/base/runtime_error.h"
#include "core/files/atomic_file.h"
#include "core/files/profile_file.h"
#include "window/controls/events.h"
#include "window/controls/form.h"

#include <memory>

namespace varda::window {

bool tellWhyUnreadable(const ProfileFile& file, const PageContext& context) {
    const bool unreadable = file.problem() && file.isText();
    if (unreadable) {
        context.form.showMessage(file.problem()->what(), "Error");
    }
    return unreadable;
}

namespace {

void saveInPlace(const ProfileFile& file, const std::string& path, const PageContext& context,
                 const std::function<void()>& saved) {
    try {
        file.saveInPlace(path);
    } catch (const RuntimeError& error) {
        context.form.showMessage(error.what(), "Error");
        return;
    }
    saved();
}

void askToSaveInPlace(const ProfileFile& file, const std::string& path, const PageContext& context,
                      const std::function<void()>& saved) {
    const auto kept = std::make_shared<const ProfileFile>(file);
    context.form.ask('"' + path +
                         "\" cannot be replaced in one step: its folder takes no new file. Do you want to "
                         "write into the file itself? If that is interrupted, the file is damaged.",
                     "Confirm", [kept, path, context, saved](bool yes) {
                         if (yes) {
                             context.events.guard([&] { saveInPlace(*kept, path, context, saved); });
                         }
                     });
}

} // namespace

void saveOrTell(const ProfileFile& file, const std::string& path, const PageContext& context,
                const std::function<void()>& saved) {
    try {
        file.save(path);
    } catch (const OnlyInPlace&) {
        askToSaveInPlace(file, path, context, saved);
        return;
    } catch (const RuntimeError& error) {
        context.form.showMessage(error.what(), "Error");
        return;
    }
    saved();
}

} // namespace varda::window
