// Opening the real window.
#include "window/shown_editor.h"

#include "driver/escape.h"
#include "host/clsConfig.h"
#include "host/forms.h"
#include "host/modGlobalVariables.h"
#include "host/modMain.h"
#include "window_driver/watcher.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace bench
{

namespace
{

using Clock = std::chrono::steady_clock;

[[noreturn]] void Fail(const std::string &text)
{
    std::fprintf(stderr, "bench: %s\n", text.c_str());
    std::exit(1);
}

std::string SitesFolder()
{
    const char *const folder = std::getenv("KV_BENCH_SITES");
    if (!folder)
        Fail("KV_BENCH_SITES names no folder");
    return folder;
}

} // namespace

ShownSite::ShownSite(const std::string &name, int partition, bool logged)
    : m_file(SitesFolder() + "/" + name + ".db"), m_log(m_file + ".log")
{
    if (!std::filesystem::exists(m_file))
        Fail("there is no site " + m_file);
    std::filesystem::remove(m_log);
    const std::string ini = SitesFolder() + "/ZENTRA.INI";
    std::ofstream(ini, std::ios::binary) << "[System]\r\nNetworkRootDir=C:\\\r\n";
    const auto config = runtime::MakeRef<host::clsConfig>();
    config->SetPartitionID(partition);
    config->SetSqlServerName("embedded");
    config->SetSqlDbName(m_file + (logged ? ";StatementLog=" + m_log : ""));
    config->SetSqlUserName("sa");
    config->SetZentra_INIFile(ini);
}

ShownSite::~ShownSite()
{
    host::Disconnect();
    host::gConnection.reset();
    host::gEnvironment.reset();
    std::filesystem::remove(m_log);
}

double ShownSite::Open(const std::function<void(editor::frmHeadings &)> &whileOpen)
{
    // The thread's timer has its turn when nothing else waits, paintings included.
    Clock::time_point ready;
    const window_driver::Watcher watcher({{},
                                          [&](HWND window)
                                          {
                                              ready = Clock::now();
                                              if (whileOpen)
                                                  whileOpen(
                                                      dynamic_cast<editor::frmHeadings &>(*host::LoadedForms().back()));
                                              DestroyWindow(window);
                                          }});
    const auto start = Clock::now();
    host::gConfig->ShowForm();
    if (ready == Clock::time_point())
        Fail("the editor did not open on " + m_file);
    return std::chrono::duration<double>(ready - start).count();
}

std::vector<std::string> ShownSite::Sent() const
{
    std::vector<std::string> statements;
    std::ifstream log(m_log, std::ios::binary);
    for (std::string line; std::getline(log, line);)
    {
        const auto text = line.rfind('\t');
        if (text != std::string::npos && line.starts_with("statement\t"))
            statements.push_back(driver::Unescape(std::string_view(line).substr(text + 1)));
    }
    return statements;
}

} // namespace bench
