#pragma once

#include "core/base/clock.h"
#include "window/controls/events.h"
#include "window/controls/file_dialogs.h"
#include "window/controls/message_boxes.h"
#include "window/controls/saving.h"

#include <QWidget>

#include <functional>

class QTabWidget;

namespace varda::window {

/// A tab of a companion window that shows how things are whenever it is asked to.
class CompanionPart : public QWidget {
public:
    using QWidget::QWidget;

    /// Shows how things are now.
    virtual void refresh() = 0;
};

/// A window of tabs beside the main one, which goes on as it would without it. It has boxes and file dialogs
/// of its own, and closes by the key that opens it.
class CompanionWindow : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY(CompanionWindow)

public:
    ~CompanionWindow() override = default;

    /// Comes to the front, and shows what there is from now on.
    void open();
    /// There is something new to show: it is shown soon, much at once.
    void takeNewsSoon();

signals:
    void closed();

protected:
    /// @param clock its continuations pass a guard
    CompanionWindow(Clock& clock, Qt::Key key, const std::function<void()>& showHelp,
                    const QString& programFolder);

    /// Called once, when all of them are there.
    void setTabs(QTabWidget* tabs);
    /// The tab that is shown, or nullptr where it is none of these.
    CompanionPart* shownPart() const;

    virtual void opened() { refresh(); }
    virtual void takeNews() { refresh(); }
    /// Shows what the tab in front has to show.
    virtual void refresh();
    void closeEvent(QCloseEvent* event) override;

    MessageBoxes boxes_{this};
    Events events_{boxes_};
    FileDialogs files_;
    FileTalk talk_;
    Clock& clock_;

private:
    QTabWidget* tabs_ = nullptr;
    Wait news_;
};

} // namespace varda::window
