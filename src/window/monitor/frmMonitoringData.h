#pragma once

#include <QWidget>

#include <memory>

namespace varda::window {

namespace Ui {
class FrmMonitoringData;
}

/// The pop-up that shows one line of the monitor whole, for as long as the mouse button is held. It never
/// takes the focus.
class FrmMonitoringData : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY(FrmMonitoringData)

public:
    explicit FrmMonitoringData(QWidget* parent);
    ~FrmMonitoringData() override;

    /// Shows a line below the pointer, on the screen that the pointer is on.
    void showLine(const QString& line, const QPoint& pointer);
    void closeLine();

private:
    std::unique_ptr<Ui::FrmMonitoringData> ui_;
};

} // namespace varda::window
