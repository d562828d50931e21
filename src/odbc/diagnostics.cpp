// Choice of the telling record and of the error number.
#include "odbc/diagnostics.h"

#include <algorithm>
#include <string_view>

namespace odbc
{

namespace
{

bool IsOfClass(const Record &record, std::string_view stateClass)
{
    return std::string_view(record.state).starts_with(stateClass);
}

// How much a record says: 0 a warning, 1 the general refusal that comes beside the real cause, 2 everything else.
int Weight(const Record &record)
{
    if (IsOfClass(record, "01"))
        return 0;
    return record.state == "08001" ? 1 : 2;
}

bool IsGeneralFailure(const Record &record)
{
    return record.state == "HY000" || record.state == "HYT00" || record.state == "HYT01" || IsOfClass(record, "08");
}

// Maker, driver and server lead a message in brackets. A log row holds 90 characters, which are for the cause.
std::string_view WithoutNames(std::string_view text)
{
    std::string_view rest = text;
    while (rest.starts_with('[') && rest.find(']') != std::string_view::npos)
    {
        rest.remove_prefix(rest.find(']') + 1);
        rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    }
    return rest.empty() ? text : rest;
}

// The telling record; one of this program's own when there is none.
Record TellingRecord(const std::vector<Record> &records)
{
    const auto telling = std::max_element(records.begin(), records.end(),
                                          [](const Record &a, const Record &b) { return Weight(a) < Weight(b); });
    return telling == records.end() ? Record{"HY000", "The driver gave no reason."} : *telling;
}

std::string Description(const Record &record)
{
    return record.state + ": " + std::string(WithoutNames(record.text));
}

} // namespace

runtime::Error ToError(const std::vector<Record> &records)
{
    return {runtime::kDatabaseError, Description(TellingRecord(records))};
}

runtime::Error ToConnectError(const std::vector<Record> &records)
{
    const Record telling = TellingRecord(records);
    return {IsGeneralFailure(telling) ? runtime::kGeneralDatabaseFailure : runtime::kDatabaseError,
            Description(telling)};
}

bool TellOfLoss(const std::vector<Record> &records)
{
    return std::any_of(records.begin(), records.end(), [](const Record &record) { return IsOfClass(record, "08"); });
}

} // namespace odbc
