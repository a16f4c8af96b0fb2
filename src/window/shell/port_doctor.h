#pragma once

#include <QDialog>

#include <functional>
#include <memory>
#include <string>

namespace varda::window {

namespace Ui {
class PortDoctor;
}

/// What every port is, who has it, who may use it, and what helps, as a text to copy. It is gathered beside
/// the window, which goes on meanwhile.
class PortDoctor : public QDialog {
    Q_OBJECT
    Q_DISABLE_COPY(PortDoctor)

public:
    /// @param chosenPort the name of the port that is looked at first
    PortDoctor(std::function<std::string()> chosenPort, QWidget* parent);
    ~PortDoctor() override;

    /// Comes to the front, and looks at the ports as they are now.
    void look();

private:
    void showReport(const QString& report);
    void copy() const;

    std::unique_ptr<Ui::PortDoctor> ui_;
    std::function<std::string()> chosenPort_;
};

} // namespace varda::window
