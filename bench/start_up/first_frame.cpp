#include "start_up/first_frame.h"

#include "report.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstdio>
#include <ctime>

namespace varda::bench {
namespace {

using std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::chrono::seconds settling(1);
constexpr std::chrono::seconds idling(1);

double processorTime() { return 1e3 * static_cast<double>(std::clock()) / CLOCKS_PER_SEC; }

steady_clock::time_point processStart() {
    const qint64 nanoseconds = QApplication::arguments().value(1).toLongLong();
    return steady_clock::time_point(std::chrono::nanoseconds(nanoseconds));
}

/// Waits for the first painting of the window; what is queued behind it runs after the frame is out.
class FirstFrame : public QObject {
public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            watched->removeEventFilter(this);
            QTimer::singleShot(0, this, [this] { framed(); });
        }
        return false;
    }

private:
    void framed() {
        const Milliseconds startUp = steady_clock::now() - processStart();
        QTimer::singleShot(settling, this, [this, startUp] {
            const double before = processorTime();
            QTimer::singleShot(idling, this, [startUp, before] {
                std::printf("%.1f %ld %.2f\n", startUp.count(), residentMemory(), processorTime() - before);
                QApplication::quit();
            });
        });
    }
};

} // namespace

int showAndMeasure(QWidget& window) {
    FirstFrame frame;
    window.installEventFilter(&frame);
    window.show();
    return QApplication::exec();
}

} // namespace varda::bench
