#include "window/shell/line_notice.h"

#include "window/shell/announcer.h"

#include <QLabel>

namespace varda::window {

LineNotice::LineNotice(QLabel* label, Announcer& announcer)
    : label_(label), announcer_(announcer), whySlow_(label->toolTip()) {}

void LineNotice::tell(const std::string& news) {
    news_ = QString::fromStdString(news);
    isOfFile_ = false;
    show();
    announcer_.speak(label_, news_);
}

void LineNotice::tellOfFile(const std::string& news) {
    tell(news);
    isOfFile_ = true;
}

void LineNotice::fileIsSeen() {
    if (isOfFile_) {
        tell({});
    }
}

void LineNotice::tellUnsent(std::size_t frames) {
    const bool isNew = unsent_ == 0 && frames > 0;
    unsent_ = frames;
    show();
    if (isNew) { // more of them change the number alone
        announcer_.speak(label_, label_->text());
    }
}

void LineNotice::show() {
    const bool isSlow = unsent_ > 0;
    label_->setText(isSlow ? QObject::tr("The line is too slow. Frames not sent: %1").arg(unsent_) : news_);
    label_->setToolTip(isSlow ? whySlow_ : news_); // the label may be too short for its text
}

} // namespace varda::window
