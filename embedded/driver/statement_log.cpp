// The statement log: see statement_log.h.
#include "statement_log.h"

#include "text.h"

#include <atomic>

#include <fcntl.h>
#include <unistd.h>

namespace driver
{

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

} // namespace driver
