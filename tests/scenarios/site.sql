-- A small site for the scenarios. The host's partition is 3: 1 and 2 are its ancestors, 4 stands below it, 5 beside it; 6
-- below it is deleted.
INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES (1, 'Network', '/', NULL)
INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES (2, 'Region', '/1/', NULL)
INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES (3, 'Hospital', '/1/2/', NULL)
INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES (4, 'Clinic', '/1/2/3/', NULL)
INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES (5, 'Sister', '/1/2/', NULL)
INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES (6, 'Closed', '/1/2/3/', '2003-06-30T17:45:00')

-- Formats: 0 and 12 are the system's.
INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before, insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, flag1) VALUES (0, 'Default', 0, 0, 1, 0, 0, 0, 1, 1)
INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before, insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, flag1) VALUES (1, 'Plain', 0, 0, 0, 0, 0, 0, 0, 1)
INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before, insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, flag1) VALUES (2, 'Region Block', 1, 1, 0, 0, 0, 0, 0, 2)
INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before, insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, flag1) VALUES (10, 'Bold', 0, 0, 1, 1, 0, 0, 0, 3)
INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before, insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, flag1) VALUES (11, 'Underlined', 0, NULL, 2, 0, 1, -1, 0, 3)
INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before, insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, flag1) VALUES (12, 'Title', 1, 1, 0, 1, 1, 1, 1, 3)
INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before, insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, flag1) VALUES (20, 'Clinic Compact', 0, 0, 1, 0, 0, 1, 0, 4)
INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before, insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, flag1) VALUES (30, 'Sister Wide', 1, 1, 1, 0, 0, 0, 0, 5)

INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (0, '<Default>', 1)
INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (1, 'ALLERGIES', 1)
INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (2, 'FINDINGS', 2)
INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (10, 'CONCLUSION', 3)
INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (11, 'IMPRESSION', 3)
INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (12, 'PLAN', 3)
INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (20, 'EXAMINATION', 4)
INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (30, 'PROCEDURE', 5)

-- Accounts: 104 is deleted, 401 belongs to a deleted partition.
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (-1, 'All Accounts', '0', 0)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (101, '  North  ', '0', 3)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (102, 'East', '0', 3)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (103, 'West', '0', 3)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (104, 'Gone', '1', 3)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (201, 'Clinic Desk', '0', 4)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (301, 'Sister Desk', '0', 5)
INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES (401, 'Closed Desk', '0', 6)

-- Report types: account 103 has none of its own.
INSERT INTO reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted) VALUES (0, 'Report Default', -1, '0')
INSERT INTO reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted) VALUES (0, 'Report Default', 101, '0')
INSERT INTO reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted) VALUES (1, 'Chest ', 101, '0')
INSERT INTO reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted) VALUES (2, 'Abdomen', 101, '0')
INSERT INTO reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted) VALUES (3, 'Skull', 101, '1')
INSERT INTO reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted) VALUES (0, 'Report Default', 102, '0')
INSERT INTO reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted) VALUES (1, 'Chest', 102, '0')
INSERT INTO reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted) VALUES (0, 'Report Default', 103, '0')
INSERT INTO reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted) VALUES (0, 'Report Default', 201, '0')
INSERT INTO reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted) VALUES (1, 'Visit', 201, '0')

-- Settings. Heading 12 has a format of another partition for account 101; heading 99 is no more.
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (0, -1, 0, 0, 3)
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (10, -1, 0, 10, 3)
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (10, 101, 0, 11, 0)
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (10, 101, 1, 12, 0)
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (10, 102, 0, 1, 0)
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (10, 103, 0, 2, 0)
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (11, -1, 0, 2, 3)
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (11, 102, 0, 10, 0)
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (12, -1, 0, 1, 3)
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (12, 101, 0, 20, 0)
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (20, 201, 0, 20, 0)
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (99, -1, 0, 10, 3)

-- Tagging options: one of 3 is stored; those of 5 do not concern the host's partition.
INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value, partition_id) VALUES (-1, 1, 'TagKnownHeadings', 'True', 3)
INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value, partition_id) VALUES (-1, 1, 'TagKnownHeadings', 'True', 5)
INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value, partition_id) VALUES (-1, 1, 'NextSRFormatID', '41', NULL)
INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value, partition_id) VALUES (-1, 1, 'NextSRHeaderID', '        51', NULL)
