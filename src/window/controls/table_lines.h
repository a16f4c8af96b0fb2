#pragma once

#include <functional>
#include <span>

class QTableView;

namespace varda::window {

/// Rows of one line of text each, of which none is measured: there may be 100,000.
/// @param height of a letter
void showLines(QTableView* table, int height);

/// The first columns as wide as what usually stands there; the last one takes what is left.
void fitColumns(QTableView* table, std::span<const char* const> usual);

/// Runs at a double click on a line, and at Return, once a key press.
void onChosenLine(QTableView* table, const std::function<void()>& act);

} // namespace varda::window
