#include "window/bench/fault_model.h"

#include "core/base/runtime_error.h"
#include "window/bench/fault_switch.h"

#include <array>

namespace varda::window {
namespace {

QString toText(std::string_view words) {
    return QString::fromUtf8(words.data(), static_cast<qsizetype>(words.size()));
}

/// As the text form has it, without the sign before it; every frame has none there.
QString howOften(const FaultRate& rate) {
    const QString text = toText(rateText(rate));
    return text.isEmpty() ? FaultModel::tr("each") : text.mid(1);
}

std::string typedRate(const std::string& text) {
    const bool isEach = text.empty() || text == "each" || text == "1st";
    return isEach ? std::string() : '@' + text.substr(text.front() == '@' ? 1 : 0);
}

} // namespace

FaultModel::FaultModel(FaultSwitch& faults, QObject* parent) : QAbstractTableModel(parent), faults_(faults) {
    for (const FaultRule& rule : faultRules()) {
        rows_.push_back(presetFault(rule.kind));
    }
    isTicked_.resize(rows_.size());
    connect(&faults, &FaultSwitch::changed, this, [this] {
        takeChosen();
        emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
    });
    takeChosen();
}

int FaultModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int FaultModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : ColumnCount; }

/// What is chosen elsewhere, as text or in the other window.
void FaultModel::takeChosen() {
    std::fill(isTicked_.begin(), isTicked_.end(), false);
    for (const PlannedFault& fault : faults_.chosen()) {
        const auto row = static_cast<std::size_t>(fault.kind);
        rows_.at(row) = fault;
        isTicked_.at(row) = true;
    }
}

QString FaultModel::textOf(std::size_t row, int column) const {
    const FaultRule& rule = faultRules()[row];
    switch (column) {
    case Name:
        return toText(rule.name);
    case Number: {
        const QString number = toText(numberText(rows_[row]));
        return rule.parameter == "ms" ? number + QStringLiteral(" ms") : number;
    }
    case Rate:
        return howOften(rows_[row].rate);
    case Done:
        return faults_.done(rule.kind) == 0 ? QString() : QString::number(faults_.done(rule.kind));
    default:
        return toText(rule.help);
    }
}

QVariant FaultModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) {
        return {};
    }
    const auto row = static_cast<std::size_t>(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return textOf(row, index.column());
    case Qt::EditRole:
        return index.column() == Number ? toText(numberText(rows_[row])) : textOf(row, index.column());
    case Qt::CheckStateRole:
        return index.column() == Name ? QVariant(isTicked_[row] ? Qt::Checked : Qt::Unchecked) : QVariant();
    case Qt::ToolTipRole:
        return toText(faultRules()[row].help);
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((index.column() == Done ? Qt::AlignRight : Qt::AlignLeft) |
                                   Qt::AlignVCenter);
    default:
        return {};
    }
}

QVariant FaultModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= ColumnCount) {
        return {};
    }
    const std::array names = {tr("Fault"), tr("Number"), tr("How often"), tr("Done"), tr("What it does")};
    return names.at(static_cast<std::size_t>(section));
}

Qt::ItemFlags FaultModel::flags(const QModelIndex& index) const {
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (!index.isValid()) {
        return flags;
    }
    const bool hasNumber = !faultRules()[static_cast<std::size_t>(index.row())].parameter.empty();
    if (index.column() == Name) {
        flags |= Qt::ItemIsUserCheckable;
    } else if (index.column() == Rate || (index.column() == Number && hasNumber)) {
        flags |= Qt::ItemIsEditable;
    }
    return flags;
}

bool FaultModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || index.row() >= rowCount()) {
        return false;
    }
    const auto row = static_cast<std::size_t>(index.row());
    if (role == Qt::CheckStateRole && index.column() == Name) {
        tick(row, value.toInt() == Qt::Checked);
        return true;
    }
    return role == Qt::EditRole && type(row, index.column(), value.toString().trimmed().toStdString());
}

void FaultModel::tick(std::size_t row, bool isTicked) {
    FaultPlan plan;
    for (std::size_t other = 0; other < rows_.size(); ++other) {
        if (other == row ? isTicked : isTicked_[other]) {
            plan.push_back(rows_[other]);
        }
    }
    emit refused({});
    faults_.choose(plan);
}

/// Read as the text form is, so that both take the same.
bool FaultModel::type(std::size_t row, int column, const std::string& text) {
    const std::string name(faultRules()[row].name);
    const std::string number = column == Number ? text : numberText(rows_[row]);
    const std::string rate = column == Rate ? typedRate(text) : rateText(rows_[row].rate);
    try {
        const FaultPlan read = parseFaults(name + (number.empty() ? "" : '=' + number) + rate);
        if (read.size() != 1) { // a comma begins another one
            throw typeMismatch();
        }
        rows_[row] = read.front();
    } catch (const RuntimeError& error) {
        emit refused(QString::fromUtf8(error.what()));
        return false;
    }
    if (isTicked_[row]) {
        tick(row, true);
    }
    emit refused({});
    emit dataChanged(index(static_cast<int>(row), 0), index(static_cast<int>(row), ColumnCount - 1));
    return true;
}

void FaultModel::showDone() { emit dataChanged(index(0, Done), index(rowCount() - 1, Done)); }

} // namespace varda::window
