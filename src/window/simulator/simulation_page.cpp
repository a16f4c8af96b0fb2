#include "window/simulator/simulation_page.h"

#include "core/link/serial_link.h"
#include "core/pairs/send_data_check.h"
#include "core/protocol/mixed_requests.h"
#include "core/protocol/registers.h"
#include "ui_simulation_page.h"
#include "window/controls/events.h"
#include "window/controls/form.h"
#include "window/controls/key_filter.h"
#include "window/controls/lists.h"
#include "window/controls/make_form.h"
#include "window/controls/texts.h"

#include <optional>

namespace varda::window {
namespace {

constexpr int countLimit = 255;

void showAll(std::initializer_list<QWidget*> controls, bool visible) {
    for (QWidget* const control : controls) {
        control->setVisible(visible);
    }
}

std::string repeated(std::string_view group, int times) {
    std::string text;
    for (int time = 0; time < times; ++time) {
        text += group;
    }
    return text;
}

} // namespace

SimulationPage::SimulationPage(const PageContext& context, const Surroundings& surroundings, QWidget* parent)
    : ModePage(parent),
      context_(context),
      sendMixedRequest_(surroundings.sendMixedRequest),
      ui_(makeForm<Ui::SimulationPage>(this)),
      register_({.kind = ui_->cbSimReg,
                 .number = ui_->cbSimAddress,
                 .bit = ui_->cbSimBit,
                 .dot = ui_->lblSimPoint,
                 .count = ui_->cbSimLength}),
      lists_(new PacketLists(context, surroundings.files, *ui_, this,
                             [this](int row) { lstSimReceive_DblClick(row); })),
      requestView_(*ui_, *lists_) {
    for (DropDownList* const list : {ui_->cbSimDA, ui_->cbSimSA}) {
        letTypeInto(list);
    }
    keepPlaceWhenHidden(ui_->lblSimBit);
    // of no kind yet: all of them together would make the window wider than small screens are
    showAll({ui_->optSimOnOff_0, ui_->optSimOnOff_1, ui_->txtSimData, ui_->chkSimHexDec}, false);
    bind();
    connect(lists_, &PacketLists::changed, this, &SimulationPage::pairsChanged);
}

SimulationPage::~SimulationPage() = default;

const PacketTable& SimulationPage::pairs() const { return lists_->table(); }

/// In another mode the page's buttons stay off, as they are when it is entered.
void SimulationPage::addPair(const std::string& request, const std::string& answer) {
    lists_->addPair(request, answer);
    if (context_.link.state().CommMode != Mode::Simulation) {
        lists_->enterMode();
    }
}

void SimulationPage::bind() {
    Events& events = context_.events;
    connect(ui_->cbSimMode, &QComboBox::activated, this,
            [this] { context_.events.guard([this] { cbSimMode_Change(); }); });
    connect(ui_->cbSimModeS, &QComboBox::currentTextChanged, this, [this] { cbSimModeS_Click(); });
    // a key alone empties nothing: the lists follow when the text changes
    events.field(ui_->cbSimReg, [this] { cbSimReg_Change(); }, {.keyPress = [] {}, .lostFocus = {}});
    for (DropDownList* const list : {ui_->cbSimDA, ui_->cbSimSA}) {
        events.field(list, [] {}); // a station is read when a frame is built next
    }
    for (QComboBox* const list : {ui_->cbSimAddress, ui_->cbSimBit}) {
        events.field(list, [this] { rebuildRequest(); });
    }
    events.field(ui_->cbSimLength, [this] { cbSimLength_Click(); }, {.keyPress = [] {}, .lostFocus = {}});
    events.click(ui_->cmdSimAddListBox, [this] { cmdSimAddListBox_Click(); });
    events.click(ui_->cmdSimDelListBox, [this] { cmdSimDelListBox_Click(); });
    events.click(ui_->cmdSimSendDataInputOK, [this] { cmdSimSendDataInputOK_Click(); });
    events.click(ui_->cmdSimInputOK, [this] { cmdSimInputOK_Click(); });
    events.click(ui_->cmdSimStart,
                 [] {}); // kept: the button does nothing, answering depends on the mode alone
    connect(ui_->lstSimMixed, &QListWidget::itemSelectionChanged, this,
            [this] { ui_->cmdSimDelListBox->setEnabled(!ui_->lstSimMixed->selectedItems().isEmpty()); });
    new KeyFilter(ui_->txtSimSendData, [this](char16_t character) {
        return character < 0x80 &&
               filterSendDataKey(textOf(ui_->cbSimModeS), static_cast<char>(character)).has_value();
    });
}

void SimulationPage::enterMode() {
    offerToRegister([this] { registerPair(); }, [this] { prepareMode(); });
}

void SimulationPage::prepareMode() {
    ui_->optSimMixed_0->group()->setExclusive(false);
    ui_->optSimMixed_0->setChecked(false);
    ui_->optSimMixed_1->setChecked(false);
    ui_->optSimMixed_0->group()->setExclusive(true);
    fillList(ui_->cbSimDA, simStationTexts(), "255");
    fillList(ui_->cbSimSA, simStationTexts(), "255");
    fillList(ui_->cbSimMode, simModeTexts(), "Bit Read");
    fillList(ui_->cbSimModeS, simAnswerModeTexts(), "Bit Read ANS");
    lists_->enterMode();
    changeMode();
}

bool SimulationPage::hasPoints() const { return ui_->lstSimMixed->count() > 0; }

const SimKind* SimulationPage::kind() const { return findSimKind(textOf(ui_->cbSimMode)); }

void SimulationPage::cbSimMode_Change() {
    // kept: the mode's text is the new one already, so a mixed kind has its own way with the pair
    offerToRegister([this] { kind() != nullptr ? registerPair() : cmdSimInputOK_Click(); },
                    [this] { changeMode(); });
}

void SimulationPage::offerToRegister(const std::function<void()>& accepted,
                                     const std::function<void()>& next) {
    if (!hasPoints()) {
        next();
        return;
    }
    context_.form.ask("Do you want to regist Data you written in List Box ?", "Confirm",
                      [this, accepted, next](bool yes) {
                          context_.events.guard([&] {
                              if (yes) {
                                  accepted();
                              }
                              next();
                          });
                      });
}

void SimulationPage::registerPair() {
    const std::string request = ui_->txtSimReceive->toPlainText().toStdString();
    const std::string answer = ui_->txtSimSend->toPlainText().toStdString();
    if (!request.empty() && !answer.empty()) {
        lists_->addPair(request, answer);
    }
}

void SimulationPage::changeMode() {
    ui_->lstSimMixed->clear();
    ui_->cmdSimInputOK->setEnabled(false);
    ShowSimReceive("");
    ShowSimSend("");
    ui_->txtSimSendData->clear();
    const SimKind* const chosen = kind();
    if (chosen == nullptr) {
        context_.form.showMessage("Not support in this version yet.", "Confirm");
        return;
    }
    showFieldsOf(*chosen);
    if (chosen->isWrite) {
        ShowSimSend(chosen->makeAnswer(fields())); // an acknowledgement carries no data
    }
}

void SimulationPage::showFieldsOf(const SimKind& kind) {
    const bool bits = kind.access == Access::Bit;
    showAll({ui_->lblSimPoint, ui_->cbSimBit, ui_->lblSimBit}, bits);
    showAll({ui_->Frame25, ui_->optSimMixed_0, ui_->optSimMixed_1}, false);
    showAll({ui_->optSimOnOff_0, ui_->optSimOnOff_1}, kind.isWrite && bits);
    showAll({ui_->txtSimData, ui_->chkSimHexDec}, kind.isWrite && !bits);
    showAll({ui_->lblSimLength, ui_->cbSimLength}, !kind.isWrite);
    for (QWidget* const field :
         {static_cast<QWidget*>(ui_->cbSimReg), static_cast<QWidget*>(ui_->cbSimAddress),
          static_cast<QWidget*>(ui_->cbSimBit), static_cast<QWidget*>(ui_->txtSimData),
          static_cast<QWidget*>(ui_->chkSimHexDec)}) {
        field->setEnabled(true);
    }
    fillList(ui_->cbSimReg, simRegisterTexts(kind.access));
    fillList(ui_->cbSimAddress, {});
    fillList(ui_->cbSimBit, {});
    fillList(ui_->cbSimLength, kind.isWrite ? std::vector<std::string>() : countListTexts(countLimit));
    if (kind.isWrite) {
        ui_->lstSimMixed->setEnabled(true); // a read or a mixed kind may have left it off
    }
    ui_->cmdSimAddListBox->setEnabled(kind.isWrite);
    ui_->cmdSimDelListBox->setEnabled(false);
    ui_->cbSimModeS->setCurrentText(QString::fromUtf8(kind.answerMode));
    cbSimModeS_Click();
}

void SimulationPage::cbSimModeS_Click() {
    const SimKind* const answered = findSimAnswerKind(textOf(ui_->cbSimModeS));
    ui_->txtSimSendData->setEnabled(answered != nullptr && !answered->isWrite);
}

void SimulationPage::cbSimReg_Change() {
    register_.offerNumbers();
    if (kind() != nullptr && !kind()->isWrite) {
        ShowSimReceive(""); // it named a register of the kind before
    }
}

SimPosition SimulationPage::position() const {
    return {register_.kindText(), register_.numberText(), register_.bitText()};
}

SimFields SimulationPage::fields() const {
    return {textOf(ui_->cbSimDA),
            textOf(ui_->cbSimSA),
            position(),
            register_.countText(),
            ui_->txtSimSendData->text().toStdString(),
            linesOf(ui_->lstSimMixed)};
}

void SimulationPage::showPosition(const SimPosition& position) {
    if (register_.kindText() != position.kind) {
        ui_->cbSimReg->setEditText(QString::fromUtf8(position.kind));
    }
    ui_->cbSimAddress->setEditText(QString::fromUtf8(position.number));
    ui_->cbSimBit->setEditText(QString::fromUtf8(position.bit));
}

void SimulationPage::rebuildRequest() {
    const SimKind* const chosen = kind();
    if (chosen == nullptr || chosen->isWrite || !register_.isNamed(chosen->access) || !register_.hasCount()) {
        return; // a write request is built from its points, a read request once its fields are filled
    }
    ShowSimReceive(chosen->makeRequest(fields()));
}

std::optional<int> SimulationPage::typedCount() const {
    const auto count = register_.readableCount();
    return count && *count >= 1 && *count <= countLimit ? count : std::nullopt;
}

void SimulationPage::cbSimLength_Click() {
    const SimKind* const chosen = kind();
    const bool collects =
        chosen == nullptr && (ui_->optSimMixed_0->isChecked() || ui_->optSimMixed_1->isChecked());
    if (chosen != nullptr && chosen->isWrite) {
        return;
    }
    ui_->cmdSimAddListBox->setEnabled(collects);
    ui_->cmdSimDelListBox->setEnabled(collects);
    if (chosen == nullptr) {
        ui_->lstSimMixed->setEnabled(collects);
        return;
    }
    const std::optional<int> count = typedCount();
    ShowSimReceive("");
    ui_->txtSimSendData->setText(
        QString::fromUtf8(repeated(chosen->access == Access::Bit ? "FF" : "FFFF", count.value_or(0))));
    if (count) {
        rebuildRequest();
    }
}

bool SimulationPage::onOffIsChosen() const {
    return ui_->optSimOnOff_0->isChecked() || ui_->optSimOnOff_1->isChecked();
}

std::string SimulationPage::newPoint() const {
    const bool bits = kind()->access == Access::Bit;
    const std::string value =
        bits ? (ui_->optSimOnOff_0->isChecked() ? "ON" : "OFF")
             : simWordValue(ui_->txtSimData->text().toStdString(), ui_->chkSimHexDec->isChecked());
    return simPointLine(kind()->point, position(), value);
}

void SimulationPage::cmdSimAddListBox_Click() {
    const SimKind* const chosen = kind();
    if (chosen == nullptr || !chosen->isWrite) {
        return;
    }
    if (chosen->access == Access::Bit && !onOffIsChosen()) {
        context_.form.showMessage("Please check Data (ON/OFF) !!", "Confirm");
        return;
    }
    SimFields stepped = fields();
    stepped.points.push_back(newPoint());
    stepped.position = stepForward(position(), chosen->access);
    const std::string request = chosen->makeRequest(stepped); // fails before anything has changed
    ui_->lstSimMixed->addItem(QString::fromUtf8(stepped.points.back()));
    showPosition(stepped.position);
    ShowSimReceive(request);
}

void SimulationPage::cmdSimDelListBox_Click() {
    const SimKind* const chosen = kind();
    const QList<QListWidgetItem*> selected = ui_->lstSimMixed->selectedItems();
    if (chosen == nullptr || selected.isEmpty()) {
        return;
    }
    SimFields stepped = fields();
    stepped.points.erase(stepped.points.begin() + ui_->lstSimMixed->row(selected.first()));
    stepped.position = stepBack(position(), 1, chosen->access);
    const std::string request = stepped.points.empty() ? std::string() : chosen->makeRequest(stepped);
    delete selected.first();
    showPosition(stepped.position);
    ShowSimReceive(request);
    ui_->cmdSimDelListBox->setEnabled(!ui_->lstSimMixed->selectedItems().isEmpty());
}

void SimulationPage::cmdSimSendDataInputOK_Click() {
    const SimKind* const answered = findSimAnswerKind(textOf(ui_->cbSimModeS));
    if (answered == nullptr) {
        return;
    }
    ui_->txtSimSendData->setText(
        ui_->txtSimSendData->text().toUpper()); // what is pasted has passed no key filter
    const auto verdict = CheckSimSendData(answered->checkedData, ui_->txtSimSendData->text().toStdString());
    for (const std::string& message : sendDataMessages(answered->checkedData, verdict)) {
        context_.form.showMessage(message, "Error");
    }
    if (verdict == SendDataVerdict::Accepted) {
        ShowSimSend(answered->makeAnswer(fields()));
        ui_->cmdSimInputOK->setEnabled(true);
    }
}

void SimulationPage::cmdSimInputOK_Click() {
    if (ui_->txtSimReceive->toPlainText().isEmpty() || ui_->txtSimSend->toPlainText().isEmpty()) {
        return;
    }
    const SimKind* const chosen = kind();
    if (chosen == nullptr) {
        if (const std::string mode = textOf(ui_->cbSimMode);
            mode == mixedReadMode || mode == mixedWriteMode) {
            sendMixedRequest_(mode == mixedReadMode ? Mode::MixedRead : Mode::MixedWrite);
        }
        return;
    }
    const bool valueIsGiven =
        chosen->access == Access::Bit ? onOffIsChosen() : !ui_->txtSimData->text().isEmpty();
    if (!chosen->isWrite || valueIsGiven) {
        registerPair();
    }
}

void SimulationPage::ShowSimReceive(const std::string& text) {
    ui_->txtSimReceive->setPlainText(QString::fromUtf8(text));
}

void SimulationPage::ShowSimSend(const std::string& text) {
    ui_->txtSimSend->setPlainText(QString::fromUtf8(text));
}

void SimulationPage::lstSimReceive_DblClick(int row) {
    const PacketTable& table = lists_->table();
    const auto pair = static_cast<std::size_t>(row);
    const std::string request = table.requests().at(pair);
    const std::string answer = table.answer(pair);
    const PreparedRequest prepared = parsePreparedRequest(request);
    const SimKind* const reloaded = findSimKind(prepared.mode);
    ui_->cbSimDA->setEditText(QString::fromUtf8(prepared.destination));
    ui_->cbSimSA->setEditText(QString::fromUtf8(prepared.source));
    if (!prepared.mode.empty()) {
        ui_->cbSimMode->setCurrentText(QString::fromUtf8(prepared.mode));
    }
    if (prepared.supported && reloaded != nullptr) {
        reload(*reloaded, prepared, answer);
    } else {
        context_.form.showMessage("Not Support in this version !!", "Confirm");
    }
    ShowSimReceive(request);
    ShowSimSend(answer);
}

void SimulationPage::reload(const SimKind& kind, const PreparedRequest& request, const std::string& answer) {
    ui_->lstSimMixed->clear();
    showFieldsOf(kind);
    showPosition(request.position);
    const QSignalBlocker silent(ui_->cbSimLength);
    ui_->cbSimLength->setEditText(QString::fromUtf8(request.count));
    for (const std::string& point : request.points) {
        ui_->lstSimMixed->addItem(QString::fromUtf8(point));
    }
    ui_->txtSimSendData->setText(kind.isWrite ? QString() : QString::fromUtf8(preparedAnswerData(answer)));
}

} // namespace varda::window
