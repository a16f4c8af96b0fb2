#include "start_up/first_frame.h"
#include "window/shell/program.h"

#include <QApplication>

/// The program as its main builds it.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    varda::window::prepareApplication();
    varda::window::Program program({QApplication::applicationDirPath(), std::random_device{}()});
    return varda::bench::showAndMeasure(program.window());
}
