#include "window/master/master_page.h"

#include "core/base/conversion.h"
#include "core/base/period_timer.h"
#include "core/base/runtime_error.h"
#include "core/base/scope_exit.h"
#include "core/link/period.h"
#include "core/link/serial_link.h"
#include "core/protocol/frame_image.h"
#include "window/controls/events.h"
#include "window/controls/form.h"
#include "window/controls/period_steps.h"
#include "window/controls/period_typing.h"
#include "window/controls/show_text.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>

#include <limits>

namespace varda::window {

MasterPage::MasterPage(const PageContext& context, Mode bitMode, QWidget* parent)
    : ModePage(parent), context_(context), route_(*findRoute(bitMode)) {}

void MasterPage::adopt(const Controls& controls) {
    controls_ = controls;
    fields_.emplace(controls.registerLists);
    Events& events = context_.events;
    events.option(controls.bitOption, [this] { optionChosen(Access::Bit); });
    events.option(controls.wordOption, [this] { optionChosen(Access::Word); });
    const auto destination = [this] { takeStation(offset::destination); };
    const auto source = [this] { takeStation(offset::source); };
    events.field(controls.destination, destination, {.keyPress = {}, .lostFocus = destination});
    events.field(controls.source, source, {.keyPress = {}, .lostFocus = source});
    events.textChange(controls.period, [this] { takePeriod(); });
    new PeriodSteps(controls.period, {shortestPeriod, std::numeric_limits<std::int16_t>::max()});
    new PeriodTyping(controls.period); // installed last, it sees first what the steps take for themselves
    events.click(controls.send, [this] { sendRequest(); });
}

/// The period takes effect at once, at the first digit of a number that is typed digit by digit, and the
/// timer runs from then on, port open or not.
void MasterPage::takePeriod() {
    const std::string typed = controls_.period->text().toStdString();
    const int period = periodOf(typed);
    context_.tmrComm.stop();
    if (readInteger(typed) != period) {
        controls_.period->setText(QString::number(period));
    }
    context_.tmrComm.setInterval(period);
    context_.tmrComm.start();
}

void MasterPage::clickSend() { controls_.send->click(); }

std::optional<Access> MasterPage::chosenAccess() const {
    return controls_.bitOption->isChecked()    ? std::optional(Access::Bit)
           : controls_.wordOption->isChecked() ? std::optional(Access::Word)
                                               : std::nullopt;
}

FrameImage& MasterPage::image() { return context_.images.of(static_cast<std::uint8_t>(route_.bitMode)); }

Mode MasterPage::mode() const { return access() == Access::Word ? route_.wordMode : route_.bitMode; }

std::string MasterPage::requestText() const { return controls_.request->toPlainText().toStdString(); }

void MasterPage::enableSending(bool enabled) {
    controls_.send->setEnabled(enabled);
    stopRepeating();
    controls_.continuous->setEnabled(enabled);
}

void MasterPage::showStatus(const std::string& text) { showText(controls_.status, text); }

bool MasterPage::startRequest() {
    const bool isOpen = context_.link.startRequest();
    showStatus(isOpen ? "" : "Port Closed");
    return isOpen;
}

void MasterPage::stopRepeating() { controls_.continuous->setChecked(false); }

void MasterPage::chooseBitOption() { context_.events.choose(controls_.bitOption); }

void MasterPage::clearRequest() { showText(controls_.request, {}); }

void MasterPage::clearAnswer() { showText(controls_.answer, {}); }

void MasterPage::showRequest() { showText(controls_.request, displayString()); }

void MasterPage::makeRequest() {
    makeFormat();
    showRequest();
}

std::string MasterPage::stationText(std::size_t index) const {
    const QLineEdit* const field = index == offset::destination ? controls_.destination : controls_.source;
    return field->text().toStdString();
}

void MasterPage::takeStation(std::size_t index) {
    clearRequest();
    setStation(image(), index, stationText(index));
    makeRequest();
}

void MasterPage::takeStations() {
    clearRequest();
    for (const std::size_t index : {offset::destination, offset::source}) {
        setStation(image(), index, stationText(index));
    }
    makeRequest();
}

void MasterPage::sendRequest() {
    if (!isFilledToSend()) {
        context_.form.showMessage("Data are missing. Please fill Data !!", "Error");
        return;
    }
    // Off and on again within one event would not be seen, but would take the focus and the caret from the
    // user: only the end of it is carried out.
    const ScopeExit switchedOn([this] { switchOnAfterSend(); });
    buildAndSend();
}

void MasterPage::repeatRequest() {
    const bool hasStations = !controls_.destination->text().isEmpty() && !controls_.source->text().isEmpty();
    if (!controls_.continuous->isChecked() || !isFilledToSend() || !hasStations || !fields().hasCount()) {
        return;
    }
    try {
        sendRequest();
    } catch (const RuntimeError&) {
        stopRepeating(); // else the same report would come with every tick
        throw;
    }
}

} // namespace varda::window
