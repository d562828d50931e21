// The partitions in scope, their tagging options, and the one that is edited.
#include "editor/frmHeadings.h"

#include "editor/queries.h"
#include "editor/records.h"
#include "editor/rows.h"
#include "host/database.h"
#include "platform/desktop.h"
#include "runtime/convert.h"
#include "runtime/text.h"
#include "store/modDataActivity.h"

namespace editor
{

namespace
{

void ReadPartitions(const std::string &query, bool parents)
{
    ForEachRow(query,
               [&](const odbc::rdoResultset &row)
               {
                   const auto partition = runtime::MakeRef<model::clsPartition>();
                   partition->m_lngPartitionID = row.rdoColumns(0).Long();
                   partition->m_strPartitionName = runtime::ToTextOrEmpty(row.rdoColumns(1).Value());
                   partition->SetPartitionID(partition->m_lngPartitionID);
                   partition->m_strLineage = runtime::ToTextOrEmpty(row.rdoColumns(2).Value());
                   partition->m_blnParent = parents;
                   model::gPartitions->m_colPartitions->Add(partition, std::to_string(partition->m_lngPartitionID));
               });
}

void TakeOverTagOption(model::clsPartition &partition, const std::string &name, const std::string &value)
{
    const std::string option = runtime::UpperCase(runtime::Trim(name));
    // The value is not trimmed: one with a blank before it is not true.
    const bool isTrue = runtime::UpperCase(value) == "TRUE";
    if (option == "TAGKNOWNHEADINGS")
    {
        partition.m_blnTagKnownHeadings = isTrue;
        partition.m_blnKnownFound = true;
    }
    else if (option == "TAGMIXEDCASEHEADINGS")
    {
        partition.m_blnAllowMixedCaseHeadings = isTrue;
        partition.m_blnMixFound = true;
    }
}

} // namespace

void frmHeadings::LoadPartitions()
{
    ReadPartitions(sql::PartitionAndBelow(host::gPartitionID), false);
    // An ancestor counts even when it is marked deleted.
    ReadPartitions(sql::Ancestors(host::gPartitionID), true);
    host::gResultset.reset();

    const controls::UpdateLock lock(cmbPartition);
    for (const auto &partition : *model::gPartitions->m_colPartitions)
        if (!partition->m_blnParent)
            cmbPartition.SetItemData(cmbPartition.AddItem(partition->m_strPartitionName), partition->m_lngPartitionID);
}

void frmHeadings::LoadTagOptions()
{
    ForEachRow(sql::TagOptions(),
               [&](const odbc::rdoResultset &row)
               {
                   const std::int32_t id = row.rdoColumns(4).Long();
                   if (PartitionExists(id))
                       TakeOverTagOption(PartitionOf(id), runtime::ToTextOrEmpty(row.rdoColumns(2).Value()),
                                         runtime::ToTextOrEmpty(row.rdoColumns(3).Value()));
               });
    // A site default that is on becomes the partition's own at once.
    const auto partitions = model::gPartitions->m_colPartitions;
    for (runtime::Ref<model::clsPartition> partition : *partitions)
    {
        if (!partition->m_blnKnownFound && partition->m_blnTagKnownHeadings)
            store::SaveTaggingOption(partition->m_lngPartitionID, false);
        if (!partition->m_blnMixFound && partition->m_blnAllowMixedCaseHeadings)
            store::SaveTaggingOption(partition->m_lngPartitionID, true);
    }
}

bool frmHeadings::PartitionExists(std::int32_t partitionId) const
{
    runtime::ErrorTrap trap;
    return trap.Try([&] { PartitionOf(partitionId); });
}

void frmHeadings::cmbPartition_Click()
{
    const platform::WaitCursor wait;
    const host::DatabaseAction change;
    const std::int32_t id = cmbPartition.ItemData(cmbPartition.ListIndex());
    model::gCurrentPartition = &PartitionOf(id);
    const runtime::Ref<model::clsPartition> partition = model::gCurrentPartition;
    model::gFormats = partition->m_objcolFormats;
    model::gHeadings = partition->m_objcolHeadings;
    chkTagKnown.SetValue(partition->m_blnTagKnownHeadings ? 1 : 0);
    chkTagMixed.SetValue(partition->m_blnAllowMixedCaseHeadings ? 1 : 0);
    FillFormatLists(true, true);
    FillHeadingList(true);
    LoadAccounts();
    // What the boxes and the Delete button act on is what the formats tab shows.
    if (SSTab1.Tab() == 1)
        SelectFirstFormat();
}

} // namespace editor
