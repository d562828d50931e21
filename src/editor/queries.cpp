// The queries of the window. Their blanks and line breaks are what the database's administrators know them by.
#include "editor/queries.h"

namespace editor::sql
{

std::string PartitionAndBelow(std::int32_t partitionId)
{
    const std::string id = std::to_string(partitionId);
    return "SELECT partition_id, partition_name, lineage FROM System_partitions "
           "\r\n   WHERE (partition_id = " +
           id + "\r\n    OR lineage LIKE '%/' + CAST(" + id + " AS varchar(12)) + '/%')" +
           "\r\n    AND delete_date IS NULL";
}

std::string Ancestors(std::int32_t partitionId)
{
    return "SELECT partition_id, partition_name, lineage FROM System_partitions"
           "\r\nWHERE (SELECT lineage FROM System_partitions WHERE partition_id = " +
           std::to_string(partitionId) +
           ") like '%/' + "
           "\r\nRTRIM(CAST(partition_id as varchar(12))) + '/%'";
}

std::string TagOptions()
{
    return "SELECT user_id, application_id, key_name, key_value, partition_id "
           "FROM system_user_cfg "
           "WHERE user_id = -1 AND application_id = 1 AND (key_name = 'TagKnownHeadings' OR key_name = "
           "'TagMixedCaseHeadings')";
}

std::string Accounts(std::int32_t partitionId)
{
    return "SELECT DISTINCT hosp_acct_id, hosp_acct_name, is_deleted "
           "FROM account_info "
           "WHERE is_deleted = '0' AND hosp_acct_id > '0' "
           " AND partition_id = " +
           std::to_string(partitionId) +
           "\r\nGROUP BY hosp_acct_id, hosp_acct_name, is_deleted "
           "ORDER BY hosp_acct_id";
}

std::string ReportTypes(std::int16_t accountId)
{
    return "SELECT DISTINCT report_type_nbr, report_name, hosp_acct_id "
           "FROM reports_cfg "
           "WHERE is_deleted = '0' AND hosp_acct_id = '" +
           std::to_string(accountId) +
           "' "
           "AND report_type_nbr > '0' "
           "GROUP BY report_type_nbr, report_name, hosp_acct_id "
           "ORDER BY report_name";
}

} // namespace editor::sql
