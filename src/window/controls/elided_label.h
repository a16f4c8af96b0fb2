#pragma once

#include "window/controls/state_label.h"

namespace varda::window {

/// A label of one line. Where it is too narrow for its text it leaves out the start of one part of it, whose
/// end tells most, and keeps everything around that part. Only what is painted is shortened.
class ElidedLabel : public StateLabel {
    Q_OBJECT

public:
    using StateLabel::StateLabel;

    /// @param part of the text, which alone is shortened; where there is none, it is the text's middle
    void showText(const QString& text, const QString& part);
    /// What is painted at the present width.
    QString paintedText() const;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString part_;
};

} // namespace varda::window
