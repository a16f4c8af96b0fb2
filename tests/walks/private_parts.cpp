#include "walks/private_parts.h"

#include "platform/timers.h"
#include "shell/frmVarda.h"

namespace varda::walks {

namespace {

QtPeriodTimer& part(FrmVarda& owner, const QtPeriodTimer* kind);
QTimer& part(QtPeriodTimer& owner, const QTimer* kind);

// An explicit instantiation may name what is private elsewhere. The timer is the one thing of time that the
// window does not take from outside.
template <auto Member, typename Owner, typename Part>
struct Opened {
    friend Part& part(Owner& owner, const Part* /*kind*/) { return owner.*Member; }
};


template struct Opened<&FrmVarda::tmrComm_, FrmVarda, QtPeriodTimer>;
template struct Opened<&QtPeriodTimer::timer_, QtPeriodTimer, QTimer>;

} // namespace

PeriodTimer& communicationPeriod(FrmVarda& window) { return part(window, static_cast<QtPeriodTimer*>(nullptr)); }

QTimer& communicationTimer(FrmVarda& window) {
    return part(part(window, static_cast<QtPeriodTimer*>(nullptr)), static_cast<QTimer*>(nullptr));
}

} // namespace varda::walks
