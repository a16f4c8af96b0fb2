#include "shell/look.h"
#include "shell/program.h"
#include "shell/program_icon.h"

#include <QApplication>

#include <csignal>

int main(int argc, char** argv) {
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN); // a file at its size limit is a full disk, no reason to end
#endif
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("varda"));
    QApplication::setApplicationVersion(QStringLiteral(VARDA_VERSION));
    QApplication::setDesktopFileName(QStringLiteral(VARDA_APPLICATION_ID));
    QApplication::setWindowIcon(varda::programIcon());

    varda::drawWholeFrames();
    varda::Program program;
    program.window().show();
    return QApplication::exec();
}
