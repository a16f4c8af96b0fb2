#include "window/system/raise_window.h"

#include <windows.h>

namespace varda::window {
namespace {

/// The first window that shows is the one; its dialogs come with it.
BOOL CALLBACK raiseIfOf(HWND window, LPARAM process) {
    DWORD owner = 0;
    ::GetWindowThreadProcessId(window, &owner);
    if (owner != static_cast<DWORD>(process) || ::IsWindowVisible(window) == 0) {
        return TRUE;
    }
    if (::IsIconic(window) != 0) {
        ::ShowWindow(window, SW_RESTORE);
    }
    ::SetForegroundWindow(window);
    return FALSE;
}

} // namespace

void raiseWindowOf(qint64 process) { ::EnumWindows(raiseIfOf, static_cast<LPARAM>(process)); }

} // namespace varda::window
