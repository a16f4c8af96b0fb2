#include "window/shell/last_answers.h"

#include "core/protocol/hex_text.h"
#include "window/shell/page_names.h"

#include <QLineEdit>
#include <QPlainTextEdit>

namespace varda::window {
namespace {

constexpr int mostUnanswered = 13; ///< in a row; a wait ends after so many ticks too

} // namespace

void LastAnswers::told(const Exchange& exchange) {
    switch (exchange.outcome) {
    case Outcome::Answered:
        keep(exchange);
        break;
    case Outcome::Overtaken:
        countUnanswered(exchange.mode);
        break;
    case Outcome::Silent:
    case Outcome::HungUp:
    case Outcome::NotSent:
        forget(exchange.mode);
        break;
    default: // says nothing of the answer that is shown
        break;
    }
}

void LastAnswers::keep(const Exchange& exchange) {
    unanswered_ = 0;
    if (const PageNames* const page = findPageNames(exchange.mode)) {
        show(page->answer, QString::fromStdString(hexGroups(exchange.answer)));
        show(page->completionStatus, QString::fromLatin1(answeredStatus));
    }
}

void LastAnswers::countUnanswered(Mode mode) {
    if (++unanswered_ >= mostUnanswered) {
        forget(mode);
    }
}

void LastAnswers::forget(Mode mode) {
    unanswered_ = 0;
    if (const PageNames* const page = findPageNames(mode)) {
        show(page->answer, {});
        show(page->completionStatus, {});
    }
}

void LastAnswers::show(std::string_view field, const QString& text) {
    const QString name = QString::fromUtf8(field.data(), static_cast<qsizetype>(field.size()));
    if (auto* const frame = window_.findChild<QPlainTextEdit*>(name)) {
        frame->setPlaceholderText(text);
    } else if (auto* const line = window_.findChild<QLineEdit*>(name)) {
        line->setPlaceholderText(text);
    }
}

} // namespace varda::window
