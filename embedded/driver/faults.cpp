// The fault list: see faults.h.
#include "faults.h"

#include "text.h"

#include <cstdlib>
#include <vector>

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

std::vector<std::string_view> Fields(std::string_view line)
{
    std::vector<std::string_view> fields;
    for (size_t tab; (tab = line.find('\t')) != std::string_view::npos; line.remove_prefix(tab + 1))
        fields.push_back(line.substr(0, tab));
    fields.push_back(line);
    fields.resize(6);
    return fields;
}

Fault MakeFault(const std::vector<std::string_view> &fields)
{
    std::string_view when = fields[1];
    Fault fault;
    if (when.substr(0, 4) == "cut-")
    {
        fault.cut = true;
        when.remove_prefix(4);
        fault.record = MakeRecord("08S01", 0, "Communication link failure");
    }
    if (when.substr(0, 4) == "row:")
        fault.row = std::atoll(std::string(when.substr(4)).c_str());
    else if (when == "after")
        fault.after = true;
    else if (when != "before")
        throw DriverError("HY000", "The fault list has a line with an unknown time \"" + std::string(fields[1]) + "\"");
    if (!fields[3].empty())
        fault.record = {std::string(fields[3]), std::atoi(std::string(fields[4]).c_str()), Unescape(fields[5])};
    return fault;
}

} // namespace

std::optional<Fault> FaultList::Take(std::string_view statement) const
{
    if (m_path.empty())
        return std::nullopt;
    const LockedFile file(m_path);
    const std::string text = file.Read();
    for (size_t start = 0; start < text.size();)
    {
        const size_t end = std::min(text.find('\n', start), text.size());
        std::string_view line(text.data() + start, end - start);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (!line.empty() && line[0] != '#')
        {
            const std::vector<std::string_view> fields = Fields(line);
            const long count = std::atol(std::string(fields[0]).c_str());
            if (count > 0 && statement.find(Unescape(fields[2])) != std::string_view::npos)
            {
                Fault fault = MakeFault(fields);
                file.Replace(text.substr(0, start) + std::to_string(count - 1) + text.substr(start + fields[0].size()));
                return fault;
            }
        }
        start = end + 1;
    }
    return std::nullopt;
}

} // namespace driver
