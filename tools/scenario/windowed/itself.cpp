// This program as a process: see itself.h.
#include "play/itself.h"

#include "platform/windows/wide.h"

#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <process.h>

#include <cstdio>

namespace scenario
{

namespace
{

// As the C runtime of the new process takes it apart again. Arguments hold no quotes: they are names of files.
std::wstring Quoted(const std::string &argument)
{
    return L"\"" + platform::ToWide(argument) + L"\"";
}

} // namespace

int RunItself(const std::vector<std::string> &arguments)
{
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::vector<std::wstring> quoted{L"scenario"};
    for (const std::string &argument : arguments)
        quoted.push_back(Quoted(argument));
    std::vector<const wchar_t *> words;
    for (const std::wstring &word : quoted)
        words.push_back(word.c_str());
    words.push_back(nullptr);
    const auto status = _wspawnv(_P_WAIT, path, words.data());
    return status < 0 || status > 2 ? 1 : static_cast<int>(status);
}

void LeaveLineEnds()
{
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
}

} // namespace scenario
