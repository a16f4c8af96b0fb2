#include "shell/program.h"
#include "start_up/first_frame.h"

#include <QApplication>

/// The program as its main builds it.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    varda::prepareApplication();
    varda::Program program({QApplication::applicationDirPath(), std::random_device{}()});
    return varda::bench::showAndMeasure(program.window());
}
