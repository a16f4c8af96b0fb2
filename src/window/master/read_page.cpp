#include "window/master/read_page.h"

#include "core/base/conversion.h"
#include "core/link/serial_link.h"
#include "core/protocol/frame_image.h"
#include "core/protocol/single_requests.h"
#include "ui_read_page.h"
#include "window/controls/events.h"
#include "window/controls/form.h"
#include "window/controls/make_form.h"

namespace varda::window {

ReadPage::ReadPage(const PageContext& context, QWidget* parent)
    : MasterPage(context, Mode::BitRead, parent),
      ui_(makeForm<Ui::ReadPage>(this)),
      register_(ui_->cbRegister, ui_->cbRegAddress, ui_->cbRegBit, ui_->lblBitPoint, ui_->cbRLength) {
    adopt({ui_->optRead_0, ui_->optRead_1, ui_->txtRDDA, ui_->txtRDSA, ui_->txtReadTimerValue, ui_->chkRTimer,
           ui_->cmdRDSend, ui_->txtSendRData, ui_->txtReceiveRData, ui_->txtRStatus});
    Events& events = context.events;
    // kept: a key typed into the kind list re-runs the count's handler
    events.field(ui_->cbRegister, [this] { cbRegister_Change(); },
                 {.keyPress = [this] { cbRLength_Change(); }, .lostFocus = {}});
    events.field(ui_->cbRegAddress, [this] { cbRegAddress_Change(); });
    events.field(ui_->cbRegBit, [this] { cbRegBit_Change(); });
    events.field(ui_->cbRLength, [this] { cbRLength_Change(); });
}

ReadPage::~ReadPage() = default;

void ReadPage::enterMode() {
    stopRepeating();
    chooseBitOption();
    register_.offerBits();
    if (context().link.port().isOpen()) {
        ui_->cmdRDSend->setEnabled(true);
    }
}

void ReadPage::optionChosen(Access access) {
    context().link.enterMode(mode());
    register_.offer(access, access == Access::Bit ? bitReadLimit : wordReadLimit);
    takeStations();
}

void ReadPage::makeFormat() { MakeReadFormat(context().images, access()); }

std::string ReadPage::displayString() { return DisplayRString(context().images); }

void ReadPage::cbRegister_Change() {
    clearRequest();
    register_.offerNumbers();
    showRequest();
}

void ReadPage::cbRegAddress_Change() {
    clearRequest();
    if (!register_.hasKind()) {
        return;
    }
    if (register_.hasNumber()) { // an emptied number is about to be retyped, no error
        const int word = register_.wordAddress(access());
        if (access() == Access::Word) { // the address of a bit is written when its bit number is chosen
            writeAddress(wordAddressText(word));
        }
    }
    showRequest();
}

void ReadPage::cbRegBit_Change() {
    clearRequest();
    if (!register_.hasKind() || !register_.hasNumber()) {
        ui_->cbRegBit->clearEditText();
        return;
    }
    if (register_.hasBit()) {
        writeAddress(bitAddressText(register_.wordAddress(Access::Bit), register_.bitNumber()));
    }
    showRequest();
}

void ReadPage::cbRLength_Change() {
    clearRequest();
    const auto typed = readInteger(ui_->cbRLength->currentText().toStdString());
    if (!typed) {
        ui_->cbRLength->clearEditText();
        return;
    }
    setReadCount(context().images, *typed);
    makeRequest();
}

void ReadPage::buildAndSend() {
    makeRequest();
    clearAnswer();
    if (startRequest()) {
        const std::uint8_t count = context().images.read.byte(offset::count);
        context().link.SendRequest(readWire(context().images), readAnswerLength(access(), count));
    }
}

void ReadPage::switchOnAfterSend() { context().form.EnableReadControls(true); }

} // namespace varda::window
