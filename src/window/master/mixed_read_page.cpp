#include "window/master/mixed_read_page.h"

#include "core/link/serial_link.h"
#include "core/protocol/point_list.h"
#include "ui_mixed_read_page.h"

namespace varda::window {

MixedReadPage::MixedReadPage(const PageContext& context, QWidget* parent)
    : MixedPage(context, Mode::MixedRead, parent), ui_(std::make_unique<Ui::MixedReadPage>()) {
    ui_->setupUi(this);
    adopt({ui_->optMRead_0, ui_->optMRead_1, ui_->txtMRDDA, ui_->txtMRDSA, ui_->txtMReadTimerValue,
           ui_->chkMRTimer, ui_->cmdMRDSend, ui_->txtSendMRData, ui_->txtReceiveMRData, ui_->txtMRStatus},
          {ui_->cbMRegister, ui_->cbMRegAddress, ui_->cbMRegBit, ui_->lblMRBitPoint, ui_->cbMRLength,
           ui_->lstMRReadReg, ui_->cmdMRAdd, ui_->cmdMRDel});
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
    offer(access, access == Access::Bit ? bitReadLimit : wordReadLimit);
}

void MixedReadPage::makeFormat() { MakeMReadFormat(context().images, stationTexts(), pointLines()); }

std::string MixedReadPage::displayString() { return DisplayMRString(context().images); }

std::string MixedReadPage::newLine() const {
    const std::string kind = fieldText(ui_->cbMRegister);
    const std::string number = fieldText(ui_->cbMRegAddress);
    const std::string count = fieldText(ui_->cbMRLength);
    return access() == Access::Bit ? bitPointLine(kind, number, fieldText(ui_->cbMRegBit), count)
                                   : wordPointLine(kind, number, count);
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
