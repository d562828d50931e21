// Machine and user: see machine.h.
#include "acceptance/windows/machine.h"

#include "acceptance/windows/problem.h"
#include "platform/windows/wide.h"

#include <windows.h>

#include <cstdio>
#include <ctime>

namespace acceptance
{

namespace
{

std::string ReadOdbc(HKEY root, const std::string &key, const std::string &name)
{
    wchar_t text[1024];
    DWORD size = sizeof text;
    const std::wstring path = L"SOFTWARE\\ODBC\\ODBC.INI\\" + platform::ToWide(key);
    return RegGetValueW(root, path.c_str(), platform::ToWide(name).c_str(), RRF_RT_REG_SZ, nullptr, text, &size) ==
                   ERROR_SUCCESS
               ? platform::FromWide(text)
               : "";
}

} // namespace

std::string DriverOf(const std::string &dataSource)
{
    for (const HKEY root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE})
        if (!ReadOdbc(root, dataSource, "DATABASE").empty())
            return ReadOdbc(root, "ODBC Data Sources", dataSource);
    throw Problem("no data source of 32-bit programs is called " + dataSource +
                  " and names a database: make one with " + R"(%SystemRoot%\SysWOW64\odbcad32.exe)");
}

std::wstring Password(const std::string &user)
{
    wchar_t text[512];
    if (const DWORD length = GetEnvironmentVariableW(L"KVHEADERS_PASSWORD", text, 512); length > 0 && length < 512)
        return std::wstring(text, length);
    const HANDLE console = GetStdHandle(STD_INPUT_HANDLE);
    DWORD mode = 0;
    if (!GetConsoleMode(console, &mode))
        throw Problem("there is no console to ask for the password: set KVHEADERS_PASSWORD");
    std::printf("Password of %s: ", user.c_str());
    std::fflush(stdout);
    SetConsoleMode(console, (mode | ENABLE_LINE_INPUT) & ~ENABLE_ECHO_INPUT);
    DWORD length = 0;
    ReadConsoleW(console, text, 512, &length, nullptr);
    SetConsoleMode(console, mode);
    std::printf("\n");
    while (length > 0 && (text[length - 1] == L'\n' || text[length - 1] == L'\r'))
        --length;
    return std::wstring(text, length);
}

std::string Windows()
{
    using GetVersion = LONG(WINAPI *)(OSVERSIONINFOW *); // the documented call tells programs of old an old version
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    const auto get = reinterpret_cast<GetVersion>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "RtlGetVersion")));
    if (get)
        get(&version);
    BOOL wow = FALSE;
    IsWow64Process(GetCurrentProcess(), &wow);
    const HDC screen = GetDC(nullptr);
    const int resolution = GetDeviceCaps(screen, LOGPIXELSX);
    ReleaseDC(nullptr, screen);
    char text[128];
    std::snprintf(text, sizeof text, "%lu.%lu.%lu, %s, %d dpi, code page %u", version.dwMajorVersion,
                  version.dwMinorVersion, version.dwBuildNumber, wow ? "64-bit" : "32-bit", resolution, GetACP());
    return text;
}

std::string Now(const char *format)
{
    const std::time_t now = std::time(nullptr);
    char text[64];
    std::strftime(text, sizeof text, format, std::localtime(&now));
    return text;
}

} // namespace acceptance
