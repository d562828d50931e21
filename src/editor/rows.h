// Walking the rows of a query of the window.
#pragma once

#include "host/database.h"
#include "host/modGlobalVariables.h"
#include "runtime/error_trap.h"

#include <string>

namespace editor
{

// Visits each row, then closes the result set. An error of the query or of a visit ends the walk and is raised.
template <class Visit>
void ForEachRow(const std::string &query, Visit &&visit)
{
    const auto rows = host::OpenResultset(query);
    host::gResultset = rows;
    for (; !rows->AtEnd(); rows->MoveNext())
        visit(*rows);
    rows->Close();
}

// The same for a routine that carries on after errors: a visit that fails is the visitor's own affair, a query or a
// fetch that fails ends the rows.
template <class Query, class Visit>
void ForEachRow(runtime::ErrorTrap &trap, Query &&query, Visit &&visit)
{
    trap.Try([&] { ForEachRow(query(), visit); });
    trap.Try([] { host::gResultset.reset(); });
}

} // namespace editor
