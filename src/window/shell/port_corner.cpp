#include "window/shell/port_corner.h"

#include "core/link/mscomm.h"
#include "core/virtual/virtual_line.h"
#include "device/port_identity.h"
#include "device/serial_node.h"
#include "ui_port_corner.h"
#include "window/controls/make_form.h"
#include "window/shell/link_port.h"
#include "window/shell/port_doctor.h"

#include <QComboBox>

namespace varda::window {
namespace {

QString meaningOf(const QString& text) {
    if (text.trimmed() == QLatin1String(virtualPortName)) {
        return PortCorner::tr("The embedded controller: no cable needed.");
    }
    const std::string node = device::deviceNode(text.toStdString());
    if (node.empty()) {
        return QString::fromStdString(std::string(device::portNamesInWords())) + QLatin1Char('.');
    }
    const QString meaning = PortCorner::tr("Stands for %1.").arg(QString::fromStdString(node));
    const QString meant = QString::fromStdString(device::meantInCapitals(text.toStdString()));
    return meant.isEmpty() ? meaning : PortCorner::tr("%1 Did you mean %2, in capitals?").arg(meaning, meant);
}

} // namespace

PortCorner::PortCorner(const Parts& parts, const TimerMaker& makeTimer, QWidget* parent)
    : QWidget(parent),
      ui_(makeForm<Ui::PortCorner>(this)),
      parts_(parts),
      timer_(makeTimer([this] { attachAgain_.tick(); })),
      attachAgain_(
          {.identityOf = [](const std::string& name) { return device::identityOfPort(name); },
           .nameOf = [](const std::string& identity,
                        const std::string& lastName) { return device::nameOfDevice(identity, lastName); },
           .open = [this](const std::string& name) { return parts_.linkPort.attach(name); }},
          *timer_) {
    // As wide for every text, so that nothing beside it jumps; with room for the end of an adapter's name,
    // from its serial number on.
    ui_->openPort->setFixedWidth(ui_->openPort->fontMetrics().horizontalAdvance(
        tr("Open Port opens ..._A50285BI-if00-port0, 115200 8-N-1")));
    for (const QComboBox* const list :
         {parts.cbPort, parts.cbBaudRate, parts.cbDataBit, parts.cbStopBit, parts.cbParityBit}) {
        connect(list, &QComboBox::editTextChanged, this, [this] { showWords(); });
    }
    connect(ui_->attachAgain, &QCheckBox::toggled, this, [this](bool isOn) { wishAttaching(isOn); });
    connect(ui_->portDoctor, &QPushButton::clicked, this, [this] { openDoctor(); });
    showWords();
}

PortCorner::~PortCorner() = default;

void PortCorner::showPort() {
    if (parts_.port.isOpen()) {
        attachAgain_.opened(parts_.port.commPort());
    } else {
        attachAgain_.forget();
    }
    tellWords();
}

std::optional<Form::Tick> PortCorner::offerAfterHangUp() {
    attachAgain_.lost();
    tellWords();
    if (!attachAgain_.isKnown()) {
        return std::nullopt;
    }
    return Form::Tick{tr("Attach again when it comes back").toStdString(), attachAgain_.isWished(),
                      [this](bool isOn) { ui_->attachAgain->setChecked(isOn); }};
}

void PortCorner::wishAttaching(bool isWished) {
    attachAgain_.wish(isWished);
    tellWords();
}

/// Not while a name is typed.
void PortCorner::tellWords() {
    showWords();
    ui_->openPort->tell(ui_->openPort->text());
}

PortState PortCorner::state() const {
    const auto textOf = [](const QComboBox* list) { return list->currentText().toStdString(); };
    return {.field = textOf(parts_.cbPort),
            .tested = parts_.port.commPort(),
            .awaited = attachAgain_.awaited(),
            .isOpen = parts_.port.isOpen(),
            .baudRate = textOf(parts_.cbBaudRate),
            .dataBits = textOf(parts_.cbDataBit),
            .stopBits = textOf(parts_.cbStopBit),
            .parity = textOf(parts_.cbParityBit)};
}

void PortCorner::showWords() {
    const PortState now = state();
    const QString port = QString::fromStdString(openPortText(now));
    const QString field =
        meaningOf(parts_.cbPort->currentText()) + QLatin1Char('\n') + QString::fromStdString(fieldText(now));
    ui_->openPort->showText(port, QString::fromStdString(portInText(now)));
    ui_->openPort->setToolTip(port);
    parts_.cmdPortOpen->setToolTip(port);
    parts_.cmdPortOpen->setAccessibleDescription(port);
    parts_.cbPort->setToolTip(field);
    parts_.cbPort->setAccessibleDescription(field);
}

void PortCorner::openDoctor() {
    if (doctor_ == nullptr) {
        doctor_ = new PortDoctor([this] { return parts_.cbPort->currentText().toStdString(); }, window());
    }
    doctor_->look();
}

} // namespace varda::window
