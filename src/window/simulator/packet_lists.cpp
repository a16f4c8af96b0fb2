#include "window/simulator/packet_lists.h"

#include "core/base/runtime_error.h"
#include "core/files/profile_file.h"
#include "core/link/serial_link.h"
#include "core/pairs/packet_file.h"
#include "ui_simulation_page.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/form.h"
#include "window/controls/frame_line_delegate.h"
#include "window/controls/profile_files.h"
#include "window/controls/show_text.h"
#include "window/system/file_name.h"

#include <QShortcut>

#include <algorithm>
#include <utility>

namespace varda::window {
namespace {

FileDialogs::Kind packetFiles() { return {QStringLiteral(".ini"), QStringLiteral("Data")}; }

/// The row that is marked in a list; -1 where none is. The list's current row may be another one: it is set
/// as soon as the list gets the focus.
int selectedRow(const QListView* list) {
    const QModelIndexList rows = list->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

/// The entry of a list that may be shorter than the other one.
bool holdsText(const std::vector<std::string>& entries, int row) {
    return row >= 0 && row < static_cast<int>(entries.size()) &&
           !entries[static_cast<std::size_t>(row)].empty();
}

} // namespace

PacketLists::PacketLists(const PageContext& context, FileDialogs& files, Ui::SimulationPage& ui,
                         QWidget* page, std::function<void(int row)> reload)
    : QObject(page), context_(context), files_(files), ui_(ui) {
    table_.setWatcher({[this](const PacketTableChange& change) {
                           requests_.beginChange(change);
                           answers_.beginChange(change);
                       },
                       [this](const PacketTableChange& change) {
                           requests_.endChange(change);
                           answers_.endChange(change);
                           emit changed(change);
                       }});
    ui_.lstSimReceive->setModel(&requests_);
    ui_.lstSimSend->setModel(&answers_);
    for (QListView* const list : {ui_.lstSimReceive, ui_.lstSimSend}) {
        new FrameLineDelegate(list); // whose width is the longest packet's: none ends in dots
    }
    bind(std::move(reload));
}

void PacketLists::addPair(const std::string& request, const std::string& answer) {
    table_.addPair(request, answer);
    ui_.cmdSaveSimPacket->setEnabled(true);
    switchStartButton();
}

void PacketLists::enterMode() {
    for (QPushButton* const button : {ui_.cmdSimDelete, ui_.cmdSimClear, ui_.cmdSaveSimPacket}) {
        button->setEnabled(false);
    }
}

void PacketLists::bind(std::function<void(int row)> reload) {
    Events& events = context_.events;
    events.click(ui_.cmdSimDelete, [this] { cmdSimDelete_Click(); });
    events.click(ui_.cmdSimClear, [this] { cmdSimClear_Click(); });
    events.click(ui_.cmdSaveSimPacket, [this] { cmdSaveSimPacket_Click(); });
    events.click(ui_.cmdLoadSimPacket, [this] { cmdLoadSimPacket_Click(); });
    for (QListView* const list : {ui_.lstSimReceive, ui_.lstSimSend}) {
        QListView* const other = list == ui_.lstSimReceive ? ui_.lstSimSend : ui_.lstSimReceive;
        connect(list, &QListView::clicked, this, [this, list, other] { pairChosen(list, other); });
        connect(list->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this, list, other] {
            if (selectedRow(list) >= 0) { // chosen with the keyboard, or by the program
                pairChosen(list, other);
            }
        });
    }
    const auto reloadSelected = [this, reload = std::move(reload)] {
        if (const int row = selectedRow(ui_.lstSimReceive); row >= 0) {
            context_.events.guard([&reload, row] { reload(row); });
        }
    };
    connect(ui_.lstSimReceive, &QListView::doubleClicked, this, reloadSelected);
    auto* const enter =
        new QShortcut(Qt::Key_Return, ui_.lstSimReceive, nullptr, nullptr, Qt::WidgetShortcut);
    connect(enter, &QShortcut::activated, this, reloadSelected); // the double-click of the keyboard
}

void PacketLists::switchStartButton() {
    ui_.cmdSimStart->setEnabled(!table_.requests().empty() && context_.link.port().isOpen());
}

void PacketLists::selectPair(int pair) {
    ui_.lstSimReceive->setCurrentIndex(requests_.index(pair));
    ui_.lstSimSend->setCurrentIndex(answers_.index(pair));
    if (pair >= 0) {
        switchEditButtons(); // selecting is a click, also of the pair that is selected already
    }
}

void PacketLists::pairChosen(QListView* from, QListView* to) {
    to->setCurrentIndex(to->model()->index(selectedRow(from), 0));
    switchEditButtons();
}

void PacketLists::switchEditButtons() {
    ui_.cmdSimDelete->setEnabled(!table_.requests().empty());
    ui_.cmdSimClear->setEnabled(!table_.requests().empty());
}

void PacketLists::cmdSimDelete_Click() {
    const int request = selectedRow(ui_.lstSimReceive);
    const int answer = selectedRow(ui_.lstSimSend);
    if (holdsText(table_.requests(), request)) {
        table_.removeRequest(static_cast<std::size_t>(request));
    }
    if (holdsText(table_.answers(), answer)) {
        table_.removeAnswer(static_cast<std::size_t>(answer));
    }
    selectPair(std::min(request, requests_.rowCount() - 1));
    ui_.cmdSaveSimPacket->setEnabled(!table_.requests().empty());
    ui_.cmdSimStart->setEnabled(!table_.requests().empty());
    switchEditButtons();
}

void PacketLists::cmdSimClear_Click() {
    context_.form.ask("Do you want to clear?", "Confirm", [this](bool yes) {
        if (yes) {
            table_.clear();
            ui_.txtSimReceive->clear();
            ui_.txtSimSend->clear();
            ui_.txtSimSendData->clear();
        }
    });
}

void PacketLists::cmdSaveSimPacket_Click() {
    files_.chooseToSave(packetFiles(), [this](const QString& path) {
        context_.events.guard([this, &path] { saveTo(path); });
    });
}

void PacketLists::saveTo(const QString& path) {
    showText(ui_.txtSimStatus, "");
    const std::string name = fileName(path);
    ProfileFile file = ProfileFile::load(name);
    const bool complete = storePackets(table_, file);
    saveOrTell(file, name, context_, [this, complete] { saved(complete); });
}

void PacketLists::saved(bool complete) {
    if (!complete) {
        selectPair(answers_.rowCount()); // the request whose answer is missing
        RuntimeError error = subscriptOutOfRange();
        error.advise("The marked request has no answer. Remove it, and save again.");
        throw error;
    }
    selectPair(requests_.rowCount() - 1); // each pair is visited in turn, the last stays selected
    showText(ui_.txtSimStatus, "Saved completely !!!");
}

void PacketLists::cmdLoadSimPacket_Click() {
    files_.chooseToOpen(packetFiles(), [this](const QString& path) { load(path); });
}

void PacketLists::load(const QString& path) {
    context_.events.guard([this, &path] { loadFrom(path); });
}

void PacketLists::loadFrom(const QString& path) {
    showText(ui_.txtSimStatus, "");
    const ProfileFile file = ProfileFile::load(fileName(path));
    if (tellWhyUnreadable(file, context_)) {
        return;
    }
    switch (loadPackets(table_, file)) {
    case PacketLoad::NoText:
    case PacketLoad::Corrupted:
        context_.form.showMessage(packetFileCorrupted, "Confirm");
        break;
    case PacketLoad::Complete:
        ui_.cmdSimStart->setEnabled(true);
        break;
    case PacketLoad::NoTotal:
    case PacketLoad::Incomplete:
        break;
    }
}

} // namespace varda::window
