-- A site of one partition, for sessions whose save sends few statements.
INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES (1, 'Lonely', '/', NULL)
INSERT INTO Report_header_formats VALUES (1, 'Plain', 0, 0, 0, 0, 0, 0, 0, 1)
INSERT INTO Report_header_formats VALUES (2, 'Bold', 0, 0, 0, 1, 0, 0, 0, 1)
INSERT INTO Report_header_formats VALUES (3, 'Spare', 0, 0, 0, 0, 0, 0, 0, 1)
INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (10, 'PLAN', 1)
INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (11, 'SPARE', 1)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (-1, 'All', '0', 0)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (101, 'North', '0', 1)
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (10, -1, 0, 3, 1)
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (10, 101, 0, 1, 0)
-- Of an account that is gone: not loaded, and gone with its heading all the same.
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (11, 104, 0, 1, 0)
