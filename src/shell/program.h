#pragma once

#include "platform/timers.h"
#include "shell/frmVarda.h"
#include "virtual/controller.h"

#include <random>

namespace varda {

/// The program without its application object: the main window and what it takes from outside.
class Program {
public:
    Program();

    FrmVarda& window() { return window_; }

private:
    QtClock clock_;
    Controller controller_;
    std::mt19937 generator_{std::random_device{}()};
    FrmVarda window_;
};

} // namespace varda
