// The log of statements: see statement_log.h.
#include "statement_log.h"

#include "escape.h"

#include <atomic>

#include <unistd.h>

namespace driver
{

StatementLog::StatementLog(const std::string &path, std::string_view application)
{
    static std::atomic<int> connections{0};
    m_file.pubsetbuf(nullptr, 0);
    if (!path.empty())
        m_file.open(path, std::ios::out | std::ios::app | std::ios::binary);
    m_prefix =
        "\t" + std::to_string(getpid()) + "." + std::to_string(++connections) + "\t" + Escape(application) + "\t";
}

void StatementLog::Write(std::string_view kind, std::string_view text)
{
    if (!m_file.is_open())
        return;
    const std::string line = std::string(kind) + m_prefix + Escape(text) + "\n";
    m_file.sputn(line.data(), static_cast<std::streamsize>(line.size())); // a full disk must not fail the statement
}

} // namespace driver
