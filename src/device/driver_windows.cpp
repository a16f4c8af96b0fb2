#include "device/driver.h"

#include <windows.h>

#include <system_error>

namespace varda::device::driver {
namespace {

void require(BOOL isDone) {
    if (isDone == 0) {
        throw std::system_error(static_cast<int>(::GetLastError()), std::system_category());
    }
}

} // namespace

bool isOfNoDevice(const std::error_code& error) noexcept {
    if (error.category() != std::system_category()) {
        return false;
    }
    switch (error.value()) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_BAD_UNIT:
    case ERROR_BAD_COMMAND: // what drivers say once their device is gone, and the next three
    case ERROR_GEN_FAILURE:
    case ERROR_DEVICE_REMOVED:
    case ERROR_DEV_NOT_EXIST:
    case ERROR_IO_DEVICE:
        return true;
    default:
        return false;
    }
}

void makeRaw(HANDLE handle) {
    DCB settings{};
    settings.DCBlength = sizeof(settings);
    require(::GetCommState(handle, &settings));
    settings.fBinary = TRUE;
    settings.fNull = FALSE;
    settings.fErrorChar = FALSE;
    settings.fAbortOnError = FALSE;
    settings.fOutxCtsFlow = FALSE;
    settings.fOutxDsrFlow = FALSE;
    settings.fDsrSensitivity = FALSE;
    settings.fOutX = FALSE;
    settings.fInX = FALSE;
    settings.fDtrControl = DTR_CONTROL_ENABLE;
    settings.fRtsControl = RTS_CONTROL_ENABLE;
    require(::SetCommState(handle, &settings));

    COMMTIMEOUTS timeouts{}; // none: a read ends when it has what it asked for
    require(::SetCommTimeouts(handle, &timeouts));
}

void ignoreParityErrors(HANDLE /*handle*/) {} // makeRaw() lets them pass

void raiseControlLines(HANDLE handle) noexcept {
    ::EscapeCommFunction(handle, SETDTR);
    ::EscapeCommFunction(handle, SETRTS);
}

bool setAnyBaudRate(HANDLE /*handle*/, int /*rate*/) { return false; } // Asio takes them all here

int heldBaudRate(HANDLE handle) noexcept {
    DCB settings{};
    settings.DCBlength = sizeof(settings);
    return ::GetCommState(handle, &settings) != 0 ? static_cast<int>(settings.BaudRate) : 0;
}

bool isPseudoTerminal(HANDLE /*handle*/) noexcept { return false; }

/// Asked for more than there is, this system would wait for all of it.
std::size_t mostToAskFor(HANDLE handle) noexcept {
    DWORD errors = 0;
    COMSTAT state{};
    return ::ClearCommError(handle, &errors, &state) != 0 && state.cbInQue > 0 ? state.cbInQue : 1;
}

std::size_t writeAtOnce(HANDLE /*handle*/, std::span<const std::uint8_t> /*bytes*/) noexcept { return 0; }

void discardInput(HANDLE handle) noexcept { ::PurgeComm(handle, PURGE_RXCLEAR); }

void prepareToClose(HANDLE handle) noexcept { ::PurgeComm(handle, PURGE_TXABORT | PURGE_TXCLEAR); }

} // namespace varda::device::driver
