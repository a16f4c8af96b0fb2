#include "window/insight/field_model.h"

#include "core/insight/field_words.h"

#include <algorithm>
#include <array>

namespace varda::window {
namespace {

QString text(const std::string& words) { return QString::fromStdString(words); }

/// A station has no sign.
bool hasForm(const Field& field, int column) {
    const bool isNumber = field.role != FieldRole::Body && field.role != FieldRole::Behind;
    return column == FieldModel::Signed ? field.role == FieldRole::Value : isNumber;
}

QString numberForm(const Field& field, int column) {
    constexpr std::size_t wordBytes = 2;
    const Access size = field.length == wordBytes ? Access::Word : Access::Bit;
    const NumberForms forms = numberForms(size, field.number);
    switch (column) {
    case FieldModel::Decimal:
        return text(forms.decimal);
    case FieldModel::Signed:
        return text(forms.withSign);
    case FieldModel::Hex:
        return text(forms.hex);
    default:
        return text(forms.binary);
    }
}

/// The flaw that shows in a field of this role.
std::optional<Fault> faultIn(FieldRole role) {
    switch (role) {
    case FieldRole::Check:
        return Fault::WrongCheck;
    case FieldRole::Length:
        return Fault::WrongLength;
    case FieldRole::Command:
        return Fault::UnknownCommand;
    case FieldRole::Behind:
        return Fault::MoreBytes;
    default:
        return std::nullopt;
    }
}

} // namespace

int FieldModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int FieldModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

void FieldModel::showFrames(const Bytes& bytes, const Bytes& request) {
    beginResetModel();
    frames_ = decodeBurst(bytes, request);
    rows_.clear();
    for (std::size_t frame = 0; frame < frames_.size(); ++frame) {
        addRows(frame);
    }
    endResetModel();
}

void FieldModel::addRows(std::size_t frame) {
    rows_.push_back({.frame = frame});
    for (const Fault fault : frames_[frame].faults) {
        rows_.push_back({.frame = frame, .fault = fault});
    }
    for (const Field& field : frames_[frame].fields) {
        rows_.push_back({.frame = frame, .field = &field});
    }
}

void FieldModel::showNames() {
    if (!rows_.empty()) {
        emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    }
}

ByteRange FieldModel::bytesOf(int row) const {
    const Row& shown = rows_.at(static_cast<std::size_t>(row));
    if (shown.field != nullptr) {
        return {shown.field->place, shown.field->length};
    }
    const DecodedFrame& frame = frames_[shown.frame];
    return {frame.begin, frame.end - frame.begin};
}

std::optional<int> FieldModel::rowOf(std::size_t byte) const {
    const auto row = std::ranges::find_if(rows_, [byte](const Row& shown) {
        return shown.field != nullptr && byte >= shown.field->place &&
               byte < shown.field->place + shown.field->length;
    });
    return row != rows_.end() ? std::optional(static_cast<int>(row - rows_.begin())) : std::nullopt;
}

std::vector<ByteRange> FieldModel::flawedBytes() const {
    std::vector<ByteRange> ranges;
    for (const Row& row : rows_) {
        if (row.field != nullptr && isFlawed(row)) {
            ranges.push_back({row.field->place, row.field->length});
        }
    }
    return ranges;
}

bool FieldModel::isFlawed(const Row& row) const {
    if (row.field == nullptr) {
        return row.fault.has_value();
    }
    const auto fault = faultIn(row.field->role);
    return row.field->isCut() || (fault && frames_[row.frame].has(*fault));
}

QString FieldModel::nameOf(const Row& row) const {
    const QString name = row.field != nullptr ? text(fieldName(*row.field, names_))
                         : row.fault          ? tr("Flaw")
                                              : tr("Frame");
    return isFlawed(row) ? QStringLiteral("! ") + name : name;
}

QString FieldModel::valueOf(const Row& row) const {
    const DecodedFrame& frame = frames_[row.frame];
    return row.field != nullptr ? text(fieldValue(frame, *row.field, names_))
           : row.fault          ? text(faultInWords(frame, *row.fault))
                                : text(kindInWords(frame.kind));
}

QString FieldModel::placeOf(const ByteRange& bytes) const {
    return bytes.length == 1
               ? QString::number(bytes.begin)
               : QStringLiteral("%1 .. %2").arg(bytes.begin).arg(bytes.begin + bytes.length - 1);
}

QString FieldModel::textOf(const Row& row, int column) const {
    switch (column) {
    case Name:
        return nameOf(row);
    case Place:
        return row.fault ? QString() : placeOf(bytesOf(static_cast<int>(&row - rows_.data())));
    case Value:
        return valueOf(row);
    default:
        return row.field != nullptr && hasForm(*row.field, column) ? numberForm(*row.field, column)
                                                                   : QString();
    }
}

QVariant FieldModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) {
        return {};
    }
    const Row& row = rows_.at(static_cast<std::size_t>(index.row()));
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return textOf(row, index.column());
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(
            (index.column() == Decimal || index.column() == Signed ? Qt::AlignRight : Qt::AlignLeft) |
            Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant FieldModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole) {
        return {};
    }
    const std::array names = {tr("Field"),  tr("Bytes"), tr("Value"), tr("Decimal"),
                              tr("Signed"), tr("Hex"),   tr("Binary")};
    return section >= 0 && section < ColumnCount ? names.at(static_cast<std::size_t>(section)) : QString();
}

} // namespace varda::window
