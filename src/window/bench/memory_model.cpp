#include "window/bench/memory_model.h"

#include "core/protocol/pasted_words.h"
#include "core/protocol/registers.h"
#include "core/virtual/controller.h"

#include <algorithm>

namespace varda::window {
namespace {

unsigned maskOf(int column) { return 1U << static_cast<unsigned>(MemoryModel::columns - 1 - column); }

/// Hexadecimal without a mark as well.
std::string asHex(const std::string& typed) {
    const bool isMarked = typed.ends_with('h') || typed.ends_with('H') || typed.starts_with("0x") ||
                          typed.starts_with("0X") || typed.starts_with('&');
    return isMarked || typed.empty() ? typed : "0x" + typed;
}

} // namespace

MemoryModel::MemoryModel(Controller& controller, QObject* parent)
    : QAbstractTableModel(parent), controller_(controller), shown_(controller.memory()) {}

int MemoryModel::rowCount(const QModelIndex& parent) const {
    const RegisterKind& kind = registerKinds()[kind_];
    return parent.isValid() ? 0 : kind.last - kind.base + 1;
}

int MemoryModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : columns; }

int MemoryModel::address(int row) const { return registerKinds()[kind_].base + row; }

QVariant MemoryModel::text(int row, int column) const {
    constexpr int hexDigits = 4;
    const std::uint16_t word = shown_.word(address(row));
    switch (column) {
    case Register:
        return QString::fromStdString(wordName(address(row)));
    case Decimal:
        return QString::number(word);
    case Hex:
        return QStringLiteral("%1").arg(word, hexDigits, 16, QLatin1Char('0')).toUpper();
    default:
        return {};
    }
}

QVariant MemoryModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    const int column = index.column();
    const bool isBit = column >= FirstBit;
    const bool isOn = isBit && (shown_.word(address(index.row())) & maskOf(column)) != 0;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return text(index.row(), column);
    case Qt::CheckStateRole:
        return isBit ? QVariant(isOn ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return isBit ? tr("%1 bit %2 %3")
                           .arg(text(index.row(), Register).toString())
                           .arg(columns - 1 - column)
                           .arg(isOn ? tr("ON") : tr("OFF"))
                     : text(index.row(), column);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((column == Register ? Qt::AlignLeft : Qt::AlignRight) | Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant MemoryModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= columns) {
        return {};
    }
    switch (section) {
    case Register:
        return tr("Register");
    case Decimal:
        return tr("Decimal");
    case Hex:
        return tr("Hex");
    default:
        return QString::number(columns - 1 - section);
    }
}

Qt::ItemFlags MemoryModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (index.column() >= FirstBit) {
        flags |= Qt::ItemIsUserCheckable;
    } else if (index.column() != Register) {
        flags |= Qt::ItemIsEditable;
    }
    return flags;
}

bool MemoryModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || index.row() >= rowCount()) {
        return false;
    }
    const int column = index.column();
    if (role == Qt::CheckStateRole && column >= FirstBit) {
        const unsigned others = controller_.word(address(index.row())) & ~maskOf(column);
        const unsigned bit = value.toInt() == Qt::Checked ? maskOf(column) : 0;
        change(index.row(), static_cast<std::uint16_t>(others | bit));
        return true;
    }
    return role == Qt::EditRole && type(index.row(), column, value.toString());
}

bool MemoryModel::type(int row, int column, const QString& typed) {
    const std::string text = typed.trimmed().toStdString();
    const std::optional<int> word = readWord(column == Hex ? asHex(text) : text);
    if (!word) {
        emit refused(tr("\"%1\" is no word: 0 to 65535, or 0h to FFFFh.").arg(typed));
        return false;
    }
    change(row, static_cast<std::uint16_t>(*word));
    emit refused({});
    return true;
}

void MemoryModel::change(int row, std::uint16_t word) {
    controller_.setWord(address(row), word);
    refresh(std::nullopt);
}

void MemoryModel::showKind(std::size_t kind) {
    beginResetModel();
    kind_ = kind;
    shown_ = controller_.memory();
    endResetModel();
}

/// Each row by itself: a row in between may be one in which somebody types.
void MemoryModel::refresh(std::optional<int> held) {
    for (int row = 0; row < rowCount(); ++row) {
        const std::uint16_t word = controller_.word(address(row));
        if (row != held && word != shown_.word(address(row))) {
            shown_.setWord(address(row), word);
            emit dataChanged(index(row, 0), index(row, columns - 1));
        }
    }
}

std::size_t MemoryModel::wordsSet() const {
    const auto words = controller_.memory().words();
    return static_cast<std::size_t>(
        std::ranges::count_if(words, [](std::uint16_t word) { return word != 0; }));
}

} // namespace varda::window
