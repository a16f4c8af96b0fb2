#include "window/master/mixed_page.h"

#include "core/base/conversion.h"
#include "core/link/serial_link.h"
#include "core/protocol/frame_image.h"
#include "core/protocol/point_list.h"
#include "window/controls/events.h"
#include "window/controls/form.h"

#include <QComboBox>
#include <QListWidget>
#include <QPushButton>

namespace varda::window {

MixedPage::MixedPage(const PageContext& context, Mode mode, QWidget* parent)
    : MasterPage(context, mode, parent) {}

void MixedPage::adopt(const Controls& controls, const ListControls& lists) {
    MasterPage::adopt(controls);
    lists_ = lists;
    register_ = std::make_unique<RegisterFields>(lists.registerKind, lists.registerNumber, lists.registerBit,
                                                 lists.bitPoint, lists.count);
    bindLists();
}

void MixedPage::bindLists() {
    Events& events = context().events;
    // a key alone empties nothing: the lists follow when the text changes
    events.field(lists_.registerKind, [this] { register_->offerNumbers(); },
                 {.keyPress = [] {}, .lostFocus = {}});
    events.field(lists_.registerNumber, [] {}); // a number is read when the point is added
    events.field(lists_.registerBit, [this] { bitChosen(); });
    if (lists_.count != nullptr) {
        events.field(lists_.count, [this] { countChosen(); });
    }
    events.click(lists_.add, [this] { addLine(); });
    events.click(lists_.remove, [this] { removeLine(); });
    connect(lists_.points, &QListWidget::itemSelectionChanged, this, [this] { lineChosen(); });
    connect(lists_.points, &QListWidget::itemClicked, this, [this] { lineChosen(); });
}

void MixedPage::prepareMode() {
    stopRepeating();
    chooseBitOption();
    register_->offerBits();
    image().set(offset::length, 0);
}

void MixedPage::offer(Access access, int countLimit) { register_->offer(access, countLimit); }

void MixedPage::selectLine(std::size_t line) {
    lists_.points->setCurrentRow(static_cast<int>(line));
    lineChosen(); // a selection by the program is a click too, also of the line that is selected already
}

std::string MixedPage::fieldText(const QComboBox* list) const { return list->currentText().toStdString(); }

StationTexts MixedPage::stationTexts() const {
    return {stationText(offset::destination), stationText(offset::source)};
}

void MixedPage::bitChosen() {
    if (!register_->hasKind() || !register_->hasNumber()) {
        lists_.registerBit->clearEditText();
    }
}

void MixedPage::countChosen() {
    if (!readInteger(fieldText(lists_.count))) {
        lists_.count->clearEditText();
    }
}

std::vector<std::string> MixedPage::pointLines() const {
    return context().form.lines(lists_.points->objectName().toStdString());
}

bool MixedPage::pointIsNamed() const {
    const bool counted = lists_.count == nullptr || !fieldText(lists_.count).empty();
    const bool bitNamed = access() == Access::Word || register_->hasBit();
    return register_->hasKind() && register_->hasNumber() && bitNamed && counted;
}

void MixedPage::addLine() {
    if (!pointIsNamed()) {
        return;
    }
    const std::string line = newLine();
    const std::vector<std::string> lines = pointLines();
    if (!lines.empty()) {
        selectLine(lines.size() - 1); // each line is selected in turn while the list is measured
    }
    // kept: the new line's own size is not part of the test
    if (listLength(lines) < fullPointList) {
        lists_.points->addItem(QString::fromStdString(line));
    }
}

QListWidgetItem* MixedPage::markedLine() const {
    const QList<QListWidgetItem*> marked = lists_.points->selectedItems();
    return marked.isEmpty() || marked.first()->text().isEmpty() ? nullptr : marked.first();
}

void MixedPage::removeLine() {
    delete markedLine();
    lists_.remove->setEnabled(false);
}

void MixedPage::lineChosen() {
    if (markedLine() != nullptr) {
        lists_.remove->setEnabled(true);
    }
}

void MixedPage::buildAndSend() {
    const std::vector<std::string> lines = pointLines();
    makeBody(lines, [this](std::size_t line) { selectLine(line); });
    makeRequest();
    clearAnswer();
    const int expected = answerLength(lines);
    if (startRequest()) {
        context().link.SendRequest(wire(), expected);
    }
}

void MixedPage::sendAsItStands() {
    makeBody(pointLines(), {});
    makeRequest();
    if (!context().link.port().isOpen()) {
        showStatus("Port Closed");
        return;
    }
    context().link.sendUnawaited(wire());
}

Bytes MixedPage::wire() const { return mixedWire(context().images, static_cast<std::uint8_t>(mode())); }

void MixedPage::switchOnAfterSend() { context().form.SetScenarioButtons(true); }

} // namespace varda::window
