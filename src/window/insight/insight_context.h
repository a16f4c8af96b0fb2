#pragma once

#include "core/link/line.h"

#include <functional>

namespace varda::inline core {
class Clock;
class LinkStatistics;
class RegisterNames;
class RegisterWatch;
class Trace;
} // namespace varda::core

namespace varda::window {

class FileDialogs;
struct FileTalk;

/// What the parts of the trace window work with.
struct InsightContext {
    Clock& clock;
    Trace& trace;
    LinkStatistics& statistics;
    RegisterWatch& watch;
    RegisterNames& names;
    FileDialogs& files;
    const FileTalk& talk;
    std::function<LineSettings()> settings; ///< of the port
    std::function<int()> wantedPeriod;      ///< at which requests are repeated, in milliseconds
};

} // namespace varda::window
