#pragma once

#include "core/pairs/packet_table.h"
#include "window/controls/page_context.h"
#include "window/simulator/packet_list_model.h"

#include <QObject>

#include <functional>

class QListView;

namespace varda::window {

class FileDialogs;

namespace Ui {
class SimulationPage;
}

/// The packet table of the simulation page with its two lists, its buttons and its files.
class PacketLists : public QObject {
    Q_OBJECT

public:
    /// @param ui the page's form @param reload runs with the row of a pair that is to be edited again
    PacketLists(const PageContext& context, FileDialogs& files, Ui::SimulationPage& ui, QWidget* page,
                std::function<void(int row)> reload);

    const PacketTable& table() const { return table_; }
    /// Replaces the pairs by those of a file, as the load button does.
    void load(const QString& path);
    void addPair(const std::string& request, const std::string& answer);

    /// Selects a pair in both lists; -1 selects none.
    void selectPair(int pair);

    /// Buttons that start off when the mode is entered, though the table may hold pairs.
    void enterMode();
    /// The start button follows whether the table has pairs and the port is open.
    void switchStartButton();

signals:
    /// The table has changed.
    void changed(const varda::PacketTableChange& change);

private:
    void bind(std::function<void(int row)> reload);
    void pairChosen(QListView* from, QListView* to);
    void switchEditButtons();
    void cmdSimDelete_Click();
    void cmdSimClear_Click();
    void cmdSaveSimPacket_Click();
    void cmdLoadSimPacket_Click();
    void saveTo(const QString& path);
    void saved(bool complete);
    void loadFrom(const QString& path);

    PageContext context_;
    FileDialogs& files_;
    Ui::SimulationPage& ui_;
    PacketTable table_;
    PacketListModel requests_{table_, PacketTableChange::List::Requests};
    PacketListModel answers_{table_, PacketTableChange::List::Answers};
};

} // namespace varda::window
