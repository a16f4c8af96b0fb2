#pragma once

#include <QByteArray>

namespace varda::test {

/// Lets Qt draw on no screen, unless another platform is wished for, where there is such a one. To be called
/// before the application object.
inline void preferOffscreen() {
#ifndef Q_OS_WIN
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
#endif
}

} // namespace varda::test
