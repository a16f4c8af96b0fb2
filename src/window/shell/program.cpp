#include "window/shell/program.h"

#include "core/base/clock_timer.h"
#include "window/shell/lines.h"
#include "window/shell/look.h"
#include "window/shell/program_icon.h"
#include "window/shell/start_up.h"
#include "window/system/end_signals.h"

#include <QApplication>
#include <QTimer>

#include <chrono>
#include <cstdlib>

namespace varda::window {
namespace {

/// Of the icon that the window comes with: what title bars and lists of windows show.
constexpr int smallIcon = 64;

/// The program while it runs; the desktop may end it by exit(), which takes nothing down.
Program* running = nullptr;

} // namespace

void prepareApplication() {
    QApplication::setApplicationName(QStringLiteral("varda"));
    QApplication::setApplicationVersion(QStringLiteral(VARDA_VERSION));
    QApplication::setDesktopFileName(QStringLiteral(VARDA_APPLICATION_ID));
    QApplication::setWindowIcon(programIcon(smallIcon));
    drawWholeFrames();
}

Program::Program(const ProgramParts& parts) : generator_(parts.seed), window_(surroundings(parts)) {}

FrmVarda::Surroundings Program::surroundings(const ProgramParts& parts) {
    FrmVarda::Surroundings made{
        clock_,
        lineFactory(clock_, controller_),
        [this] { return std::uniform_real_distribution<double>(0.0, 1.0)(generator_); },
        parts.folder,
        parts.now,
        [this](std::function<void()> tick) { return std::make_unique<ClockTimer>(clock_, std::move(tick)); }};
    made.controller = &controller_;
    return made;
}

int runProgram(const CommandLine& wishes) {
    Program program({QApplication::applicationDirPath(), std::random_device{}()});
    const EndSignals ears([&program] {
        program.end();
        QApplication::exit();
    });
    QObject::connect(qApp, &QApplication::aboutToQuit, &program.window(), [&program] { program.end(); });
    running = &program;
    std::atexit([] {
        if (running != nullptr) {
            running->window().shutDown();
        }
    });
    program.window().show();
    constexpr auto untilItStands = std::chrono::milliseconds(100); // where it takes longer, nothing is won
    QTimer::singleShot(untilItStands, qApp, [] { QApplication::setWindowIcon(programIcon()); });
    carryOut(wishes, program.window());
    const int result = QApplication::exec();
    running = nullptr;
    return result;
}

} // namespace varda::window
