#pragma once

#include "window/controls/companion_window.h"
#include "window/insight/insight_context.h"

#include <memory>

namespace varda::window {

namespace Ui {
class WatchPanel;
}
class WatchModel;

/// "Watch": every register that was seen, with its latest value.
class WatchPanel : public CompanionPart {
    Q_OBJECT
    Q_DISABLE_COPY(WatchPanel)

public:
    explicit WatchPanel(const InsightContext& context, QWidget* parent = nullptr);
    ~WatchPanel() override;

    /// Shows how things are now.
    void refresh() final;
    /// Takes the names of registers from a file; what is wrong with it is told.
    void loadNames(const QString& path);

signals:
    void namesChanged();

private:
    void clear();
    void chooseNames();
    void showState();

    InsightContext context_;
    std::unique_ptr<Ui::WatchPanel> ui_;
    WatchModel* model_ = nullptr;
    QString namesFrom_; ///< how many there are, and from which file
};

} // namespace varda::window
