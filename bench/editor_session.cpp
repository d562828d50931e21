// Opening the editor without a window.
#include "editor_session.h"

#include "host/clsConfig.h"
#include "host/forms.h"
#include "host/modGlobalVariables.h"
#include "host/modMain.h"
#include "support/escape.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace bench
{

namespace
{

namespace fs = std::filesystem;

class IdleView final : public editor::FormView
{
public:
    explicit IdleView(std::function<void()> whenIdle) : m_whenIdle(std::move(whenIdle)) {}
    void Create() override {}
    void ClientSizeChanged() override {}
    void Show() override {}
    void RunModal() override { m_whenIdle(); }
    void EndModal() override {}
    void Destroy() override {}
    void BringToFront() override {}
    platform::WindowHandle Handle() const override { return nullptr; }
    host::Place Bounds() const override { return {}; }

private:
    std::function<void()> m_whenIdle;
};

[[noreturn]] void Fail(const std::string &text)
{
    std::fprintf(stderr, "bench: %s\n", text.c_str());
    std::exit(1);
}

fs::path SitesFolder()
{
    const char *const folder = std::getenv("KV_BENCH_SITES");
    if (!folder)
        Fail("KV_BENCH_SITES names no folder; ./bench sets it");
    return folder;
}

} // namespace

double Time(const std::function<void()> &act)
{
    const auto start = Clock::now();
    act();
    return Seconds(Clock::now() - start).count();
}

double Median(int runs, const std::function<double()> &measure)
{
    std::vector<double> times;
    for (int i = 0; i < runs; ++i)
        times.push_back(measure());
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

platform::Answer QuietDesktop::ShowMessage(const std::string &text, int flags, const std::string &)
{
    if (flags == platform::kYesNoQuestion)
        return platform::Answer::Yes;
    Fail("a message came up: " + text);
}

Site::Site(const std::string &name, bool logged)
{
    const fs::path original = SitesFolder() / (name + ".db");
    m_file = (SitesFolder() / ("work-" + std::to_string(getpid()) + ".db")).string();
    m_log = m_file + ".log";
    fs::copy_file(original, m_file, fs::copy_options::overwrite_existing);
    fs::remove(m_log);
    runtime::MakeRef<host::clsConfig>()->SetPartitionID(1);
    host::gSqlServerName = "embedded";
    host::gSqlDbName = m_file + (logged ? ";StatementLog=" + m_log : "");
    if (!host::Connect())
        Fail("no connection to " + m_file);
}

Site::~Site()
{
    host::Disconnect();
    host::gConnection.reset();
    host::gEnvironment.reset();
    for (const char *const ending : {"", "-wal", "-shm", ".log"})
        fs::remove(m_file + ending);
}

double Site::Open(const std::function<void(editor::frmHeadings &)> &whileOpen)
{
    editor::frmHeadings form;
    Clock::time_point idle;
    editor::SetFormViewFactory(
        [&](editor::StagedForm &)
        {
            return std::make_unique<IdleView>(
                [&]
                {
                    idle = Clock::now();
                    if (whileOpen)
                        whileOpen(form);
                });
        });
    const auto start = Clock::now();
    form.ShowModal();
    editor::SetFormViewFactory({});
    return Seconds(idle - start).count();
}

std::vector<std::string> Site::Sent()
{
    std::vector<std::string> statements;
    std::ifstream log(m_log, std::ios::binary);
    log.seekg(static_cast<std::streamoff>(m_read));
    for (std::string line; std::getline(log, line);)
    {
        m_read += line.size() + 1;
        const auto text = line.rfind('\t');
        if (text != std::string::npos && line.starts_with("statement\t"))
            statements.push_back(support::Unescape(std::string_view(line).substr(text + 1)));
    }
    return statements;
}

} // namespace bench
