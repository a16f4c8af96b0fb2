#include "window/shell/frame_tips.h"

#include "core/insight/frame_reading.h"
#include "core/protocol/frame_text.h"
#include "window/shell/page_names.h"

#include <QHelpEvent>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QToolTip>

#include <optional>

namespace varda::window {
namespace {

/// The place in its text of the character below a point; nothing where there is none.
std::optional<int> placeAt(const QPlainTextEdit* frame, const QPoint& point) {
    const QTextCursor nearest = frame->cursorForPosition(point);
    const QRect before = frame->cursorRect(nearest);
    const bool isInLine = point.y() >= before.top() && point.y() <= before.bottom();
    const int place = nearest.position() - (point.x() < before.left() ? 1 : 0);
    return isInLine && place >= 0 && place < frame->document()->characterCount() - 1 ? std::optional(place)
                                                                                     : std::nullopt;
}

/// Where the tip holds: leaving it, the next byte gets its own.
QRect characterRect(const QPlainTextEdit* frame, int place) {
    QTextCursor cursor(frame->document());
    cursor.setPosition(place);
    const QRect from = frame->cursorRect(cursor);
    cursor.setPosition(place + 1);
    const QRect to = frame->cursorRect(cursor);
    const bool sameLine = from.top() == to.top();
    return sameLine ? from.united(to) : from;
}

/// What a prepared answer is shown beside.
QString requestBeside(const QString& answer) {
    return answer == QLatin1String("txtSimSend") ? QStringLiteral("txtSimReceive") : QString();
}

} // namespace

void FrameTips::watchFrames() {
    for (QPlainTextEdit* const frame : window_.findChildren<QPlainTextEdit*>()) {
        frame->viewport()->installEventFilter(this);
    }
}

void FrameTips::told(const Exchange& exchange) {
    const bool isFromMemory =
        exchange.outcome == Outcome::AnsweredFromMemory && !isRefusedFromMemory(exchange);
    if (exchange.outcome == Outcome::AnsweredByPair || isFromMemory) {
        // shown until the next one, unknown requests between
        keepRequest("txtSimSP", exchange.request);
    }
    if (exchange.outcome != Outcome::Answered) {
        return;
    }
    const PageNames* const page = findPageNames(exchange.mode);
    keepRequest(page != nullptr ? page->answer : scenarioAnswer, exchange.request);
}

void FrameTips::keepRequest(std::string_view field, const Bytes& request) {
    const auto known = requests_.find(field);
    (known != requests_.end() ? known->second : requests_[std::string(field)]) = request;
}

Bytes FrameTips::requestOf(const QPlainTextEdit* answer) const {
    if (const QString beside = requestBeside(answer->objectName()); !beside.isEmpty()) {
        const auto* const request = window_.findChild<QPlainTextEdit*>(beside);
        return request != nullptr ? bytesOfText(request->toPlainText().toStdString()) : Bytes();
    }
    const auto known = requests_.find(answer->objectName().toStdString());
    return known != requests_.end() ? known->second : Bytes();
}

bool FrameTips::showTip(QPlainTextEdit* frame, const QHelpEvent& where) const {
    const std::optional<int> place = placeAt(frame, where.pos());
    if (!place) {
        return false;
    }
    const std::string text = frame->toPlainText().toStdString();
    const std::size_t byte = byteAt(text, static_cast<std::size_t>(*place));
    const std::string words = byteInWords(bytesOfText(text), byte, requestOf(frame));
    if (words.empty()) {
        return false;
    }
    QToolTip::showText(where.globalPos(), QString::fromStdString(words), frame->viewport(),
                       characterRect(frame, *place));
    return true;
}

bool FrameTips::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ToolTip) {
        auto* const frame = qobject_cast<QPlainTextEdit*>(watched->parent());
        return frame != nullptr && showTip(frame, *static_cast<const QHelpEvent*>(event));
    }
    return QObject::eventFilter(watched, event);
}

} // namespace varda::window
