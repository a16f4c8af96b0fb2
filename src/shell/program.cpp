#include "shell/program.h"

#include "shell/lines.h"
#include "shell/look.h"
#include "shell/program_icon.h"

#include <QApplication>

namespace varda {

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

} // namespace varda
