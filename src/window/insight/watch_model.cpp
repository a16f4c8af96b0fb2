#include "window/insight/watch_model.h"

#include "core/insight/field_words.h"

#include <algorithm>
#include <array>
#include <functional>
#include <numeric>
#include <utility>

namespace varda::window {
namespace {

QString text(const std::string& words) { return QString::fromStdString(words); }

QString valuesOf(const WatchedRegister& watched) {
    QStringList values;
    for (const WatchedRegister::Change& change : watched.history) {
        values.append(QString::number(change.value));
    }
    return values.join(QStringLiteral(", "));
}

bool isRight(int column) {
    return column == WatchModel::Station || column == WatchModel::Decimal || column == WatchModel::Signed ||
           column == WatchModel::Age || column == WatchModel::Changes;
}

} // namespace

int WatchModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(order_.size());
}

int WatchModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QString WatchModel::ageOf(const WatchedRegister& watched) const {
    using namespace std::chrono;
    const auto age = duration_cast<milliseconds>(clock_.now() - watched.seen);
    const auto whole = duration_cast<seconds>(age).count();
    constexpr int minute = 60;
    return age < seconds(minute) ? tr("%1 s").arg(whole)
                                 : tr("%1 min %2 s").arg(whole / minute).arg(whole % minute);
}

QString WatchModel::textOf(const WatchedRegister& watched, int column) const {
    const NumberForms forms = numberForms(watched.point.access, watched.value);
    const std::string_view name = names_.find(watched.point);
    switch (column) {
    case Station:
        return QString::number(watched.station);
    case Register:
        return text(nameOf(watched.point));
    case RegisterName:
        return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
    case Decimal:
        return text(watched.point.access == Access::Bit ? bitValue(watched.value) : forms.decimal);
    case Signed:
        return text(forms.withSign);
    case Hex:
        return text(forms.hex);
    case Binary:
        return text(forms.binary);
    case Age:
        return ageOf(watched);
    case Changes:
        return QString::number(static_cast<qulonglong>(watched.changes));
    default:
        return {};
    }
}

QVariant WatchModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount() || order_.size() > watch_.size()) {
        return {};
    }
    const WatchedRegister& watched = at(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return textOf(watched, index.column());
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return index.column() == History ? valuesOf(watched) : textOf(watched, index.column());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((isRight(index.column()) ? Qt::AlignRight : Qt::AlignLeft) |
                                   Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant WatchModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    const std::array names = {tr("Station"), tr("Register"),   tr("Name"),   tr("Decimal"),
                              tr("Signed"),  tr("Hex"),        tr("Binary"), tr("Seen ago"),
                              tr("Changes"), tr("Last values")};
    return section >= 0 && section < ColumnCount ? names.at(static_cast<std::size_t>(section)) : QString();
}

void WatchModel::refresh() {
    addNew();
    if (rowCount() > 0) {
        emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    }
}

/// New registers stand between the others: those that come between the same two are added at once.
void WatchModel::addNew() {
    const auto place = [this](std::size_t row) {
        return std::pair(watch_.at(row).station, watch_.at(row).point);
    };
    const std::less<> before;
    std::vector<std::size_t> added(watch_.size() - order_.size());
    std::iota(added.begin(), added.end(), order_.size());
    std::ranges::sort(added, before, place);
    for (auto next = added.begin(); next != added.end();) {
        const auto behind = std::ranges::lower_bound(order_, place(*next), before, place);
        const auto end = behind == order_.end()
                             ? added.end()
                             : std::ranges::lower_bound(next, added.end(), place(*behind), before, place);
        const int first = static_cast<int>(behind - order_.begin());
        beginInsertRows({}, first, first + static_cast<int>(end - next) - 1);
        order_.insert(behind, next, end);
        endInsertRows();
        next = end;
    }
}

void WatchModel::clear() {
    beginResetModel();
    order_.clear();
    endResetModel();
}

} // namespace varda::window
