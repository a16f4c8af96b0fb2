#include "window/insight/frame_caret.h"

#include "core/insight/frame_remarks.h"
#include "core/protocol/frame_text.h"

#include <QApplication>
#include <QLabel>
#include <QPlainTextEdit>

#include <algorithm>
#include <utility>

namespace varda::window {
namespace {

QString remarksOn(const Bytes& bytes, const Bytes& request) {
    const std::string remarks = request.empty() ? remarksOnFrames(bytes) : remarksOnAnswer(bytes, request);
    return QString::fromStdString(remarks).trimmed();
}

/// As its label calls it, or the reader of a screen.
QString nameOf(const QPlainTextEdit* frame) {
    for (const QLabel* const label : frame->window()->findChildren<QLabel*>()) {
        if (label->buddy() == frame) {
            return label->text().remove(QLatin1Char('&'));
        }
    }
    return frame->accessibleName();
}

} // namespace

FrameCaret::FrameCaret(QWidget& pages, RequestOf requestOf, QWidget* viewer)
    : QObject(viewer), pages_(pages), requestOf_(std::move(requestOf)), viewer_(viewer) {
    for (QPlainTextEdit* const frame : pages.findChildren<QPlainTextEdit*>()) {
        const auto lookAtIt = [this, frame] {
            if (frame->hasFocus()) {
                look(frame);
            }
        };
        connect(frame, &QPlainTextEdit::cursorPositionChanged, this, lookAtIt);
        connect(frame, &QPlainTextEdit::textChanged, this, lookAtIt);
    }
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget* /*before*/, QWidget* now) {
        auto* const frame = qobject_cast<QPlainTextEdit*>(now);
        if (frame != nullptr && pages_.isAncestorOf(frame)) {
            look(frame);
        }
    });
}

void FrameCaret::look(QPlainTextEdit* frame) {
    if (!viewer_->isVisible()) {
        return;
    }
    const std::string text = frame->toPlainText().toStdString();
    const Bytes bytes = bytesOfText(text);
    if (bytes.empty()) {
        return;
    }
    const Bytes request = requestOf_(frame);
    const std::size_t byte = byteAt(text, static_cast<std::size_t>(frame->textCursor().position()));
    emit moved({.title = tr("%1, as it stands on the page").arg(nameOf(frame)),
                .sentence = remarksOn(bytes, request),
                .bytes = bytes,
                .size = bytes.size(),
                .request = request},
               std::min(byte, bytes.size() - 1));
}

} // namespace varda::window
