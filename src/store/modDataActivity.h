// What the editor writes to the database: new identifiers, the save of all edits, the tagging options, the event log.
#pragma once

#include "runtime/error_trap.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace store
{

// Error codes of the event log. 21007 is not in use.
enum EventCode : std::int32_t
{
    kLoadingForm = 21000,
    kAddingFormat = 21001,
    kAddingHeading = 21002,
    kApplyingToAccounts = 21003,
    kApplyingToReports = 21004,
    kAccessingAccounts = 21005,
    kAccessingReports = 21006,
    kLogging = 21008,
    kSavingTaggingOption = 21009,
    kSavingAll = 21010,
    kPrintingSettings = 21011,
};

// The next identifier of a format or heading, from 1. It is used up by the call, whether or not a record is saved under
// it. Two editors that call at the same moment can get the same one: the counter is raised and read by two statements,
// which is intentional. Errors of the database are raised.
std::int32_t NextFormatID();
std::int32_t NextHeaderID();

// Writes everything that was edited in model::gPartitions and model::gSettings, record by record, without a
// transaction. A statement that fails is skipped; at the end the last error is shown in one box and logged. Changes
// none of the records' flags. False when the connection was lost and could not be re-established before anything was
// written; the user has then been told why. Error 91 when there are no partitions loaded at all.
bool SaveAll();

// Writes one tagging option (known headings, or mixed case) of a loaded partition, as a new row or over the one that is
// known to exist. An error is shown and logged; nothing is raised.
void SaveTaggingOption(std::int32_t partitionId, bool mixedCase);

// Writes one row of the event log; of the message its first 90 characters. When the row cannot be written the user is
// told and a row about that is tried, again and again until one is written, the component has disconnected or its
// window is gone. Nothing is raised.
void WriteLogEntry(std::int32_t code, const std::string &message);

// What a routine does at its end with the error that its trap holds: shows `prefix` and the error's description in a
// box titled "Error" and logs the same text under `code`. Does nothing without a pending error; the trap is left as it
// is.
void ReportError(const runtime::ErrorTrap &trap, const std::string &prefix, std::int32_t code);

// The text with every single quote doubled, as it is written between quotes in a statement.
std::string DoubleQuotes(std::string_view text);

} // namespace store
