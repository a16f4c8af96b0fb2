#pragma once

#include "support/driven_window.h"

#include <string>
#include <vector>

namespace varda::monkey {

using namespace window;

/// Hears what the link of a window tells, sees what the window shows, and says what does not fit together.
class Witness : public LinkObserver, public CounterObserver {
public:
    explicit Witness(test::DrivenWindow& window);

    void told(const Exchange& exchange) override;
    void counted(Counter counter, int value) override;

    /// Looks at everything once, as it stands after an action. @return what is wrong; empty where nothing is
    std::string finding();

    /// The request that went out last.
    const Bytes& lastSent() const { return lastSent_; }

private:
    void find(const std::string& what);
    void lookAtRequest(const Exchange& exchange);
    void lookAtLine();
    void lookAtMode();
    void lookAtLink();
    void lookAtDesktop();
    const ModePage* pageOf(Mode mode);

    test::DrivenWindow& window_;
    std::vector<Bytes> told_; ///< that went out, by the link's word, since the last look
    bool areFaults_ = false;  ///< were on when it looked last
    Bytes lastSent_;
    std::string finding_;
};

} // namespace varda::monkey
