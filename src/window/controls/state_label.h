#pragma once

#include <QLabel>

namespace varda::window {

/// A label that tells a state of the program, which those want to hear of who do not see it.
class StateLabel : public QLabel {
    Q_OBJECT

public:
    using QLabel::QLabel;

    /// Tells `text`, which the label shows, perhaps cut.
    void tell(const QString& text);

Q_SIGNALS:
    /// Another text than before.
    void told(const QString& text);

private:
    QString told_;
};

} // namespace varda::window
