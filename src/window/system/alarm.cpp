#include "window/system/alarm.h"

#include <QTimer>

#include <algorithm>

namespace varda::window {
namespace {

class CoarseAlarm : public Alarm {
public:
    explicit CoarseAlarm(std::function<void()> ring) {
        timer_.setSingleShot(true);
        timer_.setTimerType(Qt::PreciseTimer);
        QObject::connect(&timer_, &QTimer::timeout, &timer_, std::move(ring));
    }

    void setTo(Clock::Time time) override {
        const auto wait =
            std::chrono::ceil<std::chrono::milliseconds>(time - std::chrono::steady_clock::now());
        timer_.start(std::max(wait, std::chrono::milliseconds(0)));
    }
    void clear() override { timer_.stop(); }

private:
    QTimer timer_;
};

} // namespace

std::unique_ptr<Alarm> makeAlarm(const std::function<void()>& ring) {
    auto fine = makeFineAlarm(ring);
    return fine != nullptr ? std::move(fine) : std::make_unique<CoarseAlarm>(ring);
}

} // namespace varda::window
