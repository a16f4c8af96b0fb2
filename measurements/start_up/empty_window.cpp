#include "start_up/first_frame.h"

#include <QApplication>
#include <QMainWindow>

/// What Qt itself takes: a window of the program's size with nothing in it.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.resize(1000, 700);
    return varda::bench::showAndMeasure(window);
}
