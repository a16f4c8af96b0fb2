#include "window/bench/hit_model.h"

#include "core/pairs/packet_table.h"
#include "core/protocol/hex_text.h"
#include "core/runs/pair_hits.h"
#include "window/bench/frame_words.h"

#include <array>

namespace varda::window {

int HitModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int HitModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QString HitModel::textOf(std::size_t row, int column) const {
    switch (column) {
    case Pair:
        return QString::number(static_cast<qulonglong>(row) + 1);
    case Hits:
        return QString::number(hits_.of(row));
    case Words:
        return frameInWords(readHexRun(pairs_.requests()[row]).value_or(Bytes()));
    case Request:
        return QString::fromStdString(pairs_.requests()[row]);
    default:
        return QString::fromStdString(pairs_.answer(row));
    }
}

QVariant HitModel::data(const QModelIndex& index, int role) const {
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= pairs_.requests().size()) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return textOf(row, index.column());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((index.column() == Hits ? Qt::AlignRight : Qt::AlignLeft) |
                                   Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant HitModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount) {
        return {};
    }
    const std::array names = {tr("Pair"), tr("Hits"), tr("What it asks"), tr("Request"), tr("Answer")};
    return names.at(static_cast<std::size_t>(section));
}

void HitModel::refresh() {
    const int now = static_cast<int>(pairs_.requests().size());
    if (now > rows_) {
        beginInsertRows({}, rows_, now - 1);
        rows_ = now;
        endInsertRows();
    } else if (now < rows_) {
        beginRemoveRows({}, now, rows_ - 1);
        rows_ = now;
        endRemoveRows();
    }
    if (rows_ > 0) {
        emit dataChanged(index(0, 0), index(rows_ - 1, ColumnCount - 1));
    }
}

} // namespace varda::window
