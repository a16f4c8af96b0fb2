#pragma once

class QWidget;

namespace varda::window {

/// Lets the text of every label that stands at the top of its field's row begin on the line on which the
/// field's text begins, whatever the fonts of the two.
void alignLabelsWithFields(QWidget* window);

} // namespace varda::window
