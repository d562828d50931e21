// Opening the editor without a window.
#include "editor_session.h"

#include "driver/escape.h"
#include "host/clsConfig.h"
#include "host/forms.h"
#include "host/modGlobalVariables.h"
#include "host/modMain.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <malloc.h>
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
    host::Rectangle Bounds() const override { return {}; }

private:
    std::function<void()> m_whenIdle;
};

[[noreturn]] void Fail(const std::string &text)
{
    std::fprintf(stderr, "bench: %s\n", text.c_str());
    std::exit(1);
}

} // namespace

// Neither of the two is to be made part of its caller: a profiler looks for them by name.
[[gnu::noinline]] double Time(const std::function<void()> &act)
{
    const auto start = Clock::now();
    act();
    return Seconds(Clock::now() - start).count();
}

[[gnu::noinline]] double TimeBare(const std::function<void()> &act)
{
    const auto start = Clock::now();
    act();
    return Seconds(Clock::now() - start).count();
}

std::string SiteFile(const std::string &name)
{
    const char *const folder = std::getenv("KV_BENCH_SITES");
    if (!folder)
        Fail("KV_BENCH_SITES names no folder; bench/run sets it");
    return (fs::path(folder) / (name + ".db")).string();
}

platform::Answer QuietDesktop::ShowMessage(const std::string &text, int flags, const std::string &)
{
    if (flags == platform::kYesNoQuestion)
        return platform::Answer::Yes;
    Fail("a message came up: " + text);
}

Site::Site(const std::string &name, bool logged)
{
    m_file = SiteFile("work-" + std::to_string(getpid()));
    m_log = m_file + ".log";
    fs::copy_file(SiteFile(name), m_file, fs::copy_options::overwrite_existing);
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
    model::gPartitions = nullptr;
    model::gCurrentPartition = nullptr;
    model::gFormats = nullptr;
    model::gHeadings = nullptr;
    model::gSettings = nullptr;
    malloc_trim(0);
    for (const char *const ending : {"", "-wal", "-shm", ".log"})
        fs::remove(m_file + ending);
}

void Site::Show(editor::frmHeadings &form, const std::function<void()> &whenIdle)
{
    editor::SetFormViewFactory([&](editor::StagedForm &) { return std::make_unique<IdleView>(whenIdle); });
    form.ShowModal();
    editor::SetFormViewFactory({});
}

double Site::Open()
{
    editor::frmHeadings form;
    Clock::time_point idle;
    const auto start = Clock::now();
    Time([&] { Show(form, [&] { idle = Clock::now(); }); });
    return Seconds(idle - start).count();
}

void Site::WhileOpen(const std::function<void(editor::frmHeadings &)> &act)
{
    editor::frmHeadings form;
    Show(form, [&] { act(form); });
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
            statements.push_back(driver::Unescape(std::string_view(line).substr(text + 1)));
    }
    return statements;
}

} // namespace bench
