#pragma once

#include "core/insight/field_words.h"

#include <QString>

namespace varda::window {

/// "1 line", "2 lines".
inline QString countedText(std::size_t number, const char* what) {
    return QString::fromStdString(counted(number, what));
}

} // namespace varda::window
