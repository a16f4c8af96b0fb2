#pragma once

class QWidget;

namespace varda::bench {

/// Shows a window, runs the application for about two seconds and prints one line: milliseconds from the
/// start of the process to the first painted frame, resident memory in KiB, and milliseconds of processor
/// time that the second half of the run took. The first argument of the process is its start on the monotonic
/// clock, in nanoseconds.
/// @return the exit code
int showAndMeasure(QWidget& window);

} // namespace varda::bench
