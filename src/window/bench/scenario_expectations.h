#pragma once

#include "core/base/runtime_error.h"
#include "core/insight/expected_lines.h"

#include <QObject>
#include <QString>

#include <cstddef>
#include <optional>

namespace varda::inline core {
class ProfileFile;
class ScenarioLines;
} // namespace varda::core

namespace varda::window {

/// What is expected of the scenario that is loaded. It follows the list of its lines.
class ScenarioExpectations : public QObject {
    Q_OBJECT

public:
    explicit ScenarioExpectations(QObject* parent = nullptr);

    ExpectedLines& expected() { return expected_; }
    const ExpectedLines& expected() const { return expected_; }

    void insert(std::size_t first, std::size_t count);
    void remove(std::size_t first, std::size_t count);
    void clear();
    void begin();

    /// A scenario was loaded: where NAME.expect stands beside NAME.scn it is taken along.
    void loadBeside(const QString& scenario);
    void take(const ProfileFile& file, const QString& name);
    /// The file that they are from, or were saved to; empty where they are from none.
    const QString& name() const { return name_; }
    void setName(const QString& name);
    /// Why the file beside the scenario was not taken along, where one is there.
    const std::optional<RuntimeError>& problem() const { return problem_; }

signals:
    /// Other lines than before.
    void linesChanged();
    /// Something else is expected, or has become of them.
    void newsCame();

private:
    ExpectedLines expected_;
    QString name_;
    std::optional<RuntimeError> problem_;
};

} // namespace varda::window
