// The log of statements and the list of faults: see watching.h.
#include "watching.h"

#include "text.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace driver
{
namespace
{

// The file, locked against other processes for as long as this lives.
class LockedFile
{
public:
    explicit LockedFile(const std::string &path) : m_file(open(path.c_str(), O_RDWR | O_CLOEXEC))
    {
        if (m_file >= 0)
            flock(m_file, LOCK_EX);
    }
    ~LockedFile()
    {
        if (m_file >= 0)
            close(m_file);
    }
    LockedFile(const LockedFile &) = delete;
    LockedFile &operator=(const LockedFile &) = delete;

    std::string Read() const
    {
        std::string text;
        char buffer[4096];
        for (ssize_t got; m_file >= 0 && (got = read(m_file, buffer, sizeof buffer)) > 0;)
            text.append(buffer, static_cast<size_t>(got));
        return text;
    }

    void Replace(const std::string &text) const
    {
        if (pwrite(m_file, text.data(), text.size(), 0) != static_cast<ssize_t>(text.size()) ||
            ftruncate(m_file, static_cast<off_t>(text.size())) != 0)
            throw DriverError("HY000", "The fault list cannot be written");
    }

private:
    int m_file;
};

// COUNT, WHEN, TEXT, SQLSTATE, NATIVE, MESSAGE; those that are missing are empty.
std::vector<std::string> Fields(std::string_view line)
{
    std::vector<std::string> fields;
    for (size_t tab; (tab = line.find('\t')) != std::string_view::npos; line.remove_prefix(tab + 1))
        fields.emplace_back(line.substr(0, tab));
    fields.emplace_back(line.substr(0, line.find('\r')));
    fields.resize(6);
    return fields;
}

Fault MakeFault(const std::vector<std::string> &fields)
{
    std::string when = fields[1];
    Fault fault;
    if (when.compare(0, 4, "cut-") == 0)
    {
        fault.cut = true;
        fault.record = MakeRecord("08S01", 0, "Communication link failure");
        when.erase(0, 4);
    }
    if (when.compare(0, 4, "row:") == 0)
        fault.row = std::atoll(when.c_str() + 4);
    else if (when == "after")
        fault.after = true;
    else if (when != "before")
        throw DriverError("HY000", "The fault list has a line with an unknown time \"" + fields[1] + "\"");
    if (!fields[3].empty())
        fault.record = {fields[3], std::atoi(fields[4].c_str()), Unescape(fields[5])};
    return fault;
}

} // namespace

StatementLog::StatementLog(const std::string &path, std::string_view application)
{
    if (path.empty())
        return;
    static std::atomic<int> connections{0};
    m_file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    m_prefix =
        "\t" + std::to_string(getpid()) + "." + std::to_string(++connections) + "\t" + Escape(application) + "\t";
}

StatementLog::~StatementLog()
{
    if (m_file >= 0)
        close(m_file);
}

void StatementLog::Write(std::string_view kind, std::string_view text)
{
    if (m_file < 0)
        return;
    const std::string line = std::string(kind) + m_prefix + Escape(text) + "\n";
    // a log that cannot be written (full disk) must not fail the statement
    [[maybe_unused]] const ssize_t written = write(m_file, line.data(), line.size());
}

std::optional<Fault> TakeFault(const std::string &path, std::string_view statement)
{
    if (path.empty())
        return std::nullopt;
    const LockedFile file(path);
    const std::string text = file.Read();
    for (size_t start = 0, end = 0; start < text.size(); start = end + 1)
    {
        end = std::min(text.find('\n', start), text.size());
        const std::vector<std::string> fields = Fields(std::string_view(text).substr(start, end - start));
        const long count = std::atol(fields[0].c_str()); // 0 of comments and empty lines
        if (count <= 0 || statement.find(Unescape(fields[2])) == std::string_view::npos)
            continue;
        Fault fault = MakeFault(fields);
        file.Replace(text.substr(0, start) + std::to_string(count - 1) + text.substr(start + fields[0].size()));
        return fault;
    }
    return std::nullopt;
}

} // namespace driver
