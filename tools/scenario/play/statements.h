// The statements that the component has sent, from the embedded database's log.
#pragma once

#include <string>
#include <vector>

namespace scenario
{

struct Statement
{
    std::string text;  // escaped
    std::string error; // escaped; empty when the statement succeeded
};

// Reads a log that grows while it is read.
class StatementTail
{
public:
    explicit StatementTail(std::string path) : m_path(std::move(path)) {}

    // The component's statements since the last call, in their order.
    std::vector<Statement> Take();

private:
    std::string m_path;
    std::size_t m_read = 0; // bytes
};

// The statements in a piece of the log that ends with a whole line.
std::vector<Statement> ParseLog(std::string_view log);

} // namespace scenario
