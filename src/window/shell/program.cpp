#include "window/shell/program.h"

#include "window/shell/lines.h"
#include "window/shell/look.h"
#include "window/shell/program_icon.h"

#include <QApplication>

namespace varda::window {

void prepareApplication() {
    QApplication::setApplicationName(QStringLiteral("varda"));
    QApplication::setApplicationVersion(QStringLiteral(VARDA_VERSION));
    QApplication::setDesktopFileName(QStringLiteral(VARDA_APPLICATION_ID));
    QApplication::setWindowIcon(programIcon());
    drawWholeFrames();
}

Program::Program(const ProgramParts& parts)
    : generator_(parts.seed),
      window_({clock_, lineFactory(clock_, controller_),
               [this] { return std::uniform_real_distribution<double>(0.0, 1.0)(generator_); }, parts.folder,
               parts.now}) {}

} // namespace varda::window
