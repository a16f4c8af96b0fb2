#pragma once

#include "core/protocol/registers.h"

#include <QObject>

#include <functional>
#include <string_view>

class QHelpEvent;
class QKeyEvent;
class QTableWidget;

namespace varda::window {

/// The data grid of the write page: 16 data cells a row, each one a bit or a word.
///
/// A cell's position counts from 1, row by row. Clicking a cell, or Space or Enter on it, edits it. Ctrl+C
/// copies the marked cells as tables are copied, Ctrl+V pastes from the current cell on.
class WriteGrid : public QObject {
    Q_OBJECT

public:
    static constexpr int columns = 16;

    /// What the grid asks of its page; each with the position of a cell.
    struct Page {
        std::function<void(int position)> edit;
        std::function<void(int position, const QString& text)> paste;
        std::function<QString(int position)> describe; ///< for a tool tip; empty where there is none
    };
    WriteGrid(QTableWidget* grid, Page page);

    /// "Bit0" .. "Bit15", or "+0" .. "+15".
    void showColumnHeadings(Access access);

    /// Lays so many data rows, the cells that stay keep their texts.
    /// @param kind @param firstNumber name the register that the first cell stands for; an empty kind leaves
    /// the headings
    ///        blank @param step registers a row
    void layRows(int rows, std::string_view kind, int firstNumber, int step);

    void emptyCells();
    int cells() const;

    QString text(int position) const;
    /// Sets a cell's text; positions that no row holds are ignored.
    void setText(int position, const QString& text);
    /// Sets a word cell to a value (0 .. 65535) as it was typed.
    void setWord(int position, int value, const QString& text, bool hexadecimal);
    /// A word cell that stands for the value keeps its text, any other shows `otherwise`, which is the value
    /// in decimal or empty. 0 is the value of an empty cell.
    void showWord(int position, int value, const QString& otherwise);
    /// Whether the text of a word cell is hexadecimal.
    bool isHexadecimal(int position) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setSizes();
    bool pressKey(const QKeyEvent& key);
    bool showTip(const QHelpEvent& where) const;
    QString copiedText() const;
    QString copiedCell(int row, int column) const;
    int currentPosition() const;

    QTableWidget* grid_;
    Page page_;
    Access access_ = Access::Bit;
    bool isSized_ = false;
};

} // namespace varda::window
