-- An old site with every fault that check-site.sql knows, but the records that are missing altogether. Its tables have
-- neither keys nor NOT NULL. What is found is in broken-site.findings.
CREATE TABLE System_partitions (partition_id int NULL, partition_name varchar(60) NULL, lineage varchar(255) NULL,
    delete_date datetime NULL)
CREATE TABLE Report_header_formats (format_id int NULL, format_name nvarchar(30) NULL, insert_empty_line_before bit NULL,
    insert_carriage_return_after int NULL, insert_colon smallint NULL, bold smallint NULL, underline smallint NULL,
    indent varchar(1) NULL, system_format smallint NULL, flag1 smallint NULL)
CREATE TABLE Report_headers (heading_id int NULL, heading varchar(40) NULL, flag1 int NULL)
CREATE TABLE Report_header_settings (heading_id int NULL, hosp_acct_id int NULL, report_type_nbr int NULL,
    format_id int NULL, flag1 int NULL)
CREATE TABLE account_info (hosp_acct_id int NULL, hosp_acct_name varchar(60) NULL, is_deleted char(1) NULL,
    partition_id int NULL)
CREATE TABLE reports_cfg (report_type_nbr int NULL, report_name varchar(60) NULL, hosp_acct_id int NULL,
    is_deleted char(1) NULL)
CREATE TABLE System_user_cfg (user_id smallint NULL, application_id tinyint NULL, key_name varchar(50) NULL,
    key_value varchar(9) NULL, partition_id int NULL)
CREATE TABLE System_log (date_timestamp datetime NULL, severity tinyint NULL, type bit NULL, user_id tinyint NULL,
    error_code smallint NULL, hosp_acct_id smallint NULL, physician_id int NULL, msg1 varchar(89) NULL)
GO

-- 1 is sound with 2 below it, 3 is deleted.
INSERT INTO System_partitions (partition_id, partition_name, lineage, delete_date) VALUES
    (1, 'Top', '/', NULL), (2, 'Below', '/1/', NULL), (3, 'Closed', '/1/', '2003-06-30T17:45:00'),
    (4, 'Below a closed one', '/1/3/', NULL), (5, 'Ancestor missing', '/1/77/', NULL), (6, 'Ring', '/1/7/', NULL),
    (7, 'Ring', '/1/6/', NULL), (8, 'Own ancestor', '/1/8/', NULL), (9, 'No slash at the end', '/1', NULL),
    (10, 'Twice', '/1/', NULL), (10, 'Twice', '/1/', NULL), (11, 'Another top', NULL, NULL),
    (40000, 'Beyond 16 bits', '/1/', NULL), (-4, 'Negative', '/1/', NULL), (NULL, 'NULL', '/1/', NULL)

-- 18 characters of 30 can still be copied, 19 cannot.
INSERT INTO Report_header_formats (format_id, format_name, flag1) VALUES
    (0, 'Default', 1), (1, 'Bold', 1), (2, '  bold ', 1), (3, 'Bold', 2), (4, '18 characters here', 1),
    (5, '19 characters there', 1), (6, NULL, 1), (7, '   ', 1), (8, 'Twice', 1), (8, 'Twice below', 2),
    (NULL, 'No id', 1), (-5, 'Negative', 1), (40000, 'Beyond 16 bits', 1), (9, 'Nowhere', 77)

-- 3 repeats a heading of the partition above, 5 one of a partition beside it.
INSERT INTO Report_headers (heading_id, heading, flag1) VALUES
    (0, '<Default>', 1), (1, 'FINDINGS', 1), (2, ' Findings ', 1), (3, 'findings', 2), (4, 'TECHNIQUE', 2),
    (5, 'TECHNIQUE', 4), (6, '28 CHARACTERS OF A HEADING..', 1), (7, '29 CHARACTERS OF A HEADING...', 1), (8, NULL, 1),
    (9, '', 1), (10, 'TWICE', 1), (10, 'TWICE BELOW', 4), (NULL, 'NO ID', 1), (-7, 'NEGATIVE', 1), (32768, 'BEYOND', 1),
    (12, 'NOWHERE', NULL)

INSERT INTO account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id) VALUES
    (-1, 'All', '0', 0), (101, 'Sound', '0', 1), (102, 'Closed', '1', 1), (103, 'Twice', '0', 1), (103, 'Twice', '0', 2),
    (0, 'Zero', '0', 1), (NULL, 'No id', '0', 1), (70000, 'Beyond 16 bits', '0', 1)

INSERT INTO reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted) VALUES
    (0, 'Default', 101, '0'), (1, 'Sound', 101, '0'), (2, 'Retired', 101, '1'), (3, 'Twice', 101, '0'),
    (3, 'Second', 101, '0'), (-1, 'Negative', 101, '0'), (NULL, 'No id', NULL, '0')

-- The first two lines are sound.
INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES
    (1, 101, 0, 1, 0), (1, 101, 1, 1, 0), (1, 101, 2, 1, 0), (1, 102, 0, 1, 0),
    (1, -1, 0, 1, 1), (1, -1, 0, 2, 2), (0, -1, 0, 1, 1),
    (500, 101, 0, 1, 0), (500, 101, 1, 1, 0), (3, 101, 0, 600, 0), (3, 99, 0, 1, 0), (3, 101, 55, 1, 0), (3, -1, 0, 1, 77),
    (4, 101, 0, 2, 0), (4, 101, 0, 3, 0), (4, -1, 0, 1, 0), (4, -1, 1, 1, 1), (2, 101, 0, 1, 2),
    (NULL, 101, 0, 1, 0), (2, NULL, 0, 1, 0), (2, 101, NULL, 1, 0), (2, 101, 1, NULL, 0), (2, 101, 1, 1, NULL),
    (40002, 101, 0, 1, 0), (2, 40003, 0, 1, 0), (2, 101, 40004, 1, 0), (2, 101, 2, 40005, 0)

-- Rows of other users, applications and keys concern nobody here.
INSERT INTO System_user_cfg (user_id, application_id, key_name, key_value, partition_id) VALUES
    (-1, 1, 'NextSRFormatID', '       12', NULL), (-1, 1, 'NextSRHeaderID', '32767', NULL),
    (-1, 1, 'NextSRHeaderID', '1 000', NULL), (-1, 1, 'NextSRHeaderID', NULL, NULL), (7, 1, 'NextSRFormatID', '3', NULL),
    (-1, 1, 'TagKnownHeadings', 'True', 1), (-1, 1, 'TagMixedCaseHeadings', 'false', 1),
    (-1, 1, 'TagKnownHeadings', 'True', 2), (-1, 1, 'TagKnownHeadings', 'False', 2),
    (-1, 1, 'TagMixedCaseHeadings', ' True', 2), (-1, 1, 'TagMixedCaseHeadings', NULL, 4),
    (-1, 1, 'TagMixedCaseHeadings', 'Yes', 5), (12, 1, 'TagKnownHeadings', 'Yes', 1), (-1, 2, 'TagKnownHeadings', '1', 1),
    (-1, 1, 'TagKnownHeadings', 'True', NULL)
