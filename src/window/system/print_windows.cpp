#include "window/system/print.h"

#include <QString>

#include <windows.h>

namespace varda::window {
namespace {

/// Writes where somebody has led the program's output to, a file or another program.
bool writeToOwnOutput(const std::string& text, bool isError) {
    const HANDLE output = ::GetStdHandle(isError ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE);
    DWORD written = 0;
    return output != nullptr && output != INVALID_HANDLE_VALUE &&
           ::WriteFile(output, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != 0;
}

/// A program with a window has no console of its own, but may use that of who started it.
bool writeToCallersConsole(const std::wstring& text) {
    if (::AttachConsole(ATTACH_PARENT_PROCESS) == 0) {
        return false;
    }
    const HANDLE console = ::CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_WRITE, nullptr,
                                         OPEN_EXISTING, 0, nullptr);
    DWORD written = 0;
    const bool isDone =
        console != INVALID_HANDLE_VALUE &&
        ::WriteConsoleW(console, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != 0;
    ::CloseHandle(console);
    ::FreeConsole();
    return isDone;
}

} // namespace

void print(const std::string& text, bool isError) {
    const std::wstring wide = QString::fromStdString(text).toStdWString();
    if (!writeToOwnOutput(text, isError) && !writeToCallersConsole(L"\n" + wide)) {
        ::MessageBoxW(nullptr, wide.c_str(), L"VR-Series PLC Test & Simulator",
                      MB_OK | (isError ? MB_ICONWARNING : MB_ICONINFORMATION));
    }
}

} // namespace varda::window
