// The event log, and the report of a trapped error to the person and to the log.
#include "store/modDataActivity.h"

#include "host/modGlobalVariables.h"
#include "platform/desktop.h"
#include "store/statements.h"

namespace store
{

namespace
{

// Shows the trap's error under the prefix and gives the text that was shown.
std::string ShowError(const runtime::ErrorTrap &trap, const std::string &prefix)
{
    std::string text = prefix + trap.Description();
    platform::MsgBox(text, platform::kExclamation, "Error");
    return text;
}

} // namespace

// A failure of the row is itself shown and logged, and so on until one is written, which is meant. A loop, since there
// is no knowing how long that takes. Only numbers above 0 count: a connection that is gone has a negative one, and
// would otherwise hold the person between boxes for good, with the host behind them.
void WriteLogEntry(std::int32_t code, const std::string &message)
{
    std::int32_t entryCode = code;
    std::string entry = message;
    for (;;)
    {
        runtime::ErrorTrap trap;
        trap.Try([&] { host::Connection().Execute(sql::InsertLogEntry(host::gUserID, entryCode, entry)); });
        if (trap.Number() <= 0)
            return;
        entry = ShowError(trap, "Error encountered while logging: ");
        entryCode = kLogging;
    }
}

void ReportError(const runtime::ErrorTrap &trap, const std::string &prefix, std::int32_t code)
{
    if (trap.Pending())
        WriteLogEntry(code, ShowError(trap, prefix));
}

} // namespace store
