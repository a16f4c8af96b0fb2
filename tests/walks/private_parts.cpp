#include "walks/private_parts.h"

#include "platform/timers.h"
#include "shell/frmVarda.h"

namespace varda::walks {

namespace {

std::unique_ptr<PeriodTimer>& part(FrmVarda& owner, const std::unique_ptr<PeriodTimer>* kind);
QTimer& part(QtPeriodTimer& owner, const QTimer* kind);

// An explicit instantiation may name what is private elsewhere. The timer is the one thing of time that the
// window does not take from outside.
template <auto Member, typename Owner, typename Part>
struct Opened {
    friend Part& part(Owner& owner, const Part* /*kind*/) { return owner.*Member; }
};

template struct Opened<&FrmVarda::tmrComm_, FrmVarda, std::unique_ptr<PeriodTimer>>;
template struct Opened<&QtPeriodTimer::timer_, QtPeriodTimer, QTimer>;

} // namespace

PeriodTimer& communicationPeriod(FrmVarda& window) {
    return *part(window, static_cast<std::unique_ptr<PeriodTimer>*>(nullptr));
}

QTimer& communicationTimer(FrmVarda& window) {
    return part(static_cast<QtPeriodTimer&>(communicationPeriod(window)), static_cast<QTimer*>(nullptr));
}

} // namespace varda::walks
