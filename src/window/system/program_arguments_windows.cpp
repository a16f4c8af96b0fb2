#include "window/system/program_arguments.h"

#include <QProcess>

namespace varda::window {

/// A program of this system takes its command line apart itself: the help viewer takes all of it for a file.
void setArguments(QProcess& process, const ProgramCall& call) {
    if (call.asTheyStand) {
        process.setNativeArguments(call.arguments.join(QLatin1Char(' ')));
    } else {
        process.setArguments(call.arguments);
    }
}

} // namespace varda::window
