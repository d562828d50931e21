// The Windows profile functions.
#include "platform/profile.h"

#include "platform/code_page.h"

#include <windows.h>

namespace platform
{

std::string ReadProfileString(const std::string &section, const std::string &key, const std::string &file)
{
    char buffer[128];
    const DWORD length = GetPrivateProfileStringA(ToAnsi(section).c_str(), ToAnsi(key).c_str(), "", buffer,
                                                  sizeof buffer, ToAnsi(file).c_str());
    return FromAnsi({buffer, length});
}

} // namespace platform
