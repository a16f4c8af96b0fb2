#pragma once

#include "window/insight/insight_context.h"
#include "window/insight/sliced_export.h"

#include <QObject>

#include <functional>
#include <optional>
#include <string>
#include <vector>

class QMenu;

namespace varda::window {

/// Takes lines of a trace along: into a file of one of four forms, which a dialog asks for. Many lines take a
/// while, in which the window goes on.
class TraceExporter : public QObject {
    Q_OBJECT

public:
    using Lines = std::function<std::vector<Trace::Number>()>;

    TraceExporter(const InsightContext& context, QObject* parent)
        : QObject(parent), context_(context), export_(context.clock, [this] { emit wentOn(); }) {}

    /// Adds an entry for each form.
    void addEntries(QMenu* menu, const QString& namePrefix, const Lines& lines);

    /// How much of an export that is under way is done.
    std::optional<int> percent() const { return export_.percent(); }
    /// Leaves the file as it was.
    void cancel();

signals:
    void wentOn();
    void saved(const QString& path, qulonglong lines);

private:
    void chooseFile(const std::vector<Trace::Number>& lines, TraceForm form, const QString& extension);
    void write(const QString& path, const std::vector<Trace::Number>& lines, TraceForm form);
    void save(const QString& path, std::string content, std::size_t lines);

    InsightContext context_;
    SlicedExport export_;
};

} // namespace varda::window
