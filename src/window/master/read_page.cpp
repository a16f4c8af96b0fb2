#include "window/master/read_page.h"

#include "core/link/serial_link.h"
#include "core/protocol/frame_image.h"
#include "core/protocol/single_requests.h"
#include "ui_read_page.h"
#include "window/controls/form.h"
#include "window/controls/make_form.h"

namespace varda::window {

ReadPage::ReadPage(const PageContext& context, QWidget* parent)
    : SinglePage(context, Mode::BitRead, parent), ui_(makeForm<Ui::ReadPage>(this)) {
    adopt({.bitOption = ui_->optRead_0,
           .wordOption = ui_->optRead_1,
           .destination = ui_->txtRDDA,
           .source = ui_->txtRDSA,
           .registerLists = {.kind = ui_->cbRegister,
                             .number = ui_->cbRegAddress,
                             .bit = ui_->cbRegBit,
                             .dot = ui_->lblBitPoint,
                             .count = ui_->cbRLength},
           .send = ui_->cmdRDSend,
           .continuous = ui_->chkRTimer,
           .period = ui_->txtReadTimerValue,
           .request = ui_->txtSendRData,
           .answer = ui_->txtReceiveRData,
           .status = ui_->txtRStatus});
}

ReadPage::~ReadPage() = default;

void ReadPage::enterMode() {
    ui_->Frame2_0->setEnabled(true);
    context().form.setEnabled("Frame2_1", false);
    stopRepeating();
    chooseBitOption();
    fields().offerBits();
    if (context().link.port().isOpen()) {
        ui_->cmdRDSend->setEnabled(true);
    }
}

int ReadPage::countLimit(Access access) const { return access == Access::Bit ? bitReadLimit : wordReadLimit; }

void ReadPage::takeCount(int count) { setReadCount(context().images, count); }

void ReadPage::makeFormat() { MakeReadFormat(context().images, chosenAccess()); }

std::string ReadPage::displayString() { return DisplayRString(context().images); }

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
