#include "controls/profile_files.h"

#include "link/form.h"
#include "platform/profile_file.h"
#include "platform/runtime_error.h"

namespace varda {

bool tellWhyUnreadable(const ProfileFile& file, const PageContext& context) {
    const bool unreadable = file.problem() && file.isText();
    if (unreadable) {
        context.form.showMessage(file.problem()->what(), "Error");
    }
    return unreadable;
}

void saveOrTell(const ProfileFile& file, const std::string& path, const PageContext& context,
                const std::function<void()>& saved) {
    try {
        file.save(path);
    } catch (const RuntimeError& error) {
        context.form.showMessage(error.what(), "Error");
        return;
    }
    saved();
}

} // namespace varda
