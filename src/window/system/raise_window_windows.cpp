#include "window/system/raise_window.h"

#include <windows.h>

namespace varda::window {
namespace {

/// A process, and the first of its windows that shows; its dialogs go with that one.
struct Search {
    DWORD process;
    HWND found = nullptr;
};

BOOL CALLBACK lookAt(HWND window, LPARAM parameter) {
    auto& search = *reinterpret_cast<Search*>(parameter);
    DWORD owner = 0;
    ::GetWindowThreadProcessId(window, &owner);
    if (owner != search.process || ::IsWindowVisible(window) == 0) {
        return TRUE;
    }
    search.found = window;
    return FALSE;
}

HWND windowOf(qint64 process) {
    Search search{static_cast<DWORD>(process)};
    ::EnumWindows(lookAt, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

} // namespace

bool raiseWindowOf(qint64 process) {
    const HWND window = windowOf(process);
    if (window != nullptr && ::IsIconic(window) != 0) {
        ::ShowWindow(window, SW_RESTORE);
    }
    return window != nullptr && ::SetForegroundWindow(window) != 0;
}

bool isInFront(qint64 process) {
    DWORD owner = 0;
    ::GetWindowThreadProcessId(::GetForegroundWindow(), &owner);
    return owner == static_cast<DWORD>(process);
}

bool closeWindowOf(qint64 process) {
    const HWND window = windowOf(process);
    return window != nullptr && ::PostMessageW(window, WM_CLOSE, 0, 0) != 0;
}

} // namespace varda::window
