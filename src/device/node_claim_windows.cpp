#include "device/node_claim.h"

#include "core/files/file_path.h"

#include <windows.h>

#include <system_error>

namespace varda::device {
namespace {

RuntimeError notPermitted(const std::string& label) {
    return {comm_error::invalidPort, "No permission to use " + label + ". Ask the administrator for access."};
}

/// The name by which every port can be opened, those from COM10 on too.
std::wstring devicePath(const std::string& node) {
    const std::wstring name = filePath(node).wstring();
    return name.starts_with(L"\\\\") ? name : L"\\\\.\\" + name;
}

/// The names of ports and consoles stand for no file, whatever folder this is.
bool isDeviceName(const std::string& node) { return node.find_first_of("/\\:") == std::string::npos; }

bool isConsoleName(const std::string& node) {
    return ::lstrcmpiA(node.c_str(), "CON") == 0 || ::lstrcmpiA(node.c_str(), "CONIN$") == 0 ||
           ::lstrcmpiA(node.c_str(), "CONOUT$") == 0;
}

void refuseOthers(const std::string& node, const std::string& label) {
    if (isConsoleName(node)) {
        throw noSerialPort(label, refusal::console);
    }
    const DWORD found =
        isDeviceName(node) ? INVALID_FILE_ATTRIBUTES : ::GetFileAttributesW(filePath(node).c_str());
    if (found == INVALID_FILE_ATTRIBUTES || (found & FILE_ATTRIBUTE_DEVICE) != 0) {
        return;
    }
    throw noSerialPort(label,
                       (found & FILE_ATTRIBUTE_DIRECTORY) != 0 ? refusal::directory : refusal::regularFile);
}

RuntimeError openFailure(DWORD systemError, const std::string& label) {
    switch (systemError) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
    case ERROR_BAD_UNIT:
    case ERROR_DEV_NOT_EXIST:
        return noSuchDevice(label);
    case ERROR_PRIVILEGE_NOT_HELD:
        return notPermitted(label);
    case ERROR_ACCESS_DENIED: // what this system says of a port that somebody has
    case ERROR_SHARING_VIOLATION:
    case ERROR_BUSY:
        return portInUse(label);
    default:
        return cannotBeOpened(label, std::system_category().message(static_cast<int>(systemError)));
    }
}

const char* otherKind(HANDLE handle) {
    switch (::GetFileType(handle)) {
    case FILE_TYPE_DISK:
        return refusal::regularFile;
    case FILE_TYPE_PIPE:
        return refusal::noDeviceOfCharacters;
    default:
        break;
    }
    DWORD mode = 0;
    if (::GetConsoleMode(handle, &mode) != 0) {
        return refusal::console;
    }
    DCB settings{};
    settings.DCBlength = sizeof(settings);
    return ::GetCommState(handle, &settings) != 0 ? nullptr : refusal::anotherDevice;
}

} // namespace

/// None here: the system opens a port once.
class LockFile {};

NodeClaim::NodeClaim(const std::string& node, const std::string& label) {
    refuseOthers(node, label);
    handle_ = ::CreateFileW(devicePath(node).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                            FILE_FLAG_OVERLAPPED, nullptr);
    if (handle_ == INVALID_HANDLE_VALUE) {
        throw openFailure(::GetLastError(), label);
    }
    if (const char* const kind = otherKind(handle_)) {
        ::CloseHandle(handle_);
        throw noSerialPort(label, kind);
    }
}

NodeClaim::~NodeClaim() {
    if (!isHandedOver_) {
        ::CloseHandle(handle_);
    }
}

} // namespace varda::device
