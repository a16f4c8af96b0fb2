#include "window/controls/table_lines.h"

#include <QHeaderView>
#include <QShortcut>
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

void onChosenLine(QTableView* table, const std::function<void()>& act) {
    QObject::connect(table, &QTableView::doubleClicked, table, act);
    auto* const enter = new QShortcut(Qt::Key_Return, table, nullptr, nullptr, Qt::WidgetShortcut);
    enter->setAutoRepeat(false);
    QObject::connect(enter, &QShortcut::activated, table, act);
}

} // namespace varda::window
