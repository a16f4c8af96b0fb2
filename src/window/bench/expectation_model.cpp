#include "window/bench/expectation_model.h"

#include "core/protocol/frame_text.h"
#include "window/bench/frame_words.h"
#include "window/bench/scenario_expectations.h"

#include <QFont>

#include <array>
#include <utility>

namespace varda::window {
namespace {

using ExpectedLine = ExpectedLines::Line;

QString countOf(std::uint64_t count) { return count == 0 ? QString() : QString::number(count); }

} // namespace

ExpectationModel::ExpectationModel(ScenarioExpectations& expectations,
                                   std::function<std::string(int row)> lineText, QObject* parent)
    : QAbstractTableModel(parent), expectations_(expectations), lineText_(std::move(lineText)) {
    connect(&expectations, &ScenarioExpectations::linesChanged, this, &ExpectationModel::reset);
    reset();
}

int ExpectationModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int ExpectationModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : ColumnCount;
}

/// Not by its colour alone.
QString ExpectationModel::result(int row) const {
    const ExpectedLine& line = expectations_.expected().lines()[static_cast<std::size_t>(row)];
    if (!line.flaw.empty()) {
        return tr("not understood");
    }
    return !line.isJudged ? QString() : line.why.empty() ? tr("\u2713 right") : tr("\u2717 wrong");
}

QString ExpectationModel::textOf(int row, int column) const {
    const ExpectedLine& line = expectations_.expected().lines()[static_cast<std::size_t>(row)];
    switch (column) {
    case Line:
        return QString::number(row + 1);
    case Request:
        return frameInWords(bytesOfText(lineText_(row)));
    case Wanted:
        return QString::fromStdString(line.text.wanted);
    case Limit:
        return QString::fromStdString(line.text.limit);
    case Result:
        return result(row);
    case Why:
        return QString::fromStdString(line.flaw.empty() ? line.why : line.flaw);
    case Right:
        return countOf(line.right);
    default:
        return countOf(line.wrong);
    }
}

QVariant ExpectationModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= expectations_.expected().lines().size()) {
        return {};
    }
    const ExpectedLine& line = expectations_.expected().lines()[row];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return textOf(index.row(), index.column());
    case Qt::ToolTipRole:
        return index.column() == Request ? QString::fromStdString(lineText_(index.row()))
                                         : textOf(index.row(), index.column());
    case Qt::FontRole: {
        QFont font;
        font.setBold(true);
        const bool isMark = index.column() == Result && (!line.flaw.empty() || !line.why.empty());
        return isMark ? QVariant(font) : QVariant();
    }
    default:
        return {};
    }
}

QVariant ExpectationModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount) {
        return {};
    }
    const std::array names = {tr("Line"),   tr("Request"), tr("Expected"), tr("Limit ms"),
                              tr("Result"), tr("Why"),     tr("Right"),    tr("Wrong")};
    return names.at(static_cast<std::size_t>(section));
}

Qt::ItemFlags ExpectationModel::flags(const QModelIndex& index) const {
    const bool isText = index.column() == Wanted || index.column() == Limit;
    return QAbstractTableModel::flags(index) | (isText ? Qt::ItemIsEditable : Qt::NoItemFlags);
}

/// What is not understood stays as well, and says why: it may be halfway typed.
bool ExpectationModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || index.row() >= rows_ || role != Qt::EditRole) {
        return false;
    }
    const auto row = static_cast<std::size_t>(index.row());
    ExpectationText text = expectations_.expected().lines()[row].text;
    (index.column() == Limit ? text.limit : text.wanted) = value.toString().trimmed().toStdString();
    expectations_.expected().setText(row, std::move(text));
    emit dataChanged(this->index(index.row(), 0), this->index(index.row(), ColumnCount - 1));
    return true;
}

void ExpectationModel::reset() {
    beginResetModel();
    rows_ = static_cast<int>(expectations_.expected().lines().size());
    endResetModel();
}

void ExpectationModel::refresh() {
    if (rows_ > 0) {
        emit dataChanged(index(0, Result), index(rows_ - 1, ColumnCount - 1));
    }
}

} // namespace varda::window
