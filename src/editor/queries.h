// The queries of the window itself, as texts.
#pragma once

#include <cstdint>
#include <string>

namespace editor::sql
{

// The partition and all its live descendants.
std::string PartitionAndBelow(std::int32_t partitionId);
// Every partition in the lineage of this one, deleted ones too.
std::string Ancestors(std::int32_t partitionId);
std::string TagOptions();
std::string Accounts(std::int32_t partitionId);
// The report types of an account, whatever the partition.
std::string ReportTypes(std::int16_t accountId);

} // namespace editor::sql
