#pragma once

#include <QLabel>

namespace varda::window {

/// A label of one line that leaves out the middle of a text for which it is too narrow.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace varda::window
