#include "window/controls/table_lines.h"

#include <QHeaderView>
#include <QTableView>

namespace varda::window {

void showLines(QTableView* table, int height) {
    constexpr int edges = 6;
    table->horizontalHeader()->setHighlightSections(false);
    QHeaderView* const rows = table->verticalHeader();
    rows->hide();
    rows->setSectionResizeMode(QHeaderView::Fixed);
    rows->setMinimumSectionSize(1);
    rows->setDefaultSectionSize(height + edges);
}

void fitColumns(QTableView* table, std::span<const char* const> usual) {
    constexpr int edges = 12;
    QHeaderView* const columns = table->horizontalHeader();
    int column = 0;
    for (const char* const text : usual) {
        columns->resizeSection(column++, table->fontMetrics().horizontalAdvance(QLatin1String(text)) + edges);
    }
    columns->setStretchLastSection(true);
}

} // namespace varda::window
