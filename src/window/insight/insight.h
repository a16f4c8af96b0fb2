#pragma once

#include "core/insight/link_statistics.h"
#include "core/insight/register_names.h"
#include "core/insight/register_watch.h"
#include "core/insight/trace.h"
#include "core/insight/trace_recorder.h"
#include "core/link/mscomm.h"
#include "window/insight/frame_caret.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <string>

class QAbstractButton;

namespace varda::inline core {
class SerialLink;
} // namespace varda::core

namespace varda::window {

class InsightWindow;

/// The trace of the open port and its window. While the window is closed nothing is written down; what was
/// seen before stays, and is there when it is opened again.
class Insight : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY(Insight)

public:
    struct Parts {
        const PacketTable& pairs;
        QAbstractButton* button; ///< opens and closes the window, and shows whether it is open
        QWidget& pages;          ///< whose frames are explained
        FrameCaret::RequestOf requestOf;
        std::function<int()> wantedPeriod;
        std::function<void()> showHelp;
        QString programFolder;
    };

    /// @param clock its continuations pass a guard
    explicit Insight(Clock& clock);
    ~Insight() override;

    /// The same lines, told to the trace.
    MSComm::LineFactory traced(MSComm::LineFactory makeLine);
    /// Called once, before anybody else observes the link: who sends when told would come first otherwise.
    void observe(SerialLink& link);
    /// A fault of our own doing to what is sent next.
    void doneOnPurpose(const std::string& what) { recorder_.doneOnPurpose(what); }
    /// Called once, when all pages stand.
    void attach(const Parts& parts);

    /// The window, or nullptr where it never was open.
    InsightWindow* window() const { return window_.get(); }
    void close();

private:
    void setOpen(bool isOpen);
    void record(bool isOn);
    void makeWindow();

    Clock& clock_;
    SerialLink* link_ = nullptr;
    Trace trace_;
    TraceRecorder recorder_{trace_, clock_};
    LinkStatistics statistics_;
    RegisterWatch watch_;
    RegisterNames names_;
    std::optional<Parts> parts_;
    std::unique_ptr<InsightWindow> window_;
};

} // namespace varda::window
