#include "window/controls/message_talk.h"

#include "core/base/runtime_error.h"
#include "window/controls/events.h"
#include "window/controls/message_boxes.h"

#include <QString>

#include <utility>

namespace varda::window {

FileTalk talkOf(MessageBoxes& boxes, Events& events) {
    return {.tell =
                [&boxes](const RuntimeError& error) {
                    boxes.showAdvised(QString::fromUtf8(error.what()), QStringLiteral("Error"),
                                      QString::fromStdString(error.advice()));
                },
            .ask =
                [&boxes, &events](const std::string& question, std::function<void(bool yes)> answered) {
                    boxes.ask(QString::fromStdString(question), QStringLiteral("Confirm"),
                              events.guarded(std::move(answered)));
                }};
}

} // namespace varda::window
