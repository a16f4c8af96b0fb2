#pragma once

#include "support/offscreen.h"
#include "window/shell/program.h"

#include <QApplication>

#include <cstdio>
#include <exception>

namespace varda::bench {

/// What a program does that measures the whole window, off screen. @param run measures
/// @return the program's exit code
template <typename Run>
int measureWindow(int argc, char** argv, const Run& run) try {
    test::preferOffscreen();
    const QApplication application(argc, argv);
    window::prepareApplication();
    return run();
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}

} // namespace varda::bench
