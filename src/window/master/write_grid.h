#pragma once

#include "core/protocol/registers.h"

#include <QObject>

#include <functional>
#include <string_view>

class QTableWidget;

namespace varda::window {

/// The data grid of the write page: 16 data cells a row, each one a bit or a word.
///
/// A cell's position counts from 1, row by row. Clicking a cell, or Space or Enter on it, edits it.
class WriteGrid : public QObject {
    Q_OBJECT

public:
    static constexpr int columns = 16;

    /// @param edit runs with the position of a cell that is to be edited
    WriteGrid(QTableWidget* grid, std::function<void(int position)> edit);

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

    QTableWidget* grid_;
    std::function<void(int position)> edit_;
    bool isSized_ = false;
};

} // namespace varda::window
