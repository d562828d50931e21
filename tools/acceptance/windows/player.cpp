// Running the scenario player: see player.h.
#include "acceptance/windows/player.h"

#include "acceptance/windows/problem.h"
#include "platform/windows/handle.h"
#include "platform/windows/wide.h"

#include <windows.h>

namespace acceptance
{

namespace
{

using Handle = platform::UniqueHandle<HANDLE, &CloseHandle>;

// A file without a name for long: gone with its last handle.
class Output
{
public:
    Output()
    {
        wchar_t folder[MAX_PATH + 1];
        wchar_t name[MAX_PATH + 1];
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        if (GetTempPathW(MAX_PATH + 1, folder) && GetTempFileNameW(folder, L"kvh", 0, name))
            m_file = Handle(CreateFileW(name, GENERIC_READ | GENERIC_WRITE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inherited,
                                        CREATE_ALWAYS, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        if (!m_file || m_file.get() == INVALID_HANDLE_VALUE)
            throw Problem("no file can be made in the folder for temporary files");
    }

    HANDLE File() const { return m_file.get(); }

    std::string Text() const
    {
        SetFilePointer(m_file.get(), 0, nullptr, FILE_BEGIN);
        std::string text(GetFileSize(m_file.get(), nullptr), '\0');
        DWORD read = 0;
        ReadFile(m_file.get(), text.data(), static_cast<DWORD>(text.size()), &read, nullptr);
        text.resize(read);
        return text;
    }

private:
    Handle m_file;
};

} // namespace

Play RunPlayer(const std::wstring &program, const std::vector<std::string> &arguments)
{
    constexpr DWORD kMostMilliseconds = 10 * 60 * 1000;
    const Output transcript, problem;
    std::wstring line = L"\"" + program + L"\"";
    for (const std::string &argument : arguments)
        line += L" \"" + platform::ToWide(argument) + L"\"";
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdOutput = transcript.File();
    start.hStdError = problem.File();
    PROCESS_INFORMATION process{};
    const auto began = std::chrono::steady_clock::now();
    if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, CREATE_NEW_PROCESS_GROUP, nullptr,
                        nullptr, &start, &process))
        throw Problem("cannot start " + platform::FromWide(program));
    const Handle whole(process.hProcess), thread(process.hThread);
    Play play;
    const bool ended = WaitForSingleObject(process.hProcess, kMostMilliseconds) == WAIT_OBJECT_0;
    if (!ended)
    {
        TerminateProcess(process.hProcess, 1);
        WaitForSingleObject(process.hProcess, INFINITE);
    }
    DWORD status = 0;
    GetExitCodeProcess(process.hProcess, &status);
    play.status = static_cast<int>(status);
    play.took = std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - began);
    play.transcript = transcript.Text();
    play.problem = problem.Text() + (ended ? "" : "ended by force after ten minutes\n");
    return play;
}

} // namespace acceptance
