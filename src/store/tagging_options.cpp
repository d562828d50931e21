// Saving one of a partition's two tagging options.
#include "store/modDataActivity.h"

#include "host/database.h"
#include "model/globals.h"
#include "store/statements.h"

namespace store
{

namespace
{

void Write(std::int32_t partitionId, bool mixedCase)
{
    const runtime::Ref<model::clsPartition> partition =
        model::gPartitions->m_colPartitions->Item(std::to_string(partitionId));
    model::clsPartition &options = *partition;
    const bool value = mixedCase ? options.m_blnAllowMixedCaseHeadings : options.m_blnTagKnownHeadings;
    bool &found = mixedCase ? options.m_blnMixFound : options.m_blnKnownFound;
    if (found)
    {
        host::Execute(sql::UpdateTaggingOption(partitionId, mixedCase, value));
        return;
    }
    // Set before the statement runs: an insert that fails counts as a row all the same.
    found = true;
    try
    {
        host::Execute(sql::InsertTaggingOption(partitionId, mixedCase, value));
    }
    catch (const runtime::Error &)
    {
        if (host::SaveHasEnded())
            found = false; // the next Save starts from what this one has found
        throw;
    }
}

} // namespace

void SaveTaggingOption(std::int32_t partitionId, bool mixedCase)
{
    runtime::ErrorTrap trap;
    trap.Try([&] { Write(partitionId, mixedCase); });
    if (!host::SaveHasEnded()) // which Save reports itself
        ReportError(trap, "Error encountered while accessing data: ", kSavingTaggingOption);
}

} // namespace store
