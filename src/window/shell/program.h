#pragma once

#include "core/virtual/controller.h"
#include "window/shell/frmVarda.h"
#include "window/system/qt_clock.h"

#include <random>

namespace varda::window {

struct CommandLine;

/// Gives the application object the program's name, version, icon and style.
void prepareApplication();

/// What differs between the program and a test of it.
struct ProgramParts {
    QString folder;                                  ///< the program's own folder, where dialogs start
    std::uint_fast32_t seed;                         ///< of the random data
    std::function<QTime()> now = QTime::currentTime; ///< time of day for the monitor's stamps
};

/// The program without its application object: the main window and what it takes from outside.
class Program {
public:
    explicit Program(const ProgramParts& parts);

    FrmVarda& window() { return window_; }
    Controller& controller() { return controller_; }

    /// Ends as its user would, by closing the window, whatever box or dialog stands before it.
    void end() { window_.close(); }

private:
    FrmVarda::Surroundings surroundings(const ProgramParts& parts);

    QtClock clock_;
    Controller controller_;
    std::mt19937 generator_;
    FrmVarda window_;
};

/// Shows the window, does what the command line wishes of it, and runs the event loop until the window is
/// closed, or a signal or the desktop asks the program to end. It leaves by the normal close, whoever asks
/// for it: the port is given back, the log is whole.
/// @return what the program ends with
int runProgram(const CommandLine& wishes);

} // namespace varda::window
