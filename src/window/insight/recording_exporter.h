#pragma once

#include "core/insight/trace.h"
#include "core/recordings/recording.h"
#include "window/insight/insight_context.h"

#include <QObject>

#include <functional>
#include <vector>

class QMenu;

namespace varda::inline core {
class ProfileFile;
} // namespace varda::core

namespace varda::window {

/// Makes files that this program reads of the lines of a trace: a scenario that asks the same, what to expect
/// of its answers, and prepared pairs of each request with the answer that it got.
class RecordingExporter : public QObject {
    Q_OBJECT

public:
    using Lines = std::function<std::vector<Trace::Number>()>;

    RecordingExporter(const InsightContext& context, QObject* parent) : QObject(parent), context_(context) {}

    /// Adds an entry for each kind of file.
    void addEntries(QMenu* menu, const QString& namePrefix, const Lines& lines);

signals:
    void told(const QString& news);

private:
    /// Writes entries into a file. @return what there is to tell of them
    using Store = QString (*)(const Recording& recording, ProfileFile& file);
    struct Form {
        const char* name;
        const char* caption;
        const char* extension;
        Store store;
    };

    void chooseFile(const std::vector<Trace::Number>& lines, const Form& form);
    void save(const QString& path, const Recording& recording, Store store);

    InsightContext context_;
};

} // namespace varda::window
