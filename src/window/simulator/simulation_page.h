#pragma once

#include "core/link/routes.h"
#include "core/pairs/packet_builders.h"
#include "core/pairs/sim_kinds.h"
#include "window/controls/mode_page.h"
#include "window/controls/page_context.h"
#include "window/controls/register_fields.h"
#include "window/simulator/packet_lists.h"
#include "window/simulator/request_view.h"

#include <functional>
#include <memory>
#include <optional>

namespace varda::window {

namespace Ui {
class SimulationPage;
}
class FileDialogs;

/// "Simulation": prepares pairs of request and answer, keeps them in the packet table, and answers from it.
class SimulationPage : public ModePage {
    Q_OBJECT
    Q_DISABLE_COPY(SimulationPage)

public:
    /// What the page asks of the window beyond its controls.
    struct Surroundings {
        FileDialogs& files;
        /// Sends what stands on one of the mixed pages.
        std::function<void(Mode mixedMode)> sendMixedRequest;
    };

    SimulationPage(const PageContext& context, const Surroundings& surroundings, QWidget* parent = nullptr);
    ~SimulationPage() override;

    Mode mode() const override { return Mode::Simulation; }
    /// Bit reading, stations 255, editing buttons off; the packet table stays.
    void enterMode() override;

    /// The start button follows whether the table has pairs and the port is open. It does nothing when it is
    /// pressed: answering depends on the mode alone.
    void switchStartButton() { lists_->switchStartButton(); }

    /// Replaces the prepared pairs by those of a file.
    void loadPackets(const QString& path) { lists_->load(path); }
    /// Appends a prepared pair, as if it had been typed.
    void addPair(const std::string& request, const std::string& answer);
    /// Selects a prepared pair.
    void showPair(std::size_t row) { lists_->selectPair(static_cast<int>(row)); }
    /// Whether points of a mixed request are collected.
    bool hasPoints() const;

    /// The prepared pairs.
    const PacketTable& pairs() const;
    /// To be told of the requests that come in.
    LinkObserver& requestView() { return requestView_; }

signals:
    /// The prepared pairs have changed.
    void pairsChanged(const varda::PacketTableChange& change);

private:
    void bind();
    void prepareMode();
    void cbSimMode_Change();
    /// Where points were collected, asks whether to register the pair that stands in the texts.
    /// @param accepted runs first on Yes @param next runs after either answer
    void offerToRegister(const std::function<void()>& accepted, const std::function<void()>& next);
    /// Adds the pair that stands in the texts as it is; nothing where one of them is empty.
    void registerPair();
    void changeMode();
    void showFieldsOf(const SimKind& kind);
    void cbSimModeS_Click();
    void cbSimReg_Change();
    void cbSimLength_Click();
    void rebuildRequest();
    /// The count of a read; nothing where the text is none of 1 .. 255.
    std::optional<int> typedCount() const;
    void cmdSimAddListBox_Click();
    void cmdSimDelListBox_Click();
    void cmdSimSendDataInputOK_Click();
    void cmdSimInputOK_Click();
    void lstSimReceive_DblClick(int row);
    void reload(const SimKind& kind, const PreparedRequest& request, const std::string& answer);

    const SimKind* kind() const;
    SimFields fields() const;
    SimPosition position() const;
    void showPosition(const SimPosition& position);
    std::string newPoint() const;
    bool onOffIsChosen() const;
    void ShowSimReceive(const std::string& text);
    void ShowSimSend(const std::string& text);

    PageContext context_;
    std::function<void(Mode mixedMode)> sendMixedRequest_;
    std::unique_ptr<Ui::SimulationPage> ui_;
    RegisterFields register_;
    PacketLists* lists_;
    RequestView requestView_;
};

} // namespace varda::window
