#include "window/shell/attach_again.h"

namespace varda::window {

void AttachAgain::opened(const std::string& name) {
    forget();
    name_ = name;
    identity_ = ways_.identityOf(name); // while it can still be asked
}

void AttachAgain::lost() {
    isLost_ = isKnown();
    waitOrNot();
}

void AttachAgain::forget() {
    isLost_ = false;
    waitOrNot();
}

void AttachAgain::wish(bool isWished) {
    isWished_ = isWished;
    waitOrNot();
}

void AttachAgain::waitOrNot() {
    if (isLost_ && isWished_) {
        timer_.setInterval(lookingPeriod);
        timer_.start();
    } else {
        timer_.stop();
    }
}

void AttachAgain::tick() {
    const std::string name = ways_.nameOf(identity_, name_);
    if (!name.empty()) {
        ways_.open(name); // one that is not ready yet is tried again at the next tick
    }
}

} // namespace varda::window
