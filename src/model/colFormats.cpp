// Loading the formats of a partition.
#include "model/colFormats.h"

#include "host/database.h"
#include "host/modGlobalVariables.h"
#include "model/item.h"

namespace model
{

namespace
{

std::string SelectFormats(std::int32_t partitionId)
{
    const std::string select = "SELECT format_id, format_name, insert_empty_line_before, "
                               "insert_carriage_return_after, insert_colon, bold, "
                               "underline, indent, system_format ";
    constexpr std::int32_t kAllPartitions = -1;
    if (partitionId == kAllPartitions)
        return select + "FROM Report_header_formats ORDER BY system_format DESC, format_name";
    return select + "FROM Report_header_formats WHERE flag1 = " + std::to_string(partitionId) +
           "\r\nORDER BY system_format DESC, format_name";
}

} // namespace

runtime::Ref<clsFormats> colFormats::Item(const runtime::Value &vntIndexKey) const
{
    return ItemOrNothing(*ColFormatInfo, vntIndexKey);
}

void colFormats::GetFormatInfo()
{
    host::gResultset = host::OpenResultset(SelectFormats(m_lngPartitionID));
    odbc::rdoResultset &rows = *host::gResultset;
    for (; !rows.AtEnd(); rows.MoveNext())
    {
        auto format = runtime::MakeRef<clsFormats>();
        const bool insertBefore = rows.rdoColumns(2).IsOne();
        const bool insertAfter = rows.rdoColumns(3).IsOne();
        const bool insertColon = rows.rdoColumns(4).IsOne();
        const bool bold = rows.rdoColumns(5).IsOne();
        const bool underline = rows.rdoColumns(6).IsOne();
        const bool indent = rows.rdoColumns(7).IsOne();
        const bool systemFormat = rows.rdoColumns(8).IsOne();
        const std::int16_t id = rows.rdoColumns(0).Integer();
        format->FillFields(id, rows.rdoColumns(1).Text(), insertBefore, insertAfter, insertColon, bold, underline,
                           indent, systemFormat, false, false);
        ColFormatInfo->Add(format, std::to_string(id));
    }
    rows.Close();
    host::gResultset.reset();
}

} // namespace model
