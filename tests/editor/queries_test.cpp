// The window's queries, whole.
#include "editor/queries.h"

#include <gtest/gtest.h>

using namespace editor;

namespace
{

TEST(Queries, OfPartitions)
{
    EXPECT_EQ("SELECT partition_id, partition_name, lineage FROM System_partitions \r\n"
              "   WHERE (partition_id = 5\r\n"
              "    OR lineage LIKE '%/' + CAST(5 AS varchar(12)) + '/%')\r\n"
              "    AND delete_date IS NULL",
              sql::PartitionAndBelow(5));
    EXPECT_EQ("SELECT partition_id, partition_name, lineage FROM System_partitions\r\n"
              "WHERE (SELECT lineage FROM System_partitions WHERE partition_id = -1) like '%/' + \r\n"
              "RTRIM(CAST(partition_id as varchar(12))) + '/%'",
              sql::Ancestors(-1));
}

TEST(Queries, OfTagOptions)
{
    EXPECT_EQ("SELECT user_id, application_id, key_name, key_value, partition_id FROM system_user_cfg "
              "WHERE user_id = -1 AND application_id = 1 AND "
              "(key_name = 'TagKnownHeadings' OR key_name = 'TagMixedCaseHeadings')",
              sql::TagOptions());
}

TEST(Queries, OfAccountsAndReportTypes)
{
    EXPECT_EQ("SELECT DISTINCT hosp_acct_id, hosp_acct_name, is_deleted FROM account_info "
              "WHERE is_deleted = '0' AND hosp_acct_id > '0'  AND partition_id = 70000\r\n"
              "GROUP BY hosp_acct_id, hosp_acct_name, is_deleted ORDER BY hosp_acct_id",
              sql::Accounts(70000));
    EXPECT_EQ("SELECT DISTINCT report_type_nbr, report_name, hosp_acct_id FROM reports_cfg "
              "WHERE is_deleted = '0' AND hosp_acct_id = '7' AND report_type_nbr > '0' "
              "GROUP BY report_type_nbr, report_name, hosp_acct_id ORDER BY report_name",
              sql::ReportTypes(7));
}

} // namespace
