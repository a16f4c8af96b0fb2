#pragma once

#include "core/insight/trace_export.h"
#include "window/insight/insight_context.h"

#include <QObject>

#include <functional>
#include <utility>
#include <vector>

class QMenu;

namespace varda::window {

/// Takes lines of a trace along: into a file of one of four forms, which a dialog asks for.
class TraceExporter : public QObject {
    Q_OBJECT

public:
    using Lines = std::function<std::vector<Trace::Number>()>;

    TraceExporter(InsightContext context, QObject* parent) : QObject(parent), context_(std::move(context)) {}

    /// Adds an entry for each form.
    void addEntries(QMenu* menu, const QString& namePrefix, const Lines& lines);

signals:
    void saved(const QString& path, int lines);

private:
    void chooseFile(const std::vector<Trace::Number>& lines, TraceForm form);
    void save(const QString& path, const std::vector<Trace::Number>& lines, TraceForm form);

    InsightContext context_;
};

} // namespace varda::window
