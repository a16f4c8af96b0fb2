#pragma once

#include <string>
#include <vector>

class QComboBox;
class QWidget;

namespace varda {

/// Replaces the entries of a list and empties its text without running its handlers: a list never chooses an
/// entry by itself.
void fillList(QComboBox* list, const std::vector<std::string>& texts);

/// Fills a list and shows `startValue` in it.
void fillList(QComboBox* list, const std::vector<std::string>& texts, const std::string& startValue);

/// What is typed into a list stays as it is typed: no completion, no new entries, no choice by an accidental
/// wheel turn.
void keepTypedText(QComboBox* list);

/// Leaves the place of a hidden field empty; else the fields beside it would jump.
void keepPlaceWhenHidden(QWidget* field);

} // namespace varda
