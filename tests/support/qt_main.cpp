#include "support/offscreen.h"
#include "window/shell/program.h"

#include <QApplication>

#include <gtest/gtest.h>

/// The one main of all tests that need Qt; without a wish for another platform they run offscreen, where
/// there is such a one. Tests fill in Qt's own file dialogs: the system's have none of its controls.
int main(int argc, char** argv) {
    varda::test::preferOffscreen();
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QApplication application(argc, argv);
    varda::window::prepareApplication();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
