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

/// Why the dialog stays open, and what it takes.
QString notTaken(const QString& text, bool hexadecimal) {
    constexpr int shownCharacters = 12;
    const QString shown = text.isEmpty() ? QObject::tr("Nothing") : text.left(shownCharacters);
    return hexadecimal ? QObject::tr("%1 is no word of 0 to FFFF.").arg(shown)
                       : QObject::tr("%1 is no word of 0 to 65535.").arg(shown);
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
    connect(ui_->txtWordWrite, &QLineEdit::textChanged, this, [this] { showReason({}); });
    connect(ui_->chkWWHex, &QCheckBox::toggled, this, [this] { showReason({}); });
    ui_->cmdInputOK->setDefault(true); // Enter in the text is the OK button; Escape closes without storing
    connect(ui_->cmdInputOK, &QPushButton::clicked, this,
            [this, &events] { events.guard([this] { cmdInputOK_Click(); }); });
}

FrmWriteWord::~FrmWriteWord() = default;

void FrmWriteWord::showReason(const QString& reason) {
    ui_->writeWordReason->setText(reason);
    ui_->writeWordReason->setVisible(!reason.isEmpty());
}

bool FrmWriteWord::isHexadecimal() const { return ui_->chkWWHex->isChecked(); }

void FrmWriteWord::cmdInputOK_Click() {
    const QString text = ui_->txtWordWrite->text();
    ui_->txtWordWrite->setFocus();
    ui_->txtWordWrite->selectAll();
    showReason(notTaken(text, isHexadecimal()));
    const std::optional<int> value =
        advised([&] { return wordValue(text.toStdString(), isHexadecimal()); },
                [this](const RuntimeError& /*error*/) { return ui_->writeWordReason->text().toStdString(); });
    if (!value) {
        emit outOfRange();
        return;
    }
    emit valueAccepted(*value, text, isHexadecimal());
    accept();
}

} // namespace varda::window
