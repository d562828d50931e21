// The statements that the component has sent: see statements.h.
#include "play/statements.h"

#include <algorithm>
#include <fstream>
#include <string_view>

namespace scenario
{

namespace
{

// Everybody else's statements are the scenario's own.
constexpr std::string_view kComponent = "KVHEADERS.DLL";

std::string_view TakeField(std::string_view &line)
{
    const std::string_view field = line.substr(0, line.find('\t'));
    line.remove_prefix(std::min(field.size() + 1, line.size()));
    return field;
}

} // namespace

std::vector<Statement> ParseLog(std::string_view log)
{
    std::vector<Statement> statements;
    while (!log.empty())
    {
        std::string_view line = log.substr(0, log.find('\n'));
        log.remove_prefix(std::min(line.size() + 1, log.size()));
        const std::string_view kind = TakeField(line);
        TakeField(line); // the connection: there is one at a time
        if (TakeField(line) != kComponent)
            continue;
        if (kind == "statement")
            statements.push_back({std::string(line), {}});
        else if (kind == "error" && !statements.empty())
            statements.back().error = line;
    }
    return statements;
}

std::vector<Statement> StatementTail::Take()
{
    std::ifstream file(m_path, std::ios::binary | std::ios::ate);
    const auto size = file ? static_cast<std::size_t>(file.tellg()) : m_read;
    std::string bytes(std::max(size, m_read) - m_read, '\0');
    file.seekg(static_cast<std::streamoff>(m_read));
    file.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(bytes.rfind('\n') + 1); // npos + 1 is 0
    m_read += bytes.size();
    return ParseLog(bytes);
}

} // namespace scenario
