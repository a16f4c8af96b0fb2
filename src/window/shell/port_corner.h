#pragma once

#include "window/controls/form.h"
#include "window/shell/attach_again.h"
#include "window/shell/open_port_words.h"

#include <QPointer>
#include <QWidget>

#include <functional>
#include <memory>
#include <optional>

class QAbstractButton;
class QComboBox;

namespace varda::inline core {
class MSComm;
} // namespace varda::core

namespace varda::window {

namespace Ui {
class PortCorner;
}
class LinkPort;
class PortDoctor;

/// What the window tells and offers about its port besides the prescribed controls: what is open or would be
/// opened, the doctor, and attaching again.
class PortCorner : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY(PortCorner)

public:
    struct Parts {
        const MSComm& port;
        LinkPort& linkPort;
        QComboBox* cbPort;
        QComboBox* cbBaudRate;
        QComboBox* cbDataBit;
        QComboBox* cbStopBit;
        QComboBox* cbParityBit;
        QAbstractButton* cmdPortOpen;
    };

    /// Makes a stopped period timer.
    using TimerMaker = std::function<std::unique_ptr<PeriodTimer>(std::function<void()> tick)>;

    PortCorner(const Parts& parts, const TimerMaker& makeTimer, QWidget* parent);
    ~PortCorner() override;

    /// The port was tested, opened or closed.
    void showPort();
    /// The open port's line went away; nothing where its device would not be known again.
    std::optional<Form::Tick> offerAfterHangUp();

private:
    PortState state() const;
    void showWords();
    void tellWords();
    void wishAttaching(bool isWished);
    void openDoctor();

    std::unique_ptr<Ui::PortCorner> ui_;
    Parts parts_;
    std::unique_ptr<PeriodTimer> timer_;
    AttachAgain attachAgain_;
    QPointer<PortDoctor> doctor_;
};

} // namespace varda::window
