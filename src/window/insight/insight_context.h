#pragma once

namespace varda::inline core {
class Clock;
class LinkStatistics;
class RegisterNames;
class RegisterWatch;
class Trace;
} // namespace varda::core

namespace varda::window {

class Events;
class FileDialogs;
struct FileTalk;

/// What the trace window shows, and where from.
struct InsightSources {
    Clock& clock; ///< its continuations pass a guard
    Trace& trace;
    LinkStatistics& statistics;
    RegisterWatch& watch;
    RegisterNames& names;
};

/// What the parts of the trace window work with.
struct InsightContext : InsightSources {
    Events& events;
    FileDialogs& files;
    const FileTalk& talk;
};

} // namespace varda::window
