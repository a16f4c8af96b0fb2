#include "window/bench/fault_banner.h"

#include "ui_fault_banner.h"
#include "window/bench/fault_switch.h"
#include "window/controls/events.h"
#include "window/controls/make_form.h"

#include <QPalette>

namespace varda::window {

FaultBanner::FaultBanner(FaultSwitch& faults, Events& events, QWidget* parent)
    : QFrame(parent), faults_(faults), ui_(makeForm<Ui::FaultBanner>(this)) {
    constexpr QColor ground(0xB0, 0x00, 0x20); // the same on light and dark desktops: 7.3 to 1 with white
    QPalette colours = palette();
    colours.setColor(QPalette::Window, ground);
    colours.setColor(QPalette::WindowText, Qt::white);
    setPalette(colours);
    QFont bold = ui_->faultBannerText->font();
    bold.setBold(true);
    ui_->faultBannerText->setFont(bold);
    events.click(ui_->faultsAllOff, [this] { faults_.switchOn(false); });
    connect(&faults, &FaultSwitch::changed, this, &FaultBanner::showFaults);
    showFaults();
}

FaultBanner::~FaultBanner() = default;

void FaultBanner::showFaults() {
    const QString plan =
        QString::fromStdString(faultText(faults_.chosen())).replace(QLatin1Char(','), QLatin1String(", "));
    const QString text = faults_.isActive()
                             ? tr("Faults on purpose: what this program sends is damaged. %1").arg(plan)
                             : QString();
    ui_->faultBannerText->setText(text);
    ui_->faultBannerText->tell(text);
    setVisible(faults_.isActive());
}

} // namespace varda::window
