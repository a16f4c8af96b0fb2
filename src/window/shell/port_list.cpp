#include "window/shell/port_list.h"

#include "core/virtual/virtual_line.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCompleter>
#include <QEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPointer>
#include <QSignalBlocker>
#include <QStandardItemModel>

#include <algorithm>
#include <chrono>

namespace varda::window {
namespace {

constexpr int margin = 24; ///< beside the widest entry, for a scroll bar

/// Shows more than the name, which is all that gets into the text.
class Offer : public QStandardItem {
public:
    Offer(const QString& name, QString shown) : QStandardItem(name), shown_(std::move(shown)) {}

    QVariant data(int role) const override {
        return role == Qt::DisplayRole ? QVariant(shown_) : QStandardItem::data(role);
    }

private:
    QString shown_;
};

void addOffer(QStandardItemModel* offers, const QString& name, const QString& shown) {
    offers->appendRow(new Offer(name, shown));
}

/// A device with a name that stays with it is offered by that as well.
void addPort(QStandardItemModel* offers, const device::PortName& port) {
    addOffer(offers, QString::fromStdString(port.node), QString::fromStdString(device::describe(port)));
    if (!port.stableName.empty()) {
        const QString name = QString::fromStdString(port.stableName);
        addOffer(offers, name, QObject::tr("%1 (now %2)").arg(name, QString::fromStdString(port.node)));
    }
}

void addPorts(QStandardItemModel* offers, const std::vector<device::PortName>& ports) {
    for (const device::PortName& port : ports) {
        addPort(offers, port);
    }
    const QString embedded = QString::fromLatin1(virtualPortName);
    addOffer(offers, embedded, QObject::tr("%1 (the embedded controller)").arg(embedded));
}

/// Shows every offer whole, and none once one of them is typed out: a list in the way would eat the next
/// click.
void showOffers(const QStandardItemModel* offers, QCompleter* completer, const QString& typed) {
    QAbstractItemView* const list = completer->popup();
    list->setMinimumWidth(list->sizeHintForColumn(0) + margin);
    if (!offers->match(offers->index(0, 0), Qt::EditRole, typed, 1, Qt::MatchExactly | Qt::MatchCaseSensitive)
             .isEmpty()) {
        list->hide();
    }
}

/// A click beside the offers closes them and goes on to what it was meant for; Qt would only close them.
class ClickBeside : public QObject {
public:
    ClickBeside(QWidget* offers, const QWidget* field) : QObject(offers), offers_(offers), field_(field) {
        offers->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == offers_ && event->type() == QEvent::MouseButtonPress) {
            return press(*static_cast<const QMouseEvent*>(event));
        }
        if (watched->isWindowType() && event->type() == QEvent::MouseButtonRelease) {
            qApp->removeEventFilter(this);
            passOn(*static_cast<const QMouseEvent*>(event));
            return true;
        }
        return false;
    }

private:
    bool press(const QMouseEvent& event) {
        const QWidget* const window = field_->window();
        if (offers_->rect().contains(event.position().toPoint())) {
            return false;
        }
        offers_->hide();
        meant_ = window->childAt(window->mapFromGlobal(event.globalPosition().toPoint()));
        passOn(event);
        qApp->installEventFilter(this); // the release comes to either window, which would drop it
        return true;
    }

    void passOn(const QMouseEvent& event) const {
        if (meant_ != nullptr) {
            QMouseEvent again(event.type(), meant_->mapFromGlobal(event.globalPosition()),
                              event.globalPosition(), event.button(), event.buttons(), event.modifiers());
            QCoreApplication::sendEvent(meant_, &again);
        }
    }

    QWidget* offers_;
    const QWidget* field_;
    QPointer<QWidget> meant_;
};

} // namespace

PortList::PortList(QWidget* parent) : DropDownList(parent) {
    looking_.setInterval(std::chrono::seconds(1));
    connect(&looking_, &QTimer::timeout, this, [this] { offerPorts(); });
}

void PortList::offerWhileTyping() {
    completions_ = new QStandardItemModel(this);
    auto* const completer = new QCompleter(completions_, this);
    completer->setCompletionRole(Qt::EditRole);
    completer->setCompletionMode(QCompleter::PopupCompletion);
    completer->setFilterMode(Qt::MatchContains);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    lineEdit()->setCompleter(completer);
    new ClickBeside(completer->popup(), this); // installed last, it sees a click before the completer does
    const auto show = [this, completer](const QString& typed) { showOffers(completions_, completer, typed); };
    // The line edit completes behind this signal.
    connect(lineEdit(), &QLineEdit::textEdited, completer, show, Qt::QueuedConnection);
    installEventFilter(this);
}

bool PortList::eventFilter(QObject* watched, QEvent* event) {
    if (watched == this && event->type() == QEvent::FocusIn) {
        completions_->clear();
        addPorts(completions_, look_());
    } else if (watched != this && event->type() == QEvent::Hide) {
        looking_.stop();
        // What was chosen is taken behind this event.
        QMetaObject::invokeMethod(
            this, [this] { takeOffersAway(); }, Qt::QueuedConnection);
    }
    return DropDownList::eventFilter(watched, event);
}

void PortList::showPopup() {
    if (!isOffering_) {
        isOffering_ = true;
        ownEntries_ = count();
        appendOffers(look_());
        setMaxVisibleItems(count()); // where they fit on the screen; the offers come last
    }
    fitWidth();
    DropDownList::showPopup();
    view()->parentWidget()->installEventFilter(this);
    looking_.start();
}

void PortList::appendOffers(const std::vector<device::PortName>& ports) {
    offered_ = ports;
    auto* const entries = qobject_cast<QStandardItemModel*>(model());
    entries->removeRows(ownEntries_, count() - ownEntries_);
    addPorts(entries, offered_);
}

/// While the list is open: what is plugged in, or pulled out, comes and goes. The mark stays on its entry, or
/// goes with it: on another one Enter would take what nobody looked at.
void PortList::offerPorts() {
    const auto ports = look_();
    if (ports != offered_) {
        const QString text = currentText();
        const QString marked = view()->currentIndex().data(Qt::EditRole).toString();
        const QSignalBlocker silent(this);
        appendOffers(ports);
        setEditText(text);
        mark(rowOf(marked));
    }
}

/// Shows every entry whole, as far as the window is wide.
void PortList::fitWidth() {
    constexpr int besideText = 2 * margin; // also where entries have a place for a mark
    int widest = 0;                        // the list itself asks its first entry alone
    for (int row = 0; row < count(); ++row) {
        const QString shown = itemData(row, Qt::DisplayRole).toString();
        widest = std::max(widest, view()->fontMetrics().horizontalAdvance(shown));
    }
    view()->setMinimumWidth(std::min(widest + besideText, window()->width()));
}

void PortList::takeOffersAway() {
    if (!isOffering_ || view()->isVisible()) {
        return;
    }
    isOffering_ = false;
    const QString text = currentText();
    const QSignalBlocker silent(this);
    if (currentIndex() >= ownEntries_) {
        setCurrentIndex(-1);
    }
    model()->removeRows(ownEntries_, count() - ownEntries_);
    setEditText(text);
}

} // namespace varda::window
