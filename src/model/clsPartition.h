// One partition (tenant) that the user may edit, with its formats and headings.
#pragma once

#include "model/colFormats.h"
#include "model/colHeadings.h"
#include "runtime/ref.h"

#include <cstdint>
#include <string>

namespace model
{

class clsPartition : public runtime::RefCounted<clsPartition>
{
public:
    // Starts with empty collections and the site's tagging defaults.
    clsPartition();

    std::string m_strPartitionName;
    std::int32_t m_lngPartitionID = 0;
    bool m_blnParent = false; // an ancestor of the host's partition: its records are shown, not edited
    std::string m_strLineage; // the ids of its ancestors between slashes
    bool m_blnTagKnownHeadings;
    bool m_blnKnownFound = false; // the database has a row for the option
    bool m_blnAllowMixedCaseHeadings;
    bool m_blnMixFound = false; // the database has a row for the option
    runtime::Ref<colFormats> m_objcolFormats = runtime::MakeRef<colFormats>();
    runtime::Ref<colHeadings> m_objcolHeadings = runtime::MakeRef<colHeadings>();

    // Sets the id here and in both collections. Loads nothing.
    void SetPartitionID(std::int32_t p_lngPartitionID);
};

// True when the lineage contains the id between slashes, that is, when it is an ancestor of the lineage's partition.
bool IsInLineage(std::int32_t partitionId, const std::string &lineage);

} // namespace model
