#include "window/master/mixed_write_page.h"

#include "core/base/conversion.h"
#include "core/link/serial_link.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/point_list.h"
#include "core/protocol/single_requests.h"
#include "ui_mixed_write_page.h"
#include "window/controls/events.h"
#include "window/controls/make_form.h"

#include <algorithm>

namespace varda::window {
namespace {

constexpr int largestWord = 0xFFFF;

/// The value of one digit, or -1.
int digitValue(QChar character, bool hexadecimal) {
    if (character >= u'0' && character <= u'9') {
        return character.unicode() - u'0';
    }
    return hexadecimal && character >= u'A' && character <= u'F' ? character.unicode() - u'A' + 10 : -1;
}

/// How many characters from the first on are digits of a value of 0 .. 65535.
qsizetype acceptedLength(const QString& text, bool hexadecimal) {
    int value = 0;
    for (qsizetype index = 0; index < text.size(); ++index) {
        const int digit = digitValue(text.at(index), hexadecimal);
        value = value * (hexadecimal ? 16 : 10) + digit;
        if (digit < 0 || value > largestWord) {
            return index;
        }
    }
    return text.size();
}

bool areDigits(const QString& text, bool hexadecimal) {
    return std::ranges::all_of(
        text, [hexadecimal](QChar character) { return digitValue(character, hexadecimal) >= 0; });
}

} // namespace

MixedWritePage::MixedWritePage(const PageContext& context, QWidget* parent)
    : MixedPage(context, Mode::MixedWrite, parent), ui_(makeForm<Ui::MixedWritePage>(this)) {
    ui_->optMWBData_0->setChecked(true);
    adopt({.bitOption = ui_->optMWrite_0,
           .wordOption = ui_->optMWrite_1,
           .destination = ui_->txtMWDDA,
           .source = ui_->txtMWDSA,
           .registerLists = {.kind = ui_->cbMWRegister,
                             .number = ui_->cbMWRegAddress,
                             .bit = ui_->cbMWRegBit,
                             .dot = ui_->lblMWBitPoint,
                             .count = nullptr},
           .send = ui_->cmdMWDSend,
           .continuous = ui_->chkMWTimer,
           .period = ui_->txtMWriteTimerValue,
           .request = ui_->txtSendMWData,
           .answer = ui_->txtReceiveMWData,
           .status = ui_->txtMWStatus},
          {.lines = ui_->lstMWWriteReg, .add = ui_->cmdMWAdd, .remove = ui_->cmdMWDel});
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

void MixedWritePage::optionChosen(Access access) { fields().offer(access, 0); }

void MixedWritePage::chkHexDec_Click() {
    ui_->chkHexDec->setText(ui_->chkHexDec->isChecked() ? QStringLiteral("HEX") : QStringLiteral("DEC"));
}

void MixedWritePage::txtMWData_Change() {
    const bool hexadecimal = ui_->chkHexDec->isChecked();
    const QString typed = ui_->txtMWData->text();
    const QString text = hexadecimal ? typed.toUpper() : typed;
    // Character by character the last one is dropped until the rest is a value; what remains is known at
    // once.
    const QString accepted = text.left(acceptedLength(text, hexadecimal));
    if (accepted != typed) {
        ui_->txtMWData->setText(accepted); // runs this handler again; the caret stands at the end
    } else if (hexadecimal) {
        ui_->txtMWData->end(false);
    }
    if (accepted != text) {
        showStatus(areDigits(text, hexadecimal) ? "Range Over" : "Invalid Data");
    }
}

void MixedWritePage::makeFormat() { MakeMWriteFormat(context().images, stationTexts(), pointLines()); }

std::string MixedWritePage::displayString() { return DisplayMWString(context().images); }

std::string MixedWritePage::wordValue() const {
    const std::string typed = ui_->txtMWData->text().toStdString();
    return ui_->chkHexDec->isChecked() ? typed : hex(toLong(typed, "Value"));
}

std::string MixedWritePage::newLine() const {
    const RegisterFields& first = fields();
    if (access() == Access::Bit) {
        const std::string value = ui_->optMWBData_0->isChecked() ? "ON" : "OFF";
        return bitPointLine(first.kindText(), first.numberText(), first.bitText(), value);
    }
    return wordPointLine(first.kindText(), first.numberText(), wordValue());
}

int MixedWritePage::listLength(const std::vector<std::string>& lines) const {
    return GetListDataLength(lines);
}

void MixedWritePage::makeBody(const std::vector<std::string>& lines, const LineVisitor& visit) {
    MakeMWDataFormat(context().images, lines, visit);
}

int MixedWritePage::answerLength(const std::vector<std::string>& /*lines*/) const {
    return writeAnswerLength;
}

} // namespace varda::window
