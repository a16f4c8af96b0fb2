#pragma once

#include <string>
#include <vector>

class QComboBox;
class QListWidget;
class QTabWidget;
class QWidget;

namespace varda::window {

class DropDownList;

/// Replaces the entries of a list and empties its text without running its handlers: a list never chooses an
/// entry by itself.
void fillList(QComboBox* list, const std::vector<std::string>& texts);

/// Fills a list and shows `startValue` in it.
void fillList(QComboBox* list, const std::vector<std::string>& texts, const std::string& startValue);

/// Empties a list's text without running its handlers; its entries stay.
void chooseNone(QComboBox* list);

/// The lines of a list, in order.
std::vector<std::string> linesOf(const QListWidget* list);

/// A tab changes by a click or by the keyboard only.
void keepTabsFromWheel(QTabWidget* tabs);

/// Lets a text be typed into a list, and does the same: what is typed stays as it is typed, with no
/// completion and no new entries. The form leaves such a list closed, for an open one would come with a
/// completer of its own, which is a tenth of the window's building time. A DropDownList, since what is typed
/// chooses no entry then: Qt's own list would open at the one that was chosen before, and Enter would take
/// that.
void letTypeInto(DropDownList* list);

/// Leaves the place of a hidden field empty; else the fields beside it would jump.
void keepPlaceWhenHidden(QWidget* field);

} // namespace varda::window
