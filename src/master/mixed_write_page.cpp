#include "master/mixed_write_page.h"

#include "link/form.h"
#include "link/hex_text.h"
#include "link/point_list.h"
#include "link/serial_link.h"
#include "link/single_requests.h"
#include "platform/conversion.h"
#include "platform/events.h"
#include "platform/runtime_error.h"
#include "ui_mixed_write_page.h"

#include <algorithm>

namespace varda {
namespace {

bool areDigits(const QString& text, bool hexadecimal) {
    return std::ranges::all_of(text, [hexadecimal](QChar character) {
        return (character >= u'0' && character <= u'9') ||
               (hexadecimal && character >= u'A' && character <= u'F');
    });
}

/// @param digits only digits of the base @return whether their value is at most 65535
bool fitsWord(const std::string& digits, bool hexadecimal) {
    try {
        return digits.empty() || (hexadecimal ? fromHex(digits) : toLong(digits)) <= 0xFFFF;
    } catch (const RuntimeError&) {
        return false;
    }
}

} // namespace

MixedWritePage::MixedWritePage(const PageContext& context, QWidget* parent)
    : MixedPage(context, command::mixedWrite, parent), ui_(std::make_unique<Ui::MixedWritePage>()) {
    ui_->setupUi(this);
    ui_->optMWBData_0->setChecked(true);
    adopt({ui_->optMWrite_0, ui_->optMWrite_1, ui_->txtMWDDA, ui_->txtMWDSA, ui_->txtMWriteTimerValue,
           ui_->chkMWTimer, ui_->cmdMWDSend, ui_->txtSendMWData, ui_->txtReceiveMWData},
          {ui_->cbMWRegister, ui_->cbMWRegAddress, ui_->cbMWRegBit, ui_->lblMWBitPoint, nullptr,
           ui_->lstMWWriteReg, ui_->cmdMWAdd, ui_->cmdMWDel});
    context.events.textChange(ui_->txtMWData, [this] { txtMWData_Change(); });
    connect(ui_->chkHexDec, &QCheckBox::toggled, this, [this] { chkHexDec_Click(); });
}

MixedWritePage::~MixedWritePage() = default;

void MixedWritePage::enterMode() {
    prepareMode();
    ui_->cmdMWDSend->setEnabled(context().link.port().isOpen());
    ui_->chkHexDec->setChecked(true);
    chkHexDec_Click();
}

void MixedWritePage::optionChosen(Access access) {
    offer(access, 0);
    const bool bits = access == Access::Bit;
    ui_->optMWBData_0->setEnabled(bits);
    ui_->optMWBData_1->setEnabled(bits);
    ui_->txtMWData->setEnabled(!bits);
    ui_->chkHexDec->setEnabled(!bits);
}

void MixedWritePage::chkHexDec_Click() {
    ui_->chkHexDec->setText(ui_->chkHexDec->isChecked() ? QStringLiteral("HEX") : QStringLiteral("DEC"));
}

void MixedWritePage::txtMWData_Change() {
    const bool hexadecimal = ui_->chkHexDec->isChecked();
    QString text = ui_->txtMWData->text();
    if (hexadecimal && text != text.toUpper()) {
        ui_->txtMWData->setText(text.toUpper()); // runs this handler again; the caret stands at the end
    } else if (!areDigits(text, hexadecimal)) {
        refuseLastCharacter("Invalid Data");
    } else if (!fitsWord(text.toStdString(), hexadecimal)) {
        refuseLastCharacter("Range Over");
    }
}

void MixedWritePage::refuseLastCharacter(const std::string& reason) {
    ui_->txtMWData->setText(ui_->txtMWData->text().chopped(1));
    context().form.setText(route().status, reason);
}

void MixedWritePage::makeFormat() { MakeMWriteFormat(context().images, stationTexts(), pointLines()); }

std::string MixedWritePage::displayString() { return DisplayMWString(context().images); }

std::string MixedWritePage::wordValue() const {
    const std::string typed = ui_->txtMWData->text().toStdString();
    return ui_->chkHexDec->isChecked() ? typed : hex(toLong(typed));
}

std::string MixedWritePage::newLine() const {
    const std::string kind = fieldText(ui_->cbMWRegister);
    const std::string number = fieldText(ui_->cbMWRegAddress);
    if (access() == Access::Bit) {
        const std::string value = ui_->optMWBData_0->isChecked() ? "ON" : "OFF";
        return bitPointLine(kind, number, fieldText(ui_->cbMWRegBit), value);
    }
    return wordPointLine(kind, number, wordValue());
}

int MixedWritePage::listLength(const std::vector<std::string>& lines) const {
    return GetListDataLength(lines);
}

void MixedWritePage::makeBody(const std::vector<std::string>& lines) {
    MakeMWDataFormat(context().images, lines);
}

int MixedWritePage::answerLength(const std::vector<std::string>& /*lines*/) const {
    return writeAnswerLength;
}

} // namespace varda
