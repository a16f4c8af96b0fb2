#include "window/master/write_grid.h"

#include "core/protocol/hex_text.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QStyledItemDelegate>
#include <QTableWidget>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace varda::window {
namespace {

constexpr int hexadecimalRole = Qt::UserRole;
constexpr int wordRole = Qt::UserRole + 1; ///< value of a word cell; nothing is 0

QString withBase(const QString& text, bool hexadecimal) {
    return hexadecimal && !text.isEmpty() ? text + QLatin1Char('h') : text;
}

QTableWidgetItem* cellAt(const QTableWidget* grid, int position) {
    const int index = position - 1;
    return index < 0 ? nullptr : grid->item(index / WriteGrid::columns, index % WriteGrid::columns);
}

/// Shows the base of a hexadecimal word, which its text leaves open: "1234h".
class BaseShown : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        option->text = withBase(option->text, index.data(hexadecimalRole).toBool());
    }
};

/// What a screen reader calls the cell beside its headings; the text itself where there is one.
void nameCell(QTableWidgetItem* cell) {
    const QString text = withBase(cell->text(), cell->data(hexadecimalRole).toBool());
    cell->setData(Qt::AccessibleTextRole, text.isEmpty() ? QObject::tr("empty") : text);
}

QTableWidgetItem* newCell() {
    auto* const cell = new QTableWidgetItem;
    nameCell(cell);
    cell->setTextAlignment(Qt::AlignCenter);
    cell->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return cell;
}

} // namespace

WriteGrid::WriteGrid(QTableWidget* grid, Page page) : QObject(grid), grid_(grid), page_(std::move(page)) {
    grid_->setColumnCount(columns);
    grid_->setItemDelegate(new BaseShown(grid_));
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setSelectionMode(QAbstractItemView::ContiguousSelection);
    grid_->setTabKeyNavigation(false);
    grid_->installEventFilter(this);
    grid_->viewport()->installEventFilter(this);
    connect(grid_, &QTableWidget::cellClicked, this, [this](int row, int column) {
        if ((QGuiApplication::keyboardModifiers() & Qt::ShiftModifier) == 0) { // which marks cells
            page_.edit(row * columns + column + 1);
        }
    });
}

void WriteGrid::setSizes() {
    constexpr int cellMargin = 4;
    constexpr int narrowMargin = 1;
    QFont font = grid_->font();
    font.setPointSizeF(font.pointSizeF() - 1); // sixteen columns fit the smallest screen
    grid_->setFont(font);
    const QFontMetrics metrics(font);
    const int heading =
        QFontMetrics(grid_->horizontalHeader()->font()).horizontalAdvance(QStringLiteral("Bit15"));
    const int word = metrics.horizontalAdvance(QStringLiteral("65535"));
    const int widestWord = metrics.horizontalAdvance(QStringLiteral("DDDDh"));
    grid_->horizontalHeader()->setMinimumSectionSize(
        std::max({word + cellMargin, heading + cellMargin, widestWord + narrowMargin}));
    grid_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    grid_->verticalHeader()->setDefaultSectionSize(metrics.height() + cellMargin);
    grid_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    grid_->verticalHeader()->setDefaultAlignment(Qt::AlignCenter);
    grid_->setTextElideMode(Qt::ElideNone);
}

void WriteGrid::showColumnHeadings(Access access) {
    access_ = access;
    const QString prefix = access == Access::Bit ? QStringLiteral("Bit") : QStringLiteral("+");
    QStringList headings;
    for (int column = 0; column < columns; ++column) {
        headings.append(prefix + QString::number(column));
    }
    grid_->setHorizontalHeaderLabels(headings);
}

void WriteGrid::layRows(int rows, std::string_view kind, int firstNumber, int step) {
    const int before = grid_->rowCount();
    grid_->setRowCount(rows);
    for (int row = before; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            grid_->setItem(row, column, newCell());
        }
    }
    QStringList headings;
    for (int row = 0; row < rows; ++row) {
        headings.append(kind.empty()
                            ? QStringLiteral(" ")
                            : QString::fromStdString(registerNumberText(kind, firstNumber + row * step)));
    }
    grid_->setVerticalHeaderLabels(headings);
}

void WriteGrid::emptyCells() {
    for (int position = 1; position <= cells(); ++position) {
        setText(position, QString());
    }
}

