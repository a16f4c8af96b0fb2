#include "window/shell/program.h"

#include <QApplication>

#include <csignal>

int main(int argc, char** argv) {
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN); // a file at its size limit is a full disk, no reason to end
#endif
    const QApplication application(argc, argv);
    varda::window::prepareApplication();
    varda::window::Program program({QApplication::applicationDirPath(), std::random_device{}()});
    program.window().show();
    return QApplication::exec();
}
