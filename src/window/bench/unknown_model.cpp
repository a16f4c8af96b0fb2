#include "window/bench/unknown_model.h"

#include "core/protocol/hex_text.h"
#include "core/runs/unknown_requests.h"
#include "window/bench/frame_words.h"

#include <array>

namespace varda::window {

int UnknownModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int UnknownModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

QString UnknownModel::textOf(const UnknownRequest& request, int column) {
    switch (column) {
    case Count:
        return QString::number(request.count);
    case Request:
        return QString::fromStdString(hexSpaced(request.bytes));
    case Words:
        return frameInWords(request.bytes);
    default:
        return answeredInWords(request);
    }
}

/// The answers that the port did not take are told however the last one went.
QString UnknownModel::answeredInWords(const UnknownRequest& request) {
    const QString last = request.isAnswered ? tr("from memory") : tr("no");
    return request.notSent == 0 ? last : tr("%1; the port refused %2").arg(last).arg(request.notSent);
}

QVariant UnknownModel::data(const QModelIndex& index, int role) const {
    const auto& requests = unknown_.requests();
    const auto row = static_cast<std::size_t>(index.row());
    if (!index.isValid() || row >= requests.size()) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return textOf(requests[row], index.column());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((index.column() == Count ? Qt::AlignRight : Qt::AlignLeft) |
                                   Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant UnknownModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount) {
        return {};
    }
    const std::array names = {tr("Count"), tr("Request"), tr("What it is"), tr("Answered")};
    return names.at(static_cast<std::size_t>(section));
}

void UnknownModel::refresh() {
    const int now = static_cast<int>(unknown_.requests().size());
    if (now < rows_) {
        reset();
    } else if (now > rows_) {
        beginInsertRows({}, rows_, now - 1);
        rows_ = now;
        endInsertRows();
    }
    if (rows_ > 0) {
        emit dataChanged(index(0, 0), index(rows_ - 1, ColumnCount - 1));
    }
}

void UnknownModel::reset() {
    beginResetModel();
    rows_ = static_cast<int>(unknown_.requests().size());
    endResetModel();
}

} // namespace varda::window
