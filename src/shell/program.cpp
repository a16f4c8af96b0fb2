#include "shell/program.h"

#include "shell/lines.h"

#include <QApplication>

namespace varda {

Program::Program()
    : window_({clock_, lineFactory(clock_, controller_),
               [this] { return std::uniform_real_distribution<double>(0.0, 1.0)(generator_); },
               QApplication::applicationDirPath()}) {}

} // namespace varda
