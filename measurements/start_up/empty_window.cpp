#include <QApplication>
#include <QLabel>
#include <QMainWindow>

/// What Qt itself takes: a window of the program's size with a label in it, for which a font is loaded.
int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.setCentralWidget(new QLabel(QStringLiteral("An empty window")));
    window.resize(1000, 700);
    window.show();
    return QApplication::exec();
}
