#pragma once

#include "device/port_names.h"
#include "window/controls/drop_down_list.h"

#include <QTimer>

#include <functional>
#include <utility>
#include <vector>

class QStandardItemModel;

namespace varda::window {

/// The list of ports: its own entries and, while it is open, behind them the ports that are really there,
/// each with what its device tells of itself. Closed it has its own entries alone.
class PortList : public DropDownList {
    Q_OBJECT

public:
    using Look = std::function<std::vector<device::PortName>()>;

    explicit PortList(QWidget* parent = nullptr);

    /// Takes the ports from elsewhere than this computer, for tests.
    void lookBy(Look look) { look_ = std::move(look); }

    /// While typing, too, a list offers the ports that are there. The text itself changes only when an offer
    /// is chosen. After the list has got its own text field.
    void offerWhileTyping();

    void showPopup() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void offerPorts();
    void appendOffers(const std::vector<device::PortName>& ports);
    void fitWidth();
    void takeOffersAway();

    Look look_ = [] { return device::portNames(); };
    QTimer looking_; ///< runs while the list is open
    std::vector<device::PortName> offered_;
    int ownEntries_ = 0; ///< of the open list; the others are offers
    bool isOffering_ = false;
    QStandardItemModel* completions_ = nullptr;
};

} // namespace varda::window
