#include "device/node_claim.h"

#include "core/files/file_path.h"
#include "device/windows_words.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <system_error>

namespace varda::device {
namespace {

RuntimeError notPermitted(const std::string& label) {
    return {comm_error::invalidPort, "No permission to use " + label + ". Ask the administrator for access."};
}

/// How a device is named among those of the system, in whose folder every port stands, those from COM10 on
/// too.
constexpr std::wstring_view deviceFolder = L"\\\\.\\";

std::wstring devicePath(const std::string& node) {
    const std::wstring name = filePath(node).wstring();
    return name.starts_with(L"\\\\") ? name : std::wstring(deviceFolder) + name;
}

/// The name of a device; nothing where it is the path of a file.
std::wstring deviceName(const std::string& node) {
    const std::wstring path = devicePath(node);
    const bool isPlain = path.starts_with(deviceFolder) || path.starts_with(L"\\\\?\\");
    const std::wstring name = isPlain ? path.substr(deviceFolder.size()) : path;
    return name.find_first_of(L"/\\") == std::wstring::npos ? name : std::wstring();
}

bool isConsoleName(const std::wstring& name) {
    const auto names = {L"CON", L"CONIN$", L"CONOUT$"};
    return std::ranges::any_of(
        names, [&name](const wchar_t* console) { return ::lstrcmpiW(name.c_str(), console) == 0; });
}

/// Disks and their parts, which to open takes rights that few have: hence by what the system calls them.
bool isBlockDevice(const std::wstring& name) {
    std::array<wchar_t, 512> device{};
    if (::QueryDosDeviceW(name.c_str(), device.data(), static_cast<DWORD>(device.size())) == 0) {
        return false;
    }
    const auto kinds = {L"\\Device\\Harddisk", L"\\Device\\CdRom", L"\\Device\\Floppy"};
    return std::ranges::any_of(kinds, [called = std::wstring_view(device.data())](const wchar_t* kind) {
        return called.starts_with(kind);
    });
}

const char* kindOfFile(const std::string& node) {
    const DWORD found = ::GetFileAttributesW(filePath(node).c_str());
    if (found == INVALID_FILE_ATTRIBUTES || (found & FILE_ATTRIBUTE_DEVICE) != 0) {
        return nullptr;
    }
    return (found & FILE_ATTRIBUTE_DIRECTORY) != 0 ? refusal::directory : refusal::regularFile;
}

/// What the name leads to instead of a serial port; null where it may be one. The names of ports and consoles
/// stand for no file, whatever folder this is.
const char* otherKind(const std::string& node) {
    const std::wstring name = deviceName(node);
    if (name.empty()) {
        return kindOfFile(node);
    }
    if (isConsoleName(name)) {
        return refusal::console;
    }
    return isBlockDevice(name) ? refusal::blockDevice : nullptr;
}

using windows_words::Refusal;
static_assert(windows_words::refusalOf(ERROR_ACCESS_DENIED) == Refusal::InUse &&
              windows_words::refusalOf(ERROR_SHARING_VIOLATION) == Refusal::InUse &&
              windows_words::refusalOf(ERROR_BUSY) == Refusal::InUse &&
              windows_words::refusalOf(ERROR_PRIVILEGE_NOT_HELD) == Refusal::NotPermitted);

RuntimeError openFailure(DWORD systemError, const std::string& label) {
    switch (windows_words::refusalOf(systemError)) {
    case Refusal::NotPermitted:
        return notPermitted(label);
    case Refusal::InUse:
        return portInUse(label);
    case Refusal::Other:
    default:
        return cannotBeOpened(label, {static_cast<int>(systemError), std::system_category()});
    }
}

const char* otherKind(HANDLE handle) {
    DWORD mode = 0;
    DCB settings{};
    switch (::GetFileType(handle)) {
    case FILE_TYPE_DISK:
        return refusal::blockDevice; // files are known by their names
    case FILE_TYPE_PIPE:
        return refusal::pipe;
    default:
        settings.DCBlength = sizeof(settings);
    }
    if (::GetConsoleMode(handle, &mode) != 0) {
        return refusal::console;
    }
    return ::GetCommState(handle, &settings) != 0 ? nullptr : refusal::anotherDevice;
}

} // namespace

/// None here: the system opens a port once.
class LockFile {};

NodeClaim::NodeClaim(const std::string& node, const std::string& label) {
    if (const char* const kind = otherKind(node)) {
        throw noSerialPort(label, kind);
    }
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
