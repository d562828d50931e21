// Loading the headings of a partition.
#include "model/colHeadings.h"

#include "host/database.h"
#include "host/modGlobalVariables.h"
#include "model/item.h"

namespace model
{

namespace
{

std::string SelectHeadings(std::int32_t partitionId)
{
    // There is no blank between the number and ORDER BY; the database accepts that.
    return "SELECT heading_id, heading "
           "FROM Report_headers "
           "WHERE flag1 = " +
           std::to_string(partitionId) + "ORDER BY heading ASC";
}

} // namespace

runtime::Ref<clsHeadings> colHeadings::Item(const runtime::Value &vntIndexKey) const
{
    return ItemOrNothing(*ColHeadingInfo, vntIndexKey);
}

void colHeadings::GetHeadingInfo()
{
    host::gResultset = host::OpenResultset(SelectHeadings(m_lngPartitionID));
    odbc::rdoResultset &rows = *host::gResultset;
    for (; !rows.AtEnd(); rows.MoveNext())
    {
        auto heading = runtime::MakeRef<clsHeadings>();
        const std::int16_t id = rows.rdoColumns(0).Integer();
        heading->FillHeadings(id, rows.rdoColumns(1).Text(), false, id == 0, false);
        ColHeadingInfo->Add(heading, std::to_string(heading->HeadID));
    }
    rows.Close();
    host::gResultset.reset();
}

} // namespace model
