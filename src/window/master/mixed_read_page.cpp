#include "window/master/mixed_read_page.h"

#include "core/link/serial_link.h"
#include "core/protocol/point_list.h"
#include "ui_mixed_read_page.h"
#include "window/controls/make_form.h"

namespace varda::window {

MixedReadPage::MixedReadPage(const PageContext& context, QWidget* parent)
    : MixedPage(context, Mode::MixedRead, parent), ui_(makeForm<Ui::MixedReadPage>(this)) {
    adopt({.bitOption = ui_->optMRead_0,
           .wordOption = ui_->optMRead_1,
           .destination = ui_->txtMRDDA,
           .source = ui_->txtMRDSA,
           .registerLists = {.kind = ui_->cbMRegister,
                             .number = ui_->cbMRegAddress,
                             .bit = ui_->cbMRegBit,
                             .dot = ui_->lblMRBitPoint,
                             .count = ui_->cbMRLength},
           .send = ui_->cmdMRDSend,
           .continuous = ui_->chkMRTimer,
           .period = ui_->txtMReadTimerValue,
           .request = ui_->txtSendMRData,
           .answer = ui_->txtReceiveMRData,
           .status = ui_->txtMRStatus},
          {.lines = ui_->lstMRReadReg, .add = ui_->cmdMRAdd, .remove = ui_->cmdMRDel});
}

MixedReadPage::~MixedReadPage() = default;

void MixedReadPage::enterMode() {
    prepareMode();
    ui_->cmdMRAdd->setEnabled(true);
    ui_->cmdMRDel->setEnabled(true);
    if (context().link.port().isOpen()) {
        ui_->cmdMRDSend->setEnabled(true);
    }
}

void MixedReadPage::optionChosen(Access access) {
    fields().offer(access, access == Access::Bit ? bitReadLimit : wordReadLimit);
}

void MixedReadPage::makeFormat() { MakeMReadFormat(context().images, stationTexts(), pointLines()); }

std::string MixedReadPage::displayString() { return DisplayMRString(context().images); }

std::string MixedReadPage::newLine() const {
    const RegisterFields& first = fields();
    return access() == Access::Bit
               ? bitPointLine(first.kindText(), first.numberText(), first.bitText(), first.countText())
               : wordPointLine(first.kindText(), first.numberText(), first.countText());
}

int MixedReadPage::listLength(const std::vector<std::string>& lines) const {
    return GetMRAnswerLength(lines);
}

void MixedReadPage::makeBody(const std::vector<std::string>& lines, const LineVisitor& visit) {
    MakeMRDataFormat(context().images, lines, visit);
}

int MixedReadPage::answerLength(const std::vector<std::string>& lines) const {
    return GetMRAnswerLength(lines) + static_cast<int>(frame_size::envelope);
}

} // namespace varda::window
