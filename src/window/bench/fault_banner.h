#pragma once

#include <QFrame>

#include <memory>

namespace varda::window {

namespace Ui {
class FaultBanner;
}
class Events;
class FaultSwitch;

/// Cannot be overlooked while any fault is done on purpose, and ends them all. Out of sight otherwise.
class FaultBanner : public QFrame {
    Q_OBJECT
    Q_DISABLE_COPY(FaultBanner)

public:
    FaultBanner(FaultSwitch& faults, Events& events, QWidget* parent = nullptr);
    ~FaultBanner() override;

private:
    void showFaults();

    FaultSwitch& faults_;
    std::unique_ptr<Ui::FaultBanner> ui_;
};

} // namespace varda::window
