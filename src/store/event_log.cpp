// The event log, and the report of a trapped error to the user and to the log.
#include "store/modDataActivity.h"

#include "host/database.h"
#include "host/modGlobalVariables.h"
#include "platform/desktop.h"
#include "store/statements.h"

namespace store
{

namespace
{

// Shows the trap's error after the prefix and returns the text that was shown.
std::string ShowError(const runtime::ErrorTrap &trap, const std::string &prefix)
{
    std::string text = prefix + trap.Description();
    platform::MsgBox(text, platform::kExclamation, "Error");
    return text;
}

} // namespace

// A failure of the row is itself shown and logged, and so on until one is written, which is intentional: also while the
// database cannot be reached. A loop, since there is no knowing how long that takes. It ends when there is nothing left
// to write over: the component has disconnected, or its window is gone (which the box raises).
void WriteLogEntry(std::int32_t code, const std::string &message)
{
    std::int32_t entryCode = code;
    std::string entry = message;
    while (host::HasConnection())
    {
        runtime::ErrorTrap trap;
        trap.Try(
            [&]
            {
                const host::DatabaseAction attempt(host::DatabaseAction::Kind::LogEntry);
                host::Execute(sql::InsertLogEntry(host::gUserID, entryCode, entry));
            });
        if (!trap.Pending())
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
