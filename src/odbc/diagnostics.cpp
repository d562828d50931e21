// Choice of the telling record and of the error number.
#include "odbc/diagnostics.h"

#include <string_view>

namespace odbc
{

namespace
{

// How much a record says: 0 a warning, 1 the general refusal that comes beside the real cause, 2 everything else.
int Weight(const Record &record)
{
    const std::string_view state = record.state;
    if (state.substr(0, 2) == "01")
        return 0;
    return state == "08001" ? 1 : 2;
}

bool IsGeneralFailure(std::string_view state)
{
    return state == "HY000" || state == "HYT00" || state == "HYT01" || state.substr(0, 2) == "08";
}

} // namespace

runtime::Error ToError(const std::vector<Record> &records)
{
    const Record *telling = nullptr;
    for (const Record &record : records)
        if (!telling || Weight(record) > Weight(*telling))
            telling = &record;
    if (!telling)
        return runtime::Error(runtime::kGeneralDatabaseFailure, "HY000: The driver gave no reason.");
    return runtime::Error(IsGeneralFailure(telling->state) ? runtime::kGeneralDatabaseFailure : runtime::kDatabaseError,
                          telling->state + ": " + telling->text);
}

} // namespace odbc