int WriteGrid::cells() const { return grid_->rowCount() * columns; }

QString WriteGrid::text(int position) const {
    const QTableWidgetItem* const cell = cellAt(grid_, position);
    return cell != nullptr ? cell->text() : QString();
}

void WriteGrid::setText(int position, const QString& text) {
    QTableWidgetItem* const cell = cellAt(grid_, position);
    if (cell == nullptr || cell->text() == text) {
        return;
    }
    cell->setText(text);
    nameCell(cell);
    QFont font = grid_->font();
    font.setBold(text == QLatin1String("ON")); // a bit that is on stands out without colour
    cell->setFont(font);
    if (text.isEmpty()) {
        cell->setData(hexadecimalRole, false);
        cell->setData(wordRole, 0);
    }
}

void WriteGrid::setWord(int position, int value, const QString& text, bool hexadecimal) {
    setText(position, text);
    if (QTableWidgetItem* const cell = cellAt(grid_, position)) {
        cell->setData(hexadecimalRole, hexadecimal);
        cell->setData(wordRole, value);
        nameCell(cell);
    }
}

void WriteGrid::showWord(int position, int value, const QString& otherwise) {
    const QTableWidgetItem* const cell = cellAt(grid_, position);
    if (cell != nullptr && cell->data(wordRole).toInt() != value) {
        setWord(position, otherwise.isEmpty() ? 0 : value, otherwise, false);
    }
}

bool WriteGrid::isHexadecimal(int position) const {
    const QTableWidgetItem* const cell = cellAt(grid_, position);
    return cell != nullptr && cell->data(hexadecimalRole).toBool();
}

bool WriteGrid::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show && !std::exchange(isSized_, true)) {
        setSizes(); // not before it is seen: measuring its font would hold up the start
    }
    if (event->type() == QEvent::KeyPress && grid_->currentRow() >= 0 &&
        pressKey(*static_cast<const QKeyEvent*>(event))) {
        return true;
    }
    if (event->type() == QEvent::ToolTip && watched == grid_->viewport()) {
        return showTip(*static_cast<const QHelpEvent*>(event));
    }
    return QObject::eventFilter(watched, event);
}

int WriteGrid::currentPosition() const { return grid_->currentRow() * columns + grid_->currentColumn() + 1; }

bool WriteGrid::pressKey(const QKeyEvent& key) {
    if (key.matches(QKeySequence::Copy)) {
        QGuiApplication::clipboard()->setText(copiedText());
    } else if (key.matches(QKeySequence::Paste)) {
        page_.paste(currentPosition(), QGuiApplication::clipboard()->text());
    } else if (key.key() == Qt::Key_Space || key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) {
        page_.edit(currentPosition());
    } else {
        return false;
    }
    return true;
}

bool WriteGrid::showTip(const QHelpEvent& where) const {
    const QModelIndex cell = grid_->indexAt(where.pos());
    const QString words =
        cell.isValid() ? page_.describe(cell.row() * columns + cell.column() + 1) : QString();
    QToolTip::showText(where.globalPos(), words, grid_->viewport(), grid_->visualRect(cell));
    return true;
}

/// The marked cells; where none is, the current one.
QString WriteGrid::copiedText() const {
    const QList<QTableWidgetSelectionRange> ranges = grid_->selectedRanges();
    const QTableWidgetSelectionRange marked =
        ranges.isEmpty() ? QTableWidgetSelectionRange(grid_->currentRow(), grid_->currentColumn(),
                                                      grid_->currentRow(), grid_->currentColumn())
                         : ranges.first();
    QStringList lines;
    for (int row = marked.topRow(); row <= marked.bottomRow(); ++row) {
        QStringList cells;
        for (int column = marked.leftColumn(); column <= marked.rightColumn(); ++column) {
            cells.append(copiedCell(row, column));
        }
        lines.append(cells.join(QLatin1Char('\t')));
    }
    return lines.join(QLatin1Char('\n'));
}

/// An empty cell stands for a word of 0, or for a bit that is off.
QString WriteGrid::copiedCell(int row, int column) const {
    const int position = row * columns + column + 1;
    const QString shown = withBase(text(position), isHexadecimal(position));
    const QString none = access_ == Access::Bit ? QStringLiteral("OFF") : QStringLiteral("0");
    return shown.isEmpty() ? none : shown;
}

} // namespace varda::window
