#include "shell/look.h"
#include "shell/program.h"
#include "start_up/first_frame.h"

#include <QApplication>

/// The program as its main builds it.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    varda::drawWholeFrames();
    varda::Program program;
    return varda::bench::showAndMeasure(program.window());
}
