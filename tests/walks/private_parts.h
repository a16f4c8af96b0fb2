#pragma once

class QTimer;

namespace varda {
class FrmVarda;
class PeriodTimer;
} // namespace varda

namespace varda::walks {

/// The window's communication timer, which a walk makes tick without waiting for it.
PeriodTimer& communicationPeriod(FrmVarda& window);
QTimer& communicationTimer(FrmVarda& window);

} // namespace varda::walks
