#include "core/base/own_arguments.h"
#include "window/shell/command_line.h"
#include "window/shell/program.h"
#include "window/system/own_arguments.h"
#include "window/system/print.h"
#include "window/system/system_look.h"

#include <QApplication>

#include <csignal>

using namespace varda::window;

namespace {

int tell(const CommandLineAnswer& answer) {
    print(answer.text, answer.exitCode != 0);
    return answer.exitCode;
}

} // namespace

int main(int argc, char** argv) {
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN); // a file at its size limit is a full disk, no reason to end
#endif
    if (const auto answer = answerAtOnce(varda::ownArguments(argc, argv))) {
        return tell(*answer);
    }
    followSystemLook();
    const QApplication application(argc, argv); // takes its own arguments out
    const auto read = readCommandLine(argumentsLeftByQt(argc, argv));
    if (const auto* const answer = std::get_if<CommandLineAnswer>(&read)) {
        return tell(*answer);
    }
    prepareApplication();
    return runProgram(std::get<CommandLine>(read));
}
