#include "window/shell/program.h"

#include <QApplication>

#include <gtest/gtest.h>

/// The one main of all tests that need Qt; without a wish for another platform they run offscreen.
int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    varda::window::prepareApplication();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
