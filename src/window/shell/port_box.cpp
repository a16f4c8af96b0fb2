#include "window/shell/port_box.h"

#include "core/virtual/virtual_line.h"
#include "device/port_names.h"
#include "device/serial_node.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QCompleter>
#include <QEvent>
#include <QLineEdit>
#include <QStandardItemModel>

namespace varda::window {
namespace {

constexpr int nodeRole = Qt::UserRole;

void addOffer(QStandardItemModel* offers, const QString& node, const QString& shown) {
    auto* const offer = new QStandardItem(shown);
    offer->setData(node, nodeRole);
    offers->appendRow(offer);
}

/// Looks for the ports that are there each time the list gets the focus.
class PortOffers : public QObject {
public:
    PortOffers(QStandardItemModel* offers, QObject* parent) : QObject(parent), offers_(offers) {}

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::FocusIn) {
            refresh();
        }
        return QObject::eventFilter(watched, event);
    }

private:
    /// A device with a name that stays with it is offered by that as well.
    void addPort(const device::PortName& port) {
        addOffer(offers_, QString::fromStdString(port.node), QString::fromStdString(device::describe(port)));
        if (!port.stableName.empty()) {
            const QString name = QString::fromStdString(port.stableName);
            addOffer(offers_, name, QObject::tr("%1 (now %2)").arg(name, QString::fromStdString(port.node)));
        }
    }

    void refresh() {
        offers_->clear();
        for (const device::PortName& port : device::portNames()) {
            addPort(port);
        }
        const QString embedded = QString::fromLatin1(virtualPortName);
        addOffer(offers_, embedded, QObject::tr("%1 (the embedded controller)").arg(embedded));
    }

    QStandardItemModel* offers_;
};

QString meaningOf(const QString& text) {
    if (text.trimmed() == QLatin1String(virtualPortName)) {
        return QObject::tr("The embedded controller: no cable needed");
    }
    const std::string node = device::deviceNode(text.toStdString());
    return node.empty() ? QObject::tr("COM1 .. COM20, a device such as /dev/ttyUSB0, or VIRTUAL")
                        : QObject::tr("Stands for %1").arg(QString::fromStdString(node));
}

/// Shows every offer whole, and none once one of them is typed out: a list in the way would eat the next
/// click.
void showOffers(const QStandardItemModel* offers, QCompleter* completer, const QString& typed) {
    constexpr int margin = 24;
    QAbstractItemView* const list = completer->popup();
    list->setMinimumWidth(list->sizeHintForColumn(0) + margin);
    if (!offers->match(offers->index(0, 0), nodeRole, typed, 1, Qt::MatchExactly | Qt::MatchCaseSensitive)
             .isEmpty()) {
        list->hide();
    }
}

} // namespace

void offerRealPorts(QComboBox* cbPort) {
    auto* const offers = new QStandardItemModel(cbPort);
    auto* const completer = new QCompleter(offers, cbPort);
    completer->setCompletionRole(nodeRole);
    completer->setCompletionMode(QCompleter::PopupCompletion);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    cbPort->lineEdit()->setCompleter(completer);
    const auto show = [offers, completer](const QString& typed) { showOffers(offers, completer, typed); };
    // The line edit completes behind this signal.
    QObject::connect(cbPort->lineEdit(), &QLineEdit::textEdited, completer, show, Qt::QueuedConnection);
    cbPort->installEventFilter(new PortOffers(offers, cbPort));
    const auto showMeaning = [cbPort](const QString& text) { cbPort->setToolTip(meaningOf(text)); };
    QObject::connect(cbPort, &QComboBox::editTextChanged, cbPort, showMeaning);
    showMeaning(cbPort->currentText());
}

} // namespace varda::window
