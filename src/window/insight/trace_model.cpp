#include "window/insight/trace_model.h"

#include "core/insight/verdict_words.h"
#include "core/protocol/hex_text.h"
#include "window/controls/frame_font.h"
#include "window/controls/sliced_work.h"

#include <algorithm>

namespace varda::window {
namespace {

constexpr std::size_t shownBytes = 64; ///< more than the widest screen has room for
constexpr std::size_t bytesOfTip = 512;
constexpr std::size_t bytesOfTipLine = 16;

QString text(const std::string& words) { return QString::fromStdString(words); }

QString cutBytes(const TraceLine& line) {
    const auto first = std::span(line.bytes).first(std::min(line.bytes.size(), shownBytes));
    const QString groups = text(hexSpaced(first));
    return first.size() < line.size
               ? groups + TraceModel::tr(" .. %1 bytes").arg(static_cast<qulonglong>(line.size))
               : groups;
}

QString bytesInLines(const TraceLine& line) {
    QStringList lines;
    const auto bytes = std::span(line.bytes).first(std::min(line.bytes.size(), bytesOfTip));
    for (std::size_t begin = 0; begin < bytes.size(); begin += bytesOfTipLine) {
        const std::size_t count = std::min(bytesOfTipLine, bytes.size() - begin);
        lines.append(text(hexSpaced(bytes.subspan(begin, count))));
    }
    if (line.size > bytes.size()) {
        lines.append(TraceModel::tr(".. %1 bytes").arg(static_cast<qulonglong>(line.size)));
    }
    return lines.join(QLatin1Char('\n'));
}

/// A tip that breaks its lines where there is no more room.
QString wrapped(const QString& words) {
    return words.isEmpty() ? words : QStringLiteral("<p>%1</p>").arg(words.toHtmlEscaped());
}

TraceColumn columnOf(const QModelIndex& index) {
    return traceColumns.at(static_cast<std::size_t>(index.column()));
}

} // namespace

TraceModel::TraceModel(Trace& trace, const RegisterNames& names, QObject* parent)
    : QAbstractTableModel(parent), trace_(trace), names_(names), view_(trace) {}

int TraceModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

int TraceModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(traceColumns.size());
}

Trace::Number TraceModel::line(int row) const {
    const int place = row - shift_;
    const bool isThere = place >= 0 && place < static_cast<int>(view_.rows());
    return isThere ? view_.line(static_cast<std::size_t>(place)) : trace_.end(); // a line that is not there
}

std::vector<Trace::Number> TraceModel::lines() const {
    std::vector<Trace::Number> numbers;
    numbers.reserve(static_cast<std::size_t>(rows_));
    for (int row = 0; row < rows_; ++row) {
        numbers.push_back(line(row));
    }
    return numbers;
}

std::optional<int> TraceModel::rowOf(Trace::Number number) const {
    const std::size_t row = view_.rowFrom(number);
    return row < view_.rows() && view_.line(row) == number ? std::optional(static_cast<int>(row))
                                                           : std::nullopt;
}

/// A mark and a flaw are told by a sign, which those see who see no colours.
QString TraceModel::cell(Trace::Number number, TraceColumn column) const {
    const TraceLine* const line = trace_.find(number);
    if (line == nullptr) {
        return column == TraceColumn::Verdict ? tr("No longer kept") : QString();
    }
    if (column == TraceColumn::Hex) {
        return cutBytes(*line);
    }
    const QString words = text(cellInWords(trace_, number, column, names_));
    if (column == TraceColumn::Time && line->isMarked) {
        return QStringLiteral("\u25CF ") + words;
    }
    return column == TraceColumn::Verdict && trace_.isWrong(number) ? QStringLiteral("! ") + words : words;
}

QString TraceModel::whole(Trace::Number number, TraceColumn column) const {
    const TraceLine* const line = trace_.find(number);
    return line != nullptr && column == TraceColumn::Hex ? bytesInLines(*line)
                                                         : wrapped(cell(number, column));
}

QVariant TraceModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rows_) {
        return {};
    }
    switch (role) {
    case Qt::DisplayRole:
        return cell(line(index.row()), columnOf(index));
    case Qt::ToolTipRole:
        return whole(line(index.row()), columnOf(index));
    case Qt::TextAlignmentRole:
        return QVariant::fromValue((columnOf(index) == TraceColumn::Delta ? Qt::AlignRight : Qt::AlignLeft) |
                                   Qt::AlignVCenter);
    case Qt::FontRole: {
        static const QFont fixedWidth = frameFont();
        return columnOf(index) == TraceColumn::Hex ? QVariant(fixedWidth) : QVariant();
    }
    default:
        return {};
    }
}

QVariant TraceModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= columnCount()) {
        return {};
    }
    const std::string_view name = columnName(traceColumns.at(static_cast<std::size_t>(section)));
    return QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
}

void TraceModel::setFilter(const TraceFilter& filter) {
    if (filter == view_.filter()) {
        return;
    }
    beginResetModel();
    view_.setFilter(filter);
    rows_ = 0;
    endResetModel();
}

bool TraceModel::fill() {
    view_.fill(SlicedWork::slice);
    addRows();
    return left() > 0;
}

/// Those behind that the view has already.
void TraceModel::addRows() {
    const int rows = static_cast<int>(view_.rows());
    if (rows > rows_) {
        beginInsertRows({}, rows_, rows - 1);
        rows_ = rows;
        endInsertRows();
    }
}

void TraceModel::dropRows(int first, int last) {
    if (first <= last) {
        beginRemoveRows({}, first, last);
        rows_ -= last - first + 1;
        shift_ = 0;
        endRemoveRows();
    }
}

/// The view is as it will be already; those who are told step by step see the rows that stay.
int TraceModel::takeNews() {
    if (isHeld_) {
        return 0;
    }
    const TraceView::Step step = view_.update(trace_.takeNews(), SlicedWork::slice);
    const int gone = static_cast<int>(step.gone);
    const int kept = static_cast<int>(step.kept);
    shift_ = gone;
    dropRows(0, gone - 1);
    dropRows(kept, rows_ - 1);
    addRows();
    if (step.changedBegin < step.kept) {
        emit dataChanged(index(static_cast<int>(step.changedBegin), 0), index(kept - 1, columnCount() - 1));
    }
    return gone;
}

void TraceModel::showNames() {
    if (rows_ > 0) {
        emit dataChanged(index(0, 0), index(rows_ - 1, columnCount() - 1));
    }
}

/// Lines that are held show their marks at once.
void TraceModel::mark(const std::vector<Trace::Number>& numbers, bool isMarked) {
    trace_.mark(numbers, isMarked);
    if (numbers.empty()) {
        return;
    }
    const int first = static_cast<int>(view_.rowFrom(numbers.front()));
    const int last = std::min(static_cast<int>(view_.rowFrom(numbers.back())), rows_ - 1);
    if (first <= last) {
        emit dataChanged(index(first, 0), index(last, columnCount() - 1));
    }
}

} // namespace varda::window
