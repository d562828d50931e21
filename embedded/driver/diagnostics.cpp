// What a failed call leaves behind: see diagnostics.h.
#include "diagnostics.h"

#include <algorithm>

namespace driver
{

DiagnosticRecord MakeRecord(std::string_view state, int native, std::string_view text)
{
    return {std::string(state), native, std::string(MessagePrefix).append(text)};
}

DriverError::DriverError(std::string_view state, std::string_view text, int native)
    : std::runtime_error(std::string(text)), m_records{MakeRecord(state, native, text)}
{
}

DriverError::DriverError(std::vector<DiagnosticRecord> records)
    : std::runtime_error(Describe(records)), m_records(std::move(records))
{
}

void Diagnostics::Clear()
{
    m_records.clear();
    m_returnCode = SQL_SUCCESS;
}

std::string Describe(const std::vector<DiagnosticRecord> &records)
{
    if (records.empty())
        return {};
    const auto telling =
        std::find_if(records.begin(), records.end(), [](const auto &r) { return r.state.compare(0, 2, "01") != 0; });
    const DiagnosticRecord &record = telling == records.end() ? records.front() : *telling;
    return record.state + ": " + record.text;
}

} // namespace driver
