#pragma once

#include "core/insight/trace.h"
#include "window/controls/sliced_work.h"
#include "window/insight/explained.h"
#include "window/insight/insight_context.h"
#include "window/insight/sliced_export.h"

#include <QWidget>

#include <memory>
#include <optional>

namespace varda::inline core {
class TraceSearch;
} // namespace varda::core

namespace varda::window {

namespace Ui {
class TracePanel;
}
class RecordingExporter;
class TraceExporter;
class TraceModel;

/// "Trace": the lines of the trace with what can be done to them, and below them an explanation of one.
class TracePanel : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY(TracePanel)

public:
    explicit TracePanel(const InsightContext& context, QWidget* parent = nullptr);
    ~TracePanel() override;

    /// Takes over what has changed in the trace.
    void takeNews();
    /// Names of registers are other ones.
    void showNames();
    /// Explains bytes that stand elsewhere. @param caret the byte that is looked at
    void explain(const Explained& explained, std::size_t caret);

private:
    void bindSearch();
    void bindButtons();
    void bindExport();
    void addTableActions();
    void filter();
    void fillOn();
    void find(bool isForward);
    void showFound(const TraceSearch& search, bool isForward);
    void pause(bool isHeld);
    void clear();
    bool hasErrand() const;
    void cancelWork();
    void mark();
    void copy(TraceForm form);
    void explainLine(Trace::Number number);
    void refreshExplanation();
    std::optional<int> partnerRow() const;
    void offerPartner();
    void goToPartner();
    void tell(const QString& news);
    void showState();
    QString shownLines() const;
    QString workInWords() const;

    InsightContext context_;
    std::unique_ptr<Ui::TracePanel> ui_;
    TraceModel* model_ = nullptr;
    TraceExporter* exporter_ = nullptr;
    RecordingExporter* recordings_ = nullptr;
    SlicedWork filling_;
    SlicedWork searching_;
    SlicedExport copying_;
    std::optional<Trace::Number> explained_; ///< the line below; none for bytes that stand elsewhere
    QString news_;                           ///< of what was done last
};

} // namespace varda::window
