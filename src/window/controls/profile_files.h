#pragma once

#include "window/controls/page_context.h"
#include "window/controls/saving.h"

#include <functional>
#include <string>

namespace varda::inline core {
class ProfileFile;
} // namespace varda::core

namespace varda::window {

// What the pages that load and save have in common: what the user is told and asked about a file.

/// Tells in a box why a file could not be read, where the system had a reason. A file that was read and is no
/// text is the page's own to tell.
/// @return whether there was one
bool tellWhyUnreadable(const ProfileFile& file, const PageContext& context);

/// Saves a file and runs `saved` when it is on the disk; a failure is told in a box. Where it can only be
/// written in place, a box asks first; No leaves everything as it was.
void saveOrTell(const ProfileFile& file, const std::string& path, const PageContext& context,
                const std::function<void()>& saved);

/// The same on another window.
void saveOrTell(const ProfileFile& file, const std::string& path, const FileTalk& talk,
                const std::function<void()>& saved);

} // namespace varda::window
