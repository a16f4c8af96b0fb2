#include "window/master/write_grid.h"

#include "core/protocol/hex_text.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QTableWidget>

#include <algorithm>
#include <utility>

namespace varda::window {
namespace {

constexpr int hexadecimalRole = Qt::UserRole;
constexpr int wordRole = Qt::UserRole + 1; ///< value of a word cell; nothing is 0

QTableWidgetItem* cellAt(const QTableWidget* grid, int position) {
    const int index = position - 1;
    return index < 0 ? nullptr : grid->item(index / WriteGrid::columns, index % WriteGrid::columns);
}

/// What a screen reader calls the cell beside its headings; the text itself where there is one.
void nameCell(QTableWidgetItem* cell) {
    cell->setData(Qt::AccessibleTextRole, cell->text().isEmpty() ? QObject::tr("empty") : cell->text());
}

QTableWidgetItem* newCell() {
    auto* const cell = new QTableWidgetItem;
    nameCell(cell);
    cell->setTextAlignment(Qt::AlignCenter);
    cell->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
    return cell;
}

} // namespace

WriteGrid::WriteGrid(QTableWidget* grid, std::function<void(int position)> edit)
    : QObject(grid), grid_(grid), edit_(std::move(edit)) {
    grid_->setColumnCount(columns);
    grid_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    grid_->setSelectionMode(QAbstractItemView::SingleSelection);
    grid_->setTabKeyNavigation(false);
    grid_->installEventFilter(this);
    connect(grid_, &QTableWidget::cellClicked, this,
            [this](int row, int column) { edit_(row * columns + column + 1); });
}

void WriteGrid::setSizes() {
    constexpr int cellMargin = 4;
    QFont font = grid_->font();
    font.setPointSizeF(font.pointSizeF() - 1); // sixteen columns fit the smallest screen
    grid_->setFont(font);
    const QFontMetrics metrics(font);
    const int column =
        std::max(metrics.horizontalAdvance(QStringLiteral("65535")),
                 QFontMetrics(grid_->horizontalHeader()->font()).horizontalAdvance(QStringLiteral("Bit15")));
    grid_->horizontalHeader()->setMinimumSectionSize(column + cellMargin);
    grid_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    grid_->verticalHeader()->setDefaultSectionSize(metrics.height() + cellMargin);
    grid_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    grid_->verticalHeader()->setDefaultAlignment(Qt::AlignCenter);
    grid_->setTextElideMode(Qt::ElideNone);
    grid_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void WriteGrid::showColumnHeadings(Access access) {
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
    const RegisterKind* const found = findRegisterKind(kind);
    QStringList headings;
    for (int row = 0; row < rows; ++row) {
        const std::size_t width = found != nullptr ? found->listWidth : 1;
        headings.append(kind.empty() ? QStringLiteral(" ")
                                     : QString::fromStdString(decimal(firstNumber + row * step, width)));
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
    if (event->type() == QEvent::KeyPress && grid_->currentRow() >= 0) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Space || key == Qt::Key_Return || key == Qt::Key_Enter) {
            edit_(grid_->currentRow() * columns + grid_->currentColumn() + 1);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace varda::window
