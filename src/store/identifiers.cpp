// Identifiers of new formats and headings, from the two counters in the database.
#include "store/modDataActivity.h"

#include "host/database.h"
#include "host/modGlobalVariables.h"
#include "store/statements.h"

namespace store
{

namespace
{

// Raised by one statement and read by another, without a transaction: when two editors interleave, both get the same
// identifier. The counters of a site are intended to behave so.
std::int32_t NextIdentifier(const sql::Counter &counter)
{
    const host::DatabaseAction add;
    host::Execute(sql::RaiseCounter(counter));
    host::gResultset = host::OpenResultset(sql::ReadCounter(counter));
    const std::int32_t next = host::gResultset->AtEnd() ? 1 : host::gResultset->rdoColumns(0).Long();
    host::gResultset->Close();
    host::gResultset.reset();
    return next;
}

} // namespace

std::int32_t NextFormatID()
{
    return NextIdentifier(sql::kFormatCounter);
}

std::int32_t NextHeaderID()
{
    return NextIdentifier(sql::kHeadingCounter);
}

} // namespace store
