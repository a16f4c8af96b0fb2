#include <windows.h>

#include <string>

/// Stands in the place of another program: writes the command line that it is called with into the file
/// "calls" beside it, in UTF-8, and ends with 1 where there is a file "failure" beside it.
namespace {

std::wstring beside(const wchar_t* name) {
    wchar_t own[MAX_PATH]{};
    const DWORD length = ::GetModuleFileNameW(nullptr, own, MAX_PATH);
    const std::wstring path(own, length);
    return path.substr(0, path.rfind(L'\\') + 1) + name;
}

void write(const std::wstring& path, const std::string& text) {
    const HANDLE file = ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    ::WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    ::CloseHandle(file);
}

} // namespace

int WINAPI WinMain(HINSTANCE /*own*/, HINSTANCE /*former*/, char* /*arguments*/, int /*show*/) {
    const wchar_t* const line = ::GetCommandLineW();
    char text[4096]{};
    ::WideCharToMultiByte(CP_UTF8, 0, line, -1, text, sizeof(text), nullptr, nullptr);
    write(beside(L"calls.new"), text);
    ::MoveFileExW(beside(L"calls.new").c_str(), beside(L"calls").c_str(), MOVEFILE_REPLACE_EXISTING);
    return ::GetFileAttributesW(beside(L"failure").c_str()) == INVALID_FILE_ATTRIBUTES ? 0 : 1;
}
