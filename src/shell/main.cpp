#include "platform/timers.h"
#include "shell/frmVarda.h"
#include "shell/lines.h"
#include "shell/look.h"
#include "virtual/controller.h"

#include <QApplication>

#include <csignal>
#include <random>

int main(int argc, char** argv) {
#ifdef SIGXFSZ
    std::signal(SIGXFSZ, SIG_IGN); // a file at its size limit is a full disk, no reason to end
#endif
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("varda"));
    QApplication::setApplicationVersion(QStringLiteral(VARDA_VERSION));

    varda::drawWholeFrames();
    varda::QtClock clock;
    varda::Controller controller;
    std::mt19937 generator(std::random_device{}());
    std::uniform_real_distribution<double> uniform(0.0, 1.0);
    varda::FrmVarda window({clock, varda::lineFactory(clock, controller), [&] { return uniform(generator); },
                            QApplication::applicationDirPath()});
    window.show();
    return QApplication::exec();
}
