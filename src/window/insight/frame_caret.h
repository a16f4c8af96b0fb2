#pragma once

#include "core/base/bytes.h"
#include "window/insight/explained.h"

#include <QObject>

#include <functional>

class QPlainTextEdit;
class QWidget;

namespace varda::window {

/// Tells of the frame that the user looks at on a page: the one with the focus, and the byte under its caret.
class FrameCaret : public QObject {
    Q_OBJECT

public:
    /// What the frame of an answer is the answer to; empty where that is not known.
    using RequestOf = std::function<Bytes(const QPlainTextEdit* answer)>;

    /// @param pages all of whose frames stand by now
    /// @param viewer shows what is told; while it is not on the screen nothing is
    FrameCaret(QWidget& pages, RequestOf requestOf, QWidget* viewer);

signals:
    void moved(const varda::window::Explained& frame, std::size_t byte);

private:
    void look(QPlainTextEdit* frame);

    QWidget& pages_;
    RequestOf requestOf_;
    QWidget* viewer_;
};

} // namespace varda::window
