#include "window/bench/scenario_expectations.h"

#include "core/files/profile_file.h"
#include "window/system/file_name.h"

#include <QDir>
#include <QFileInfo>

namespace varda::window {

ScenarioExpectations::ScenarioExpectations(QObject* parent) : QObject(parent) {}

void ScenarioExpectations::insert(std::size_t first, std::size_t count) {
    expected_.insert(first, count);
    emit linesChanged();
}

void ScenarioExpectations::remove(std::size_t first, std::size_t count) {
    expected_.remove(first, count);
    emit linesChanged();
}

void ScenarioExpectations::clear() {
    expected_.clear();
    name_.clear();
    problem_.reset();
    emit linesChanged();
}

void ScenarioExpectations::begin() {
    expected_.begin();
    emit newsCame();
}

/// One that cannot be read is no matter of who loads the scenario: nothing is expected then, and whoever
/// looks at what is expected is told why.
void ScenarioExpectations::loadBeside(const QString& scenario) {
    const QFileInfo file(scenario);
    const QString beside = file.dir().filePath(file.completeBaseName() + QStringLiteral(".expect"));
    if (!QFileInfo::exists(beside)) {
        return;
    }
    const ProfileFile read = ProfileFile::load(fileName(beside));
    if (read.problem()) {
        problem_ = *read.problem();
        emit newsCame();
    } else {
        take(read, QFileInfo(beside).fileName());
    }
}

void ScenarioExpectations::take(const ProfileFile& file, const QString& name) {
    expected_.load(file);
    expected_.begin();
    setName(name);
}

void ScenarioExpectations::setName(const QString& name) {
    name_ = name;
    problem_.reset();
    emit newsCame();
}

} // namespace varda::window
