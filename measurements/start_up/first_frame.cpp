#include "start_up/first_frame.h"

#include "report.h"
#include "support/processor_time.h"

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstdio>

namespace varda::bench {
namespace {

using std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr std::chrono::seconds settling(1);
constexpr std::chrono::seconds idling(1);

double processorMilliseconds() {
    return std::chrono::duration<double, std::milli>(test::processorTime()).count();
}

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
            const double before = processorMilliseconds();
            QTimer::singleShot(idling, this, [startUp, before] {
                std::printf("%.1f %ld %.2f\n", startUp.count(), residentMemory(),
                            processorMilliseconds() - before);
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
