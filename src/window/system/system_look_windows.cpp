#include "window/system/system_look.h"

#include <QtGlobal>

#include <windows.h>

namespace varda::window {
namespace {

/// Whether the user has chosen dark programs.
bool isDark() {
    DWORD light = 1;
    DWORD size = sizeof(light);
    const LSTATUS found = ::RegGetValueW(HKEY_CURRENT_USER,
                                         L"Software\\Microsoft\\Windows\\CurrentVersion\\Themes\\Personalize",
                                         L"AppsUseLightTheme", RRF_RT_REG_DWORD, nullptr, &light, &size);
    return found == ERROR_SUCCESS && light == 0;
}

} // namespace

void followSystemLook() {
    if (isDark() && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "windows:darkmode=2");
    }
}

/// The system draws its controls light alone.
QString styleForSystemLook() { return isDark() ? QStringLiteral("fusion") : QString(); }

} // namespace varda::window
