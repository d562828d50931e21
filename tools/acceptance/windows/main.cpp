// acceptance: plays the scenarios of its folder on the real window and a database of this site, and reports.
#include "acceptance/verdict.h"
#include "acceptance/windows/machine.h"
#include "acceptance/windows/player.h"
#include "acceptance/windows/problem.h"
#include "acceptance/windows/registration.h"
#include "platform/windows/wide.h"

#include <windows.h>

#include <objbase.h>
#include <shellapi.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace
{

namespace fs = std::filesystem;
using namespace acceptance;

constexpr int kPassed = 0;
constexpr int kFailed = 1;
constexpr int kNotBegun = 2;
constexpr int kNoDatabase = 3; // of the player

constexpr char kUsage[] =
    R"(usage: accept.cmd NAME [USER]
Plays the scenarios of this folder with the component of this folder: on its real window, and on the database behind the
ODBC data source NAME (of 32-bit programs), which must be empty. Leaves the file report-*.txt in this folder.
The password of USER is taken from the environment variable KVHEADERS_PASSWORD, or asked for. Without USER, the login is
that of Windows. The component is registered for the current user, and the tables of the editor are made in the database;
both are removed at the end. Do not run it elevated, and leave keyboard and mouse alone meanwhile.
Exit status: 0 when all scenarios passed, 1 when some failed, 2 when they could not be played.
)";

std::atomic<bool> s_stop = false;

BOOL WINAPI StopAfterThis(DWORD)
{
    s_stop = true;
    return TRUE;
}

std::vector<std::string> Arguments()
{
    int count = 0;
    wchar_t **const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> arguments;
    for (int i = 1; i < count; ++i)
        if (*words[i])
            arguments.push_back(platform::FromWide(words[i]));
    LocalFree(words);
    return arguments;
}

fs::path OwnFolder()
{
    wchar_t name[MAX_PATH + 1] = L"";
    GetModuleFileNameW(nullptr, name, MAX_PATH);
    return fs::path(name).parent_path();
}

std::string Read(const fs::path &file)
{
    std::ifstream stream(file, std::ios::binary);
    if (!stream)
        throw Problem("cannot read " + file.string());
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<fs::path> Scenarios()
{
    std::vector<fs::path> files;
    for (const auto &entry : fs::recursive_directory_iterator("scenarios"))
        if (entry.path().extension() == ".scenario")
            files.push_back(entry.path());
    std::ranges::sort(files);
    if (files.empty())
        throw Problem("there are no scenarios in this folder");
    return files;
}

// The player on the data source, with tables of its own.
Play OnSource(const std::string &source, const std::vector<std::string> &more)
{
    std::vector<std::string> arguments{"--data-source", source, "--own-tables", "tables.sql", "--no-sql"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunPlayer(fs::absolute("scenario.exe").wstring(), arguments);
}

// The version of the server. What a play that was cut short has left is gone then.
std::string ServerOf(const std::string &source)
{
    const Play play = OnSource(source, {});
    if (play.status != 0)
        throw Problem(play.problem.empty() ? "the database cannot be used" : play.problem);
    return play.transcript.substr(0, play.transcript.find_first_of("\r\n"));
}

void PlayAll(const std::string &source, std::vector<Verdict> &verdicts)
{
    for (const fs::path &file : Scenarios())
    {
        if (s_stop)
            throw Problem("stopped by the user");
        fs::path approved = file;
        approved.replace_extension(".expected");
        const std::string name = file.lexically_relative("scenarios").replace_extension().generic_string();
        const Play play = OnSource(source, {file.string()});
        if (play.status == kNoDatabase)
            throw Problem("before " + name + ": " + play.problem);
        verdicts.push_back(Judge(name, play, Read(approved)));
        std::printf("%s\n", TableLine(verdicts.back()).c_str());
        std::fflush(stdout);
    }
}

int Accept(const std::string &source, const std::string &user)
{
    fs::current_path(OwnFolder());
    const std::string driver = DriverOf(source);
    SetEnvironmentVariableW(L"KVHEADERS_USER", user.empty() ? nullptr : platform::ToWide(user).c_str());
    SetEnvironmentVariableW(L"KVHEADERS_PASSWORD", user.empty() ? nullptr : Password(user).c_str());
    const std::string report = "report-" + Now("%Y%m%d-%H%M%S") + ".txt";
    std::ofstream file(report, std::ios::binary);
    if (!file)
        throw Problem("cannot write " + report + " in the folder of this program");

    std::vector<std::pair<std::string, std::string>> facts{{"begun", Now("%Y-%m-%d %H:%M:%S")},
                                                           {"Windows", Windows()},
                                                           {"data source", source + ", driver " + driver},
                                                           {"login", user.empty() ? "that of Windows" : user}};
    std::vector<Verdict> verdicts;
    std::string problem;
    try
    {
        facts.emplace_back("server", ServerOf(source));
        const Registration registration(fs::absolute("KVHEADERS.dll"));
        facts.emplace_back("component", fs::absolute("KVHEADERS.dll").string() + ", version " + registration.Version());
        PlayAll(source, verdicts);
        ServerOf(source); // a play that has come to a bad end may have been the last
    }
    catch (const std::exception &thrown)
    {
        problem = thrown.what();
        facts.emplace_back("problem", problem);
        OnSource(source, {});
    }
    facts.emplace_back("ended", Now("%Y-%m-%d %H:%M:%S"));
    file << Report(facts, verdicts);
    std::printf("\n%s\nreport: %s\n", Totals(verdicts).c_str(), report.c_str());
    if (!problem.empty())
        throw Problem(problem);
    return std::ranges::all_of(verdicts, &Verdict::Passed) ? kPassed : kFailed;
}

} // namespace

int main()
{
    const std::vector<std::string> arguments = Arguments();
    if (arguments.empty() || arguments.size() > 2 || arguments[0].starts_with("-") || arguments[0].starts_with("/"))
    {
        std::fputs(kUsage, stderr);
        return kNotBegun;
    }
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX); // the player inherits it: no dialog stops the plays
    SetConsoleCtrlHandler(&StopAfterThis, TRUE);
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    try
    {
        return Accept(arguments[0], arguments.size() > 1 ? arguments[1] : "");
    }
    catch (const std::exception &problem)
    {
        std::fprintf(stderr, "acceptance: %s\n", problem.what());
        return kNotBegun;
    }
}
