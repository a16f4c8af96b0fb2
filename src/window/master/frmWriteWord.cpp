#include "window/master/frmWriteWord.h"

#include "core/base/conversion.h"
#include "core/base/runtime_error.h"
#include "core/protocol/hex_text.h"
#include "ui_write_word_dialog.h"
#include "window/controls/events.h"
#include "window/controls/key_filter.h"

#include <optional>

namespace varda::window {
namespace {

/// The value of 0 .. 65535 that a text stands for; nothing where it is out of range.
/// @throws RuntimeError 13 where it is no number
std::optional<int> wordValue(const std::string& text, bool hexadecimal) {
    try {
        const int value = hexadecimal ? fromHex(text) : toLong(text);
        return value >= 0 && value <= 0xFFFF ? std::optional(value) : std::nullopt;
    } catch (const RuntimeError& error) {
        if (error.number() == run_time_error::overflow) {
            return std::nullopt;
        }
        throw;
    }
}

} // namespace

FrmWriteWord::FrmWriteWord(Events& events, const QString& registerName, const QString& present,
                           bool hexadecimal, QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::FrmWriteWord>()) {
    ui_->setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(registerName);
    ui_->chkWWHex->setChecked(hexadecimal);
    ui_->txtWordWrite->setText(present);
    ui_->txtWordWrite->selectAll();
    ui_->txtWordWrite->setFocus();
    new KeyFilter(ui_->txtWordWrite, [this](char16_t character) {
        return KeyFilter::isDigitOrKept(character) || (isHexadecimal() && KeyFilter::isHexLetter(character));
    });
    ui_->cmdInputOK->setDefault(true); // Enter in the text is the OK button; Escape closes without storing
    connect(ui_->cmdInputOK, &QPushButton::clicked, this,
            [this, &events] { events.guard([this] { cmdInputOK_Click(); }); });
}

FrmWriteWord::~FrmWriteWord() = default;

bool FrmWriteWord::isHexadecimal() const { return ui_->chkWWHex->isChecked(); }

void FrmWriteWord::cmdInputOK_Click() {
    const QString text = ui_->txtWordWrite->text();
    ui_->txtWordWrite->setFocus();
    ui_->txtWordWrite->selectAll();
    const std::optional<int> value = wordValue(text.toStdString(), isHexadecimal());
    if (!value) {
        emit outOfRange();
        return;
    }
    emit valueAccepted(*value, text, isHexadecimal());
    accept();
}

} // namespace varda::window
