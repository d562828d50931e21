// A partition's start values, its id, and the lineage rule.
#include "model/clsPartition.h"

#include "host/modGlobalVariables.h"

namespace model
{

clsPartition::clsPartition()
    : m_blnTagKnownHeadings(host::gIniTagKnownHeadings), m_blnAllowMixedCaseHeadings(host::gIniTagMixedCaseHeadings)
{
}

void clsPartition::SetPartitionID(std::int32_t p_lngPartitionID)
{
    m_lngPartitionID = p_lngPartitionID;
    m_objcolFormats->m_lngPartitionID = p_lngPartitionID;
    m_objcolHeadings->m_lngPartitionID = p_lngPartitionID;
}

bool IsInLineage(std::int32_t partitionId, const std::string &lineage)
{
    return lineage.find("/" + std::to_string(partitionId) + "/") != std::string::npos;
}

} // namespace model
