// Loading the settings in scope, and the index that finds those of one heading.
#include "model/colSettings.h"

#include "host/clsConfig.h"
#include "host/database.h"
#include "host/modGlobalVariables.h"
#include "model/item.h"

namespace model
{

namespace
{

std::string SelectSettings(std::int32_t partitionId)
{
    const std::string select = "SELECT heading_id, hosp_acct_id, report_type_nbr, format_id, flag1 ";
    constexpr std::int32_t kAllRows = -1;
    if (partitionId == kAllRows)
        return select + "FROM Report_header_settings ORDER BY heading_id ASC";
    // The scope is that of the host's partition, and there is nothing between its bracket and ORDER BY.
    const std::int32_t scope = host::gConfig ? host::gConfig->PartitionID() : -1;
    return select + "FROM Report_header_settings\r\n" + AccountScope(scope) + "ORDER BY heading_id ASC";
}

} // namespace

std::string AccountScope(std::int32_t partitionId)
{
    const std::string id = std::to_string(partitionId);
    // The zeros are quoted, and AND is preceded by two blanks: database administrators know the text in this form.
    return " WHERE hosp_acct_id IN ("
           "SELECT hosp_acct_id "
           "FROM account_info "
           "WHERE hosp_acct_id = -1 OR (is_deleted = '0' AND (hosp_acct_id > '0' "
           " AND partition_id IN (SELECT partition_id FROM System_partitions "
           "\r\n   WHERE (partition_id = " +
           id + "\r\n    OR lineage LIKE '%/' + CAST(" + id +
           " AS varchar(12)) + '/%')"
           "\r\n    AND delete_date IS NULL)))"
           ")";
}

runtime::Ref<clsSettings> colSettings::Item(const runtime::Value &vntIndexKey) const
{
    return ItemOrNothing(*ColSettingInfo, vntIndexKey);
}

void colSettings::AddSettingtoCollection(const runtime::Ref<clsSettings> &p_clsSetting)
{
    if (!p_clsSetting)
        runtime::Raise(runtime::kObjectNotSet);
    ColSettingInfo->Add(p_clsSetting);
}

void colSettings::GetSettingInfo()
{
    host::gResultset = host::OpenResultset(SelectSettings(m_lngPartitionID));
    odbc::rdoResultset &rows = *host::gResultset;
    for (; !rows.AtEnd(); rows.MoveNext())
    {
        auto setting = runtime::MakeRef<clsSettings>();
        setting->FillSettings(rows.rdoColumns(0).Integer(), rows.rdoColumns(1).Integer(), rows.rdoColumns(2).Integer(),
                              rows.rdoColumns(3).Integer(), rows.rdoColumns(4).Long(), false, false);
        ColSettingInfo->Add(std::move(setting));
    }
    rows.Close();
    host::gResultset.reset();
}

const colSettings::Chains &colSettings::ByHeading() const
{
    Chains &chains = m_byHeading;
    const runtime::Collection<clsSettings> &settings = *ColSettingInfo;
    const bool current = chains.collection == &settings && chains.collectionRevision == settings.Revision() &&
                         chains.headingRevision == clsSettings::HeadingRevision() &&
                         chains.next.size() <= settings.Count();
    if (!current)
    {
        chains.ends.clear();
        chains.next.clear();
        chains.collection = &settings;
        chains.collectionRevision = settings.Revision();
        chains.headingRevision = clsSettings::HeadingRevision();
    }
    // What has been appended since.
    for (std::size_t position = chains.next.size() + 1; position <= settings.Count(); ++position)
    {
        clsSettings &setting = *settings.Item(static_cast<std::int64_t>(position));
        setting.InIndex = true;
        Chains::Ends &ends = chains.ends[setting.SettingID()];
        chains.next.push_back(0); // from here on nothing fails: what counts as indexed is in its chain
        const auto place = static_cast<std::uint32_t>(position);
        if (ends.last == 0)
            ends.first = place;
        else
            chains.next[ends.last - 1] = place;
        ends.last = place;
    }
    return chains;
}

} // namespace model
