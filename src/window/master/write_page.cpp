#include "window/master/write_page.h"

#include "core/link/serial_link.h"
#include "core/protocol/frame_image.h"
#include "core/protocol/hex_text.h"
#include "core/protocol/pasted_words.h"
#include "core/protocol/register_words.h"
#include "core/protocol/single_requests.h"
#include "ui_write_page.h"
#include "window/controls/events.h"
#include "window/controls/form.h"
#include "window/controls/make_form.h"
#include "window/master/frmWriteWord.h"
#include "window/master/write_grid.h"

#include <algorithm>
#include <utility>

namespace varda::window {
namespace {

constexpr int noCount = -1;
constexpr int noNumber = -1;
constexpr int countOfAllRows = 17;      ///< data rows laid for a count of "0"
constexpr qsizetype mostPasted = 65536; ///< characters; no request has words for so many

} // namespace

WritePage::WritePage(const PageContext& context, std::function<double()> random, QWidget* parent)
    : SinglePage(context, Mode::BitWrite, parent),
      ui_(makeForm<Ui::WritePage>(this)),
      grid_(new WriteGrid(
          ui_->gridWriteData,
          {.edit = [this](int position) { this->context().events.guard([&] { editCell(position); }); },
           .paste =
               [this](int position, const QString& text) {
                   this->context().events.guard([&] { pasteWords(position, text); });
               },
           .describe = [this](int position) { return describeCell(position); }})),
      random_(std::move(random)) {
    adopt({.bitOption = ui_->optWrite_0,
           .wordOption = ui_->optWrite_1,
           .destination = ui_->txtWDDA,
           .source = ui_->txtWDSA,
           .registerLists = {.kind = ui_->cbWRegister,
                             .number = ui_->cbWRegAddress,
                             .bit = ui_->cbWRegBit,
                             .dot = ui_->lblWBitPoint,
                             .count = ui_->cbWLength},
           .send = ui_->cmdWDSend,
           .continuous = ui_->chkWTimer,
           .period = ui_->txtWriteTimerValue,
           .request = ui_->txtSendWData,
           .answer = ui_->txtReceiveWData,
           .status = ui_->txtWStatus});
    Events& events = context.events;
    events.click(ui_->chkCounter, [this] { chooseDataMode(ui_->chkCounter, ui_->chkRandomWrite); });
    events.click(ui_->chkRandomWrite, [this] { chooseDataMode(ui_->chkRandomWrite, ui_->chkCounter); });
}

WritePage::~WritePage() = default;

void WritePage::enterMode() {
    ui_->Frame2_1->setEnabled(true);
    context().form.setEnabled("Frame2_0", false);
    stopRepeating();
    chooseBitOption();
    ui_->cmdWDSend->setEnabled(context().link.port().isOpen());
}

int WritePage::countLimit(Access access) const { return writeLimit(access); }

void WritePage::accessTaken(Access access) {
    numberOfBits_.clear();
    ui_->chkCounter->setEnabled(access == Access::Word);
    ui_->chkRandomWrite->setEnabled(access == Access::Word);
    clearWriteRequest(context().images);
    grid_->showColumnHeadings(access);
    grid_->emptyCells();
}

void WritePage::makeFormat() {
    if (!fields().hasCount()) {
        ui_->cbWLength->setEditText(QStringLiteral("1"));
    }
    MakeWriteFormat(context().images, access(), count());
}

std::string WritePage::displayString() { return DisplayWString(context().images); }

int WritePage::count() const { return fields().readableCount().value_or(noCount); }

int WritePage::ofCount(int points) const { return fields().hasCount() ? points : 0; }

void WritePage::kindTaken() {
    numberOfBits_.clear();
    layGrid();
}

void WritePage::numberTaken() {
    if (fields().numberText() != numberOfBits_) { // a key that leaves the number leaves the bit as well
        numberOfBits_ = fields().numberText();
        fields().offerBits();
    }
    layGrid();
}

void WritePage::takeBit() {
    if (access() == Access::Bit) {
        SinglePage::takeBit();
        layGrid();
    }
}

void WritePage::takeCount(int count) {
    setWriteCount(context().images, access(), count);
    if (isWriteCount(access(), count)) {
        layRows();
        grid_->emptyCells();
    }
}

void WritePage::layGrid() {
    layRows();
    if (access() == Access::Bit) {
        showBits();
    } else {
        showWords();
    }
}

bool WritePage::isForAllRows() const { return ui_->cbWLength->currentText() == QLatin1String("0"); }

int WritePage::rowsOf(std::optional<int> bit) const {
    if (isForAllRows()) {
        return countOfAllRows;
    }
    const int typed = ofCount(count());
    if (!isWriteCount(access(), typed)) {
        return grid_->cells() / WriteGrid::columns;
    }
    return std::max((bit ? *bit - 1 : 0) + typed, 0) / WriteGrid::columns + 1;
}

/// A number or a bit that cannot be read costs the headings or the rule's bit, never the request.
void WritePage::layRows() {
    const bool chosen = fields().hasKind() && fields().hasNumber();
    if (chosen && !fields().hasBit() && !isForAllRows()) {
        ui_->cbWRegBit->setEditText(QStringLiteral("1")); // kept: the row rule needs a bit, in word mode too
    }
    const int rows = rowsOf(chosen ? fields().readableBit() : std::nullopt);
    const int first = chosen ? fields().readableNumber().value_or(noNumber) : noNumber;
    const int step = access() == Access::Bit ? 1 : WriteGrid::columns;
    grid_->layRows(rows, first >= 0 ? fields().kindText() : std::string(), first, step);
}

void WritePage::showBits() {
    grid_->emptyCells();
    const std::optional<int> bit = fields().readableBit();
    const int framed = bit ? framedWriteCount(context().images, Access::Bit) : 0;
    for (int index = 0; index < framed; ++index) {
        if (isWriteBitOn(context().images, static_cast<std::size_t>(index))) {
            grid_->setText(*bit + index + 1, QStringLiteral("ON"));
        }
    }
}

/// Behind the frame's words stand the check and what is left of longer frames: no more is shown of them than
/// what was typed there and is there still.
void WritePage::showWords() {
    const int framed = framedWriteCount(context().images, Access::Word);
    for (int position = 1; position <= grid_->cells(); ++position) {
        const int word = writeWord(context().images, static_cast<std::size_t>(position - 1));
        const bool shows = position <= framed && word != 0;
        grid_->showWord(position, word, shows ? QString::number(word) : QString());
    }
}

void WritePage::chooseDataMode(QCheckBox* chosen, QCheckBox* other) {
    other->setChecked(false);
    chosen->setChecked(true); // kept: a click on the ticked box leaves it ticked
}

void WritePage::DisplayWMessage(const std::string& text) { showStatus(text); }

WritePage::Positions WritePage::validPositions() const {
    // kept: words are counted from the register number, although their data is not
    const int before = access() == Access::Bit ? fields().bitNumber() : fields().number();
    return {before + 1, before + ofCount(framedWriteCount(context().images, access()))};
}

bool WritePage::CheckWriteCell(int position) {
    if (!fields().isNamed(access()) || !fields().hasCount()) {
        DisplayWMessage("Fill Register, Address, Length");
    }
    const bool valid = validPositions().contain(position);
    DisplayWMessage(valid ? "" : "Invalid Range !!");
    return valid;
}

void WritePage::editCell(int position) {
    if (!isFilledToSend() || !CheckWriteCell(position)) {
        return;
    }
    if (access() == Access::Bit) {
        toggleBit(position);
    } else {
        openWordDialog(position);
    }
}

void WritePage::toggleBit(int position) {
    const QString shown = grid_->text(position);
    const auto index = static_cast<std::size_t>(position - 1 - fields().bitNumber());
    if (shown.isEmpty() || shown == QLatin1String("OFF")) {
        setWriteBit(context().images, index, true);
        grid_->setText(position, QStringLiteral("ON"));
    } else if (shown == QLatin1String("ON")) {
        setWriteBit(context().images, index, false);
        grid_->setText(position, QString()); // kept: the cell becomes empty, not "OFF"
    }
    makeRequest();
}

QString WritePage::registerName(int position) const {
    const std::string kind = fields().kindText();
    const int number = fields().number() + position - 1;
    return QString::fromStdString(kind + " " + registerNumberText(kind, number));
}

void WritePage::openWordDialog(int position) {
    const QString present = grid_->text(position);
    const bool startsHexadecimal = present.isEmpty() ? usesHexadecimal_ : grid_->isHexadecimal(position);
    auto* const dialog =
        new FrmWriteWord(context().events, registerName(position), present, startsHexadecimal, window());
    connect(dialog, &FrmWriteWord::outOfRange, this, [this, position] {
        DisplayWMessage("Rage Over (0 to 65535)");
        grid_->setText(position, QString());
    });
    connect(dialog, &FrmWriteWord::valueAccepted, this,
            [this, position](int value, const QString& text, bool hexadecimal) {
                usesHexadecimal_ = hexadecimal;
                context().events.guard([&] {
                    storeWord(position, value, text, hexadecimal);
                    makeRequest();
                });
            });
    dialog->open();
}

void WritePage::storeWord(int position, int value, const QString& text, bool hexadecimal) {
    // kept: the register number is not subtracted, so above number 0 values land further on in the frame
    setWriteWord(context().images, static_cast<std::size_t>(position - 1), value);
    grid_->setWord(position, value, text, hexadecimal);
}

void WritePage::pasteWords(int position, const QString& text) {
    if (access() != Access::Word || !isFilledToSend() || !CheckWriteCell(position)) {
        return;
    }
    if (text.size() > mostPasted) {
        context().form.showMessage("The clipboard holds more than a request has room for. Copy fewer cells.",
                                   "Error");
        return;
    }
    const int room = std::min(validPositions().last, grid_->cells()) - position + 1;
    const WordsThatFit fit = fitWords(pastedWords(text.toStdString()), static_cast<std::size_t>(room));
    if (fit.isAll()) {
        enterWords(position, fit);
    } else if (fit.words.empty()) {
        context().form.showMessage(fitInWords(fit), "Error");
    } else {
        context().form.ask(fitInWords(fit) + " Do you want to enter those?", "Confirm",
                           [this, position, fit](bool yes) {
                               if (yes) {
                                   context().events.guard([&] { enterWords(position, fit); });
                               }
                           });
    }
}

void WritePage::enterWords(int position, const WordsThatFit& fit) {
    for (const auto& [place, word] : fit.words) {
        storeWord(position + static_cast<int>(place), *word.value, QString::fromStdString(word.text),
                  word.hexadecimal);
    }
    makeRequest();
}

std::string WritePage::bitCellName(int position) const {
    const int bit = (position - 1) % WriteGrid::columns;
    const int word = (position - 1) / WriteGrid::columns;
    return registerName(word + 1).toStdString() + '.' + std::to_string(bit);
}

/// Nothing while the fields name no register, or one that cannot be read.
QString WritePage::describeCell(int position) const {
    const bool readable = fields().readableNumber() && (access() == Access::Word || fields().readableBit());
    if (!fields().isNamed(access()) || !readable) {
        return {};
    }
    return QString::fromStdString(access() == Access::Bit ? describeBit(position) : describeWord(position));
}

std::string WritePage::describeBit(int position) const {
    const int index = position - 1 - fields().bitNumber();
    const bool framed = index >= 0 && index < ofCount(framedWriteCount(context().images, Access::Bit));
    if (!framed) {
        return bitCellName(position) + " is not in the request";
    }
    const bool on = isWriteBitOn(context().images, static_cast<std::size_t>(index));
    return bitCellName(position) + (on ? " = ON" : " = OFF");
}

std::string WritePage::describeWord(int position) const {
    const std::string name = registerName(position).toStdString();
    const bool framed = position <= ofCount(framedWriteCount(context().images, Access::Word));
    const bool holdsWord = framed || !grid_->text(position).isEmpty();
    if (!holdsWord) {
        return name + " is not in the request";
    }
    const int word = writeWord(context().images, static_cast<std::size_t>(position - 1));
    return wordInWords(name, word) + (framed ? "" : ", behind the words of the request");
}

void WritePage::fillData() {
    if (ui_->chkRandomWrite->isChecked()) {
        fillRandomWords(context().images, random_);
        makeRequest();
    } // kept: the counter fill is an empty operation, the data goes out unchanged
}

void WritePage::buildAndSend() {
    makeRequest(); // before any random data: completing an emptied count resets the data
    if (!startRequest()) {
        return;
    }
    clearAnswer();
    fillData();
    context().link.SendRequest(writeWire(context().images), writeAnswerLength);
}

void WritePage::switchOnAfterSend() { context().form.EnableWriteControls(true); }

} // namespace varda::window
