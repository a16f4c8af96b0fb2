#include "core/base/own_arguments.h"
#include "window/shell/command_line.h"
#include "window/shell/program.h"
#include "window/shell/start_up.h"
#include "window/system/end_signals.h"
#include "window/system/own_arguments.h"
#include "window/system/print.h"
#include "window/system/system_look.h"

#include <QApplication>

#include <csignal>
#include <cstdlib>

using namespace varda::window;

namespace {

/// The program while it runs; the desktop may end it by exit(), which takes nothing down.
Program* running = nullptr;

int tell(const CommandLineAnswer& answer) {
    print(answer.text, answer.exitCode != 0);
    return answer.exitCode;
}

/// Leaves by the normal close, whoever asks for it: the port is given back, the log is whole.
int run(const QApplication& application, const CommandLine& wishes) {
    Program program({QApplication::applicationDirPath(), std::random_device{}()});
    const EndSignals ears([&program] {
        program.end();
        QApplication::exit();
    });
    QObject::connect(&application, &QApplication::aboutToQuit, [&program] { program.end(); });
    running = &program;
    std::atexit([] {
        if (running != nullptr) {
            running->window().shutDown();
        }
    });
    program.window().show();
    carryOut(wishes, program.window());
    const int result = QApplication::exec();
    running = nullptr;
    return result;
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
    return run(application, std::get<CommandLine>(read));
}
