#pragma once

namespace varda::inline core {
class Clock;
} // namespace varda::core

namespace varda::window {

class Events;
class FileDialogs;
struct FileTalk;

/// What the parts of the bench work with.
struct BenchContext {
    Clock& clock; ///< its continuations pass a guard
    Events& events;
    FileDialogs& files;
    const FileTalk& talk;
};

} // namespace varda::window
