#include "window/master/mixed_page.h"

#include "core/link/serial_link.h"
#include "core/protocol/frame_image.h"
#include "core/protocol/point_list.h"
#include "window/controls/drop_down_list.h"
#include "window/controls/events.h"
#include "window/controls/form.h"
#include "window/controls/lists.h"

#include <QComboBox>
#include <QListWidget>
#include <QPushButton>

namespace varda::window {

void MixedPage::adopt(const Controls& controls, const ListControls& list) {
    MasterPage::adopt(controls);
    list_ = list;
    Events& events = context().events;
    // a key alone empties nothing: the lists follow when the text changes
    events.field(controls.registerLists.kind, [this] { fields().offerNumbers(); },
                 {.keyPress = [] {}, .lostFocus = {}});
    events.field(controls.registerLists.number, [] {}); // a number is read when the point is added
    events.field(controls.registerLists.bit, [this] { bitChosen(); });
    if (controls.registerLists.count != nullptr) {
        events.field(controls.registerLists.count, [this] { countChosen(); });
    }
    events.click(list.add, [this] { addLine(); });
    events.click(list.remove, [this] { removeLine(); });
    connect(list.lines, &QListWidget::itemSelectionChanged, this, [this] { lineChosen(); });
    connect(list.lines, &QListWidget::itemClicked, this, [this] { lineChosen(); });
}

void MixedPage::prepareMode() {
    stopRepeating();
    chooseBitOption();
    fields().offerBits();
    image().set(offset::length, 0);
}

void MixedPage::selectLine(std::size_t line) {
    list_.lines->setCurrentRow(static_cast<int>(line));
    lineChosen(); // a selection by the program is a click too, also of the line that is selected already
}

StationTexts MixedPage::stationTexts() const {
    return {stationText(offset::destination), stationText(offset::source)};
}

void MixedPage::bitChosen() {
    if (!fields().hasKind() || !fields().hasNumber()) {
        fields().lists().bit->clearEditText();
    }
}

void MixedPage::countChosen() {
    if (!fields().readableCount()) {
        fields().lists().count->clearEditText();
    }
}

std::vector<std::string> MixedPage::pointLines() const { return linesOf(list_.lines); }

bool MixedPage::pointIsNamed() const { return fields().isNamed(access()) && fields().hasCount(); }

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
        list_.lines->addItem(QString::fromStdString(line));
    }
}

QListWidgetItem* MixedPage::markedLine() const {
    const QList<QListWidgetItem*> marked = list_.lines->selectedItems();
    return marked.isEmpty() || marked.first()->text().isEmpty() ? nullptr : marked.first();
}

void MixedPage::removeLine() {
    delete markedLine();
    list_.remove->setEnabled(false);
}

void MixedPage::lineChosen() {
    if (markedLine() != nullptr) {
        list_.remove->setEnabled(true);
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
