-- Checks a site's database for what the headings editor cannot show, or cannot do right. It only reads.
--
-- For SQL Server 2005 and later (sqlcmd -S SERVER -d DATABASE -i check-site.sql, or any query window), and for the embedded
-- database. The result has one row for each finding: what was found, which record it concerns, what it means, and what to
-- do. No row: nothing was found. Make a backup before a repair, and repair while nobody has the editor open.
--
-- Records are named by their ids alone, so that columns of different collations never meet in one result. A setting of a
-- closed account or of a retired report type is no finding: the site keeps it for the day the account is opened again.

-- Accounts and the two records that stand for all others
SELECT 'No account -1' AS finding, 'account_info' AS concerns,
    'The settings for all accounts are not loaded. The editor shows none of them, and each that is chosen is stored again.' AS meaning,
    'Insert an account with hosp_acct_id -1 and is_deleted 0.' AS remedy
WHERE NOT EXISTS (SELECT * FROM account_info WHERE hosp_acct_id = -1)
UNION ALL
SELECT 'No heading 0', 'Report_headers',
    'The format of headings without a setting of their own cannot be chosen: heading 0, "<Default>", stands for them.',
    'Insert a heading with heading_id 0, heading <Default>, and the topmost partition as flag1.'
WHERE NOT EXISTS (SELECT * FROM Report_headers WHERE heading_id = 0)
UNION ALL
SELECT 'No format 0', 'Report_header_formats',
    'For a heading without any setting the editor goes on showing the format of the heading before it.',
    'Insert a format with format_id 0, system_format 1, and the topmost partition as flag1.'
WHERE NOT EXISTS (SELECT * FROM Report_header_formats WHERE format_id = 0)
UNION ALL
SELECT 'Format 0 out of reach', 'partition ' + CONVERT(varchar(12), q.partition_id),
    'Format 0 belongs neither to this partition nor to one above it: the editor cannot show it for headings without a setting.',
    'Give format 0 to the topmost partition (flag1), or correct the lineage of this one.'
FROM System_partitions q
WHERE q.delete_date IS NULL AND EXISTS (SELECT * FROM Report_header_formats WHERE format_id = 0)
    AND NOT EXISTS (SELECT * FROM Report_header_formats f WHERE f.format_id = 0 AND (f.flag1 = q.partition_id
        OR q.lineage LIKE '%/' + CONVERT(varchar(12), f.flag1) + '/%'))

-- Counters of new ids. A value is compared as a number only when it is one.
UNION ALL
SELECT 'Counter behind the ids', c.key_name + ': ' + CONVERT(varchar(12), c.number) + ', largest id ' + CONVERT(varchar(12), m.largest),
    'Add hands out ids that are in use: Save fails with a duplicate key, or two records share an id.',
    'Set key_value of this row of System_user_cfg to the largest id.'
FROM (SELECT 'NextSRFormatID' AS key_name, CASE WHEN LTRIM(RTRIM(key_value)) NOT LIKE '%[^0-9]%' AND LEN(LTRIM(RTRIM(key_value))) < 10
            THEN CONVERT(int, LTRIM(RTRIM(key_value))) END AS number
        FROM System_user_cfg WHERE application_id = 1 AND user_id = -1 AND key_name = 'NextSRFormatID'
    UNION ALL
    SELECT 'NextSRHeaderID', CASE WHEN LTRIM(RTRIM(key_value)) NOT LIKE '%[^0-9]%' AND LEN(LTRIM(RTRIM(key_value))) < 10
            THEN CONVERT(int, LTRIM(RTRIM(key_value))) END
        FROM System_user_cfg WHERE application_id = 1 AND user_id = -1 AND key_name = 'NextSRHeaderID') AS c
    JOIN (SELECT 'NextSRFormatID' AS key_name, MAX(format_id) AS largest FROM Report_header_formats
    UNION ALL
    SELECT 'NextSRHeaderID', MAX(heading_id) FROM Report_headers) AS m ON m.key_name = c.key_name
WHERE c.number < m.largest
UNION ALL
SELECT 'Counter used up', k.key_name,
    'Ids end at 32767: Add ends with "Overflow".',
    'Set the counter below a wide gap of unused ids; this check reports it as behind the ids from then on.'
FROM (SELECT 'NextSRFormatID' AS key_name UNION ALL SELECT 'NextSRHeaderID') AS k
WHERE EXISTS (SELECT * FROM System_user_cfg c WHERE c.application_id = 1 AND c.user_id = -1 AND c.key_name = k.key_name
    AND CASE WHEN LTRIM(RTRIM(c.key_value)) NOT LIKE '%[^0-9]%' AND LEN(LTRIM(RTRIM(c.key_value))) < 10
        THEN CONVERT(int, LTRIM(RTRIM(c.key_value))) END >= 32767)
UNION ALL
SELECT 'Counter is no number', k.key_name,
    'Add ends with an error, since the value cannot be converted.',
    'Set key_value of this row of System_user_cfg to the largest id.'
FROM (SELECT 'NextSRFormatID' AS key_name UNION ALL SELECT 'NextSRHeaderID') AS k
WHERE EXISTS (SELECT * FROM System_user_cfg c WHERE c.application_id = 1 AND c.user_id = -1 AND c.key_name = k.key_name
    AND (c.key_value IS NULL OR LTRIM(RTRIM(c.key_value)) LIKE '%[^0-9]%' OR LEN(LTRIM(RTRIM(c.key_value))) NOT BETWEEN 1 AND 9))
UNION ALL
SELECT 'Counter stored twice', k.key_name,
    'Add counts all of the rows up and takes the value of any of them: ids are handed out twice when the values differ.',
    'Delete all but the row with the largest value.'
FROM (SELECT 'NextSRFormatID' AS key_name UNION ALL SELECT 'NextSRHeaderID') AS k
WHERE (SELECT COUNT(*) FROM System_user_cfg c WHERE c.application_id = 1 AND c.user_id = -1 AND c.key_name = k.key_name) > 1

-- Ids
UNION ALL
SELECT 'Id used twice', x.kind + ' ' + CONVERT(varchar(12), x.id) + ', rows: ' + CONVERT(varchar(12), COUNT(*)),
    'In one partition: opening ends with an error, and what comes behind is not shown. In several: an edit of one changes all.',
    'Give all rows but one a new id of their own, beyond the largest, and then the counter the largest id.'
FROM (SELECT 'heading' AS kind, heading_id AS id FROM Report_headers
    UNION ALL SELECT 'format', format_id FROM Report_header_formats
    UNION ALL SELECT 'partition', partition_id FROM System_partitions) AS x
WHERE x.id IS NOT NULL GROUP BY x.kind, x.id HAVING COUNT(*) > 1
UNION ALL
SELECT 'Id used twice', 'account ' + CONVERT(varchar(12), hosp_acct_id) + ', rows: ' + CONVERT(varchar(12), COUNT(*)),
    'The account may be listed twice, and both share their settings.',
    'Delete all rows but one, or give the others ids of their own.'
FROM account_info WHERE hosp_acct_id IS NOT NULL GROUP BY hosp_acct_id HAVING COUNT(*) > 1
UNION ALL
SELECT 'Id used twice', 'report type ' + CONVERT(varchar(12), report_type_nbr) + ' of account ' + CONVERT(varchar(12), hosp_acct_id)
        + ', rows: ' + CONVERT(varchar(12), COUNT(*)),
    'With different names, the list of report types ends with an error at the second of them.',
    'Delete all rows but one.'
FROM reports_cfg WHERE report_type_nbr IS NOT NULL AND hosp_acct_id IS NOT NULL
GROUP BY hosp_acct_id, report_type_nbr HAVING COUNT(*) > 1
UNION ALL
SELECT 'Id out of range', x.kind + ' ' + ISNULL(CONVERT(varchar(12), x.id), 'NULL'),
    'Ids are 0 to 32767. NULL or larger: opening ends with an error, and what comes behind is not shown. Negative: cannot be selected.',
    'Give it an unused id, in its settings too, and the counter the largest id.'
FROM (SELECT 'heading' AS kind, heading_id AS id FROM Report_headers
    UNION ALL SELECT 'format', format_id FROM Report_header_formats) AS x
WHERE x.id IS NULL OR x.id NOT BETWEEN 0 AND 32767
UNION ALL
SELECT 'Id out of range', 'partition ' + ISNULL(CONVERT(varchar(12), partition_id), 'NULL'),
    'Partitions are numbered 0 to 32767. NULL: opening ends with an error. Others: the setting of a heading cannot be shown ("Overflow").',
    'Give the partition an unused id, in all tables and in the lineage of those below it.'
FROM System_partitions WHERE partition_id IS NULL OR partition_id NOT BETWEEN 0 AND 32767
UNION ALL
SELECT 'Id out of range', x.kind + ' ' + ISNULL(CONVERT(varchar(12), x.id), 'NULL') + x.place,
    'Larger than 32767: the list ends with an error at it. NULL, 0 or negative: it is not listed, and its settings are not loaded.',
    'Give it an unused id from 1 to 32767, in its settings too.'
FROM (SELECT 'account' AS kind, hosp_acct_id AS id, '' AS place FROM account_info
        WHERE hosp_acct_id IS NULL OR hosp_acct_id > 32767 OR hosp_acct_id < -1 OR hosp_acct_id = 0
    UNION ALL SELECT 'report type', report_type_nbr, ' of account ' + ISNULL(CONVERT(varchar(12), hosp_acct_id), 'NULL') FROM reports_cfg
        WHERE report_type_nbr IS NULL OR report_type_nbr NOT BETWEEN 0 AND 32767) AS x
UNION ALL
SELECT 'Setting out of range', 'heading ' + ISNULL(CONVERT(varchar(12), heading_id), 'NULL') + ', account ' + ISNULL(CONVERT(varchar(12), hosp_acct_id), 'NULL')
        + ', report type ' + ISNULL(CONVERT(varchar(12), report_type_nbr), 'NULL') + ', format ' + ISNULL(CONVERT(varchar(12), format_id), 'NULL')
        + ', partition ' + ISNULL(CONVERT(varchar(12), flag1), 'NULL'),
    'Opening ends with an error at this setting: none behind it is loaded, and choices made then are stored a second time.',
    'Delete this row of Report_header_settings.'
FROM Report_header_settings
WHERE heading_id IS NULL OR heading_id NOT BETWEEN -32768 AND 32767 OR hosp_acct_id IS NULL OR hosp_acct_id NOT BETWEEN -32768 AND 32767
    OR report_type_nbr IS NULL OR report_type_nbr NOT BETWEEN -32768 AND 32767
    OR format_id IS NULL OR format_id NOT BETWEEN -32768 AND 32767 OR flag1 IS NULL

-- Names
UNION ALL
SELECT 'Name is NULL', x.kind + ' ' + ISNULL(CONVERT(varchar(12), x.id), 'NULL'),
    'Opening ends with an error at it: what comes behind it is not shown.',
    'Give it a name, or delete it with its settings.'
FROM (SELECT 'heading' AS kind, heading_id AS id FROM Report_headers WHERE heading IS NULL
    UNION ALL SELECT 'format', format_id FROM Report_header_formats WHERE format_name IS NULL) AS x
UNION ALL
SELECT 'Name is blank', x.kind + ' ' + ISNULL(CONVERT(varchar(12), x.id), 'NULL'),
    'It is an empty line in the lists.',
    'Rename it in the editor, or delete it.'
FROM (SELECT 'heading' AS kind, heading_id AS id FROM Report_headers WHERE LTRIM(RTRIM(heading)) = ''
    UNION ALL SELECT 'format', format_id FROM Report_header_formats WHERE LTRIM(RTRIM(format_name)) = '') AS x
UNION ALL
SELECT 'Name used twice', 'partition ' + CONVERT(varchar(12), flag1) + ': formats ' + CONVERT(varchar(12), MIN(format_id))
        + ' and ' + CONVERT(varchar(12), MAX(format_id)),
    'Formats of a partition that differ by case and surrounding blanks at most cannot be told apart in the editor''s lists.',
    'Rename one of them in the editor.'
FROM Report_header_formats WHERE LTRIM(RTRIM(format_name)) <> ''
GROUP BY flag1, UPPER(LTRIM(RTRIM(format_name))) HAVING COUNT(*) > 1
UNION ALL
SELECT 'Name used twice', 'partition ' + CONVERT(varchar(12), a.flag1) + ': headings ' + CONVERT(varchar(12), a.heading_id)
        + ' and ' + CONVERT(varchar(12), b.heading_id),
    'Headings of a partition, or of it and one above it, that differ by case and surrounding blanks at most: a report''s heading matches both.',
    'Rename or delete one of them in the editor.'
FROM (SELECT heading_id, flag1, UPPER(LTRIM(RTRIM(heading))) AS name FROM Report_headers WHERE LTRIM(RTRIM(heading)) <> ''
        GROUP BY heading_id, flag1, UPPER(LTRIM(RTRIM(heading)))) AS a
    JOIN (SELECT heading_id, flag1, UPPER(LTRIM(RTRIM(heading))) AS name FROM Report_headers WHERE LTRIM(RTRIM(heading)) <> ''
        GROUP BY heading_id, flag1, UPPER(LTRIM(RTRIM(heading)))) AS b ON b.name = a.name
    JOIN System_partitions q ON q.partition_id = a.flag1
WHERE (b.flag1 = a.flag1 AND b.heading_id > a.heading_id)
    OR (b.flag1 <> a.flag1 AND q.lineage LIKE '%/' + CONVERT(varchar(12), b.flag1) + '/%')
UNION ALL
SELECT 'Name too long to be copied', x.kind + ' ' + ISNULL(CONVERT(varchar(12), x.id), 'NULL') + ': ' + CONVERT(varchar(12), x.used) + ' of '
        + CONVERT(varchar(12), c.CHARACTER_MAXIMUM_LENGTH) + ' characters',
    'Add names the copy "Copy of ..." and numbers it, " (1)": longer than the column, so that Save cannot store it.',
    'Rename a copy before Save, shorten the name, or widen the column.'
FROM (SELECT 'heading' AS kind, heading_id AS id, LEN(heading) AS used, 'Report_headers' AS tab, 'heading' AS col FROM Report_headers
    UNION ALL SELECT 'format', format_id, LEN(format_name), 'Report_header_formats', 'format_name' FROM Report_header_formats) AS x
    JOIN INFORMATION_SCHEMA.COLUMNS c ON c.TABLE_NAME = x.tab AND c.COLUMN_NAME = x.col
WHERE c.CHARACTER_MAXIMUM_LENGTH > 0 AND x.used + 12 > c.CHARACTER_MAXIMUM_LENGTH

-- Settings of what is gone, one row for all settings of the same record
UNION ALL
SELECT 'Settings of a heading that is gone', 'heading ' + CONVERT(varchar(12), s.heading_id) + ', rows: ' + CONVERT(varchar(12), COUNT(*)),
    'They are loaded and never shown. A new heading that is given this id comes with them.',
    'Delete the rows of Report_header_settings with this heading_id.'
FROM Report_header_settings s WHERE NOT EXISTS (SELECT * FROM Report_headers h WHERE h.heading_id = s.heading_id)
    AND s.heading_id IS NOT NULL GROUP BY s.heading_id
UNION ALL
SELECT 'Settings of a format that is gone', 'format ' + CONVERT(varchar(12), s.format_id) + ', rows: ' + CONVERT(varchar(12), COUNT(*)),
    'The editor passes them over and shows a more general setting, though they are stored.',
    'Choose a format for these headings in the editor, or delete the rows of Report_header_settings with this format_id.'
FROM Report_header_settings s WHERE NOT EXISTS (SELECT * FROM Report_header_formats f WHERE f.format_id = s.format_id)
    AND s.format_id IS NOT NULL GROUP BY s.format_id
UNION ALL
SELECT 'Settings of an account that is gone', 'account ' + CONVERT(varchar(12), s.hosp_acct_id) + ', rows: ' + CONVERT(varchar(12), COUNT(*)),
    'They are never loaded. A new account that is given this id comes with them.',
    'Delete the rows of Report_header_settings with this hosp_acct_id.'
FROM Report_header_settings s WHERE s.hosp_acct_id <> -1
    AND NOT EXISTS (SELECT * FROM account_info a WHERE a.hosp_acct_id = s.hosp_acct_id)
GROUP BY s.hosp_acct_id
UNION ALL
SELECT 'Settings of a report type that is gone', 'report type ' + CONVERT(varchar(12), s.report_type_nbr) + ' of account '
        + CONVERT(varchar(12), s.hosp_acct_id) + ', rows: ' + CONVERT(varchar(12), COUNT(*)),
    'The report type is not listed, so that they cannot be shown.',
    'Use "Use setting for all report types" for these headings, or delete the rows of Report_header_settings.'
FROM Report_header_settings s WHERE s.report_type_nbr <> 0 AND s.hosp_acct_id <> -1
    AND EXISTS (SELECT * FROM account_info a WHERE a.hosp_acct_id = s.hosp_acct_id)
    AND NOT EXISTS (SELECT * FROM reports_cfg r WHERE r.hosp_acct_id = s.hosp_acct_id AND r.report_type_nbr = s.report_type_nbr)
GROUP BY s.hosp_acct_id, s.report_type_nbr
UNION ALL
SELECT 'Settings of a partition that is gone', 'partition ' + CONVERT(varchar(12), s.flag1) + ', rows: ' + CONVERT(varchar(12), COUNT(*)),
    'Settings for all accounts count in their own partition alone: these are loaded and never shown.',
    'Delete the rows of Report_header_settings with hosp_acct_id -1 and this flag1.'
FROM Report_header_settings s WHERE s.hosp_acct_id = -1 AND s.flag1 <> 0
    AND NOT EXISTS (SELECT * FROM System_partitions p WHERE p.partition_id = s.flag1)
GROUP BY s.flag1

-- Settings that the look-up does not find, or finds by chance
UNION ALL
SELECT 'Several settings of one key', 'heading ' + CONVERT(varchar(12), heading_id) + ', account ' + CONVERT(varchar(12), hosp_acct_id)
        + ', report type ' + CONVERT(varchar(12), report_type_nbr) + ', partition ' + CONVERT(varchar(12), flag1)
        + ', rows: ' + CONVERT(varchar(12), COUNT(*)),
    'Any of them may be the one that is shown. Changing or removing one changes or removes all.',
    'Choose the format in the editor, for "<All New>" or this account, and save: one row is left.'
FROM Report_header_settings GROUP BY heading_id, hosp_acct_id, report_type_nbr, flag1 HAVING COUNT(*) > 1
UNION ALL
SELECT 'Setting for all accounts without a partition', 'heading ' + CONVERT(varchar(12), heading_id) + ', rows: ' + CONVERT(varchar(12), COUNT(*)),
    'A copied heading''s setting for all accounts has partition 0: shown for "<All New>" in every partition, and for no account.',
    'Choose the format for "<All New>" in each partition that needs it, then delete the rows with hosp_acct_id -1 and flag1 0.'
FROM Report_header_settings WHERE hosp_acct_id = -1 AND flag1 = 0 GROUP BY heading_id
UNION ALL
SELECT 'Setting for all accounts of one report type', 'heading ' + CONVERT(varchar(12), heading_id) + ', rows: ' + CONVERT(varchar(12), COUNT(*)),
    'Settings for all accounts have report type 0. With any other they are never shown.',
    'Delete these rows of Report_header_settings (hosp_acct_id -1, report_type_nbr other than 0).'
FROM Report_header_settings WHERE hosp_acct_id = -1 AND report_type_nbr <> 0 GROUP BY heading_id
UNION ALL
SELECT 'Settings of an account with a partition', 'account ' + CONVERT(varchar(12), hosp_acct_id) + ', rows: ' + CONVERT(varchar(12), COUNT(*)),
    'Settings of an account have flag1 0. With any other they are never shown.',
    'Set flag1 to 0 where the account has no other setting of that heading and report type, and delete the rest.'
FROM Report_header_settings WHERE hosp_acct_id <> -1 AND flag1 <> 0 GROUP BY hosp_acct_id

-- Partitions. A lineage names as many ancestors as it has slashes but one.
UNION ALL
SELECT 'Record of a partition that is gone', x.kind + ' ' + ISNULL(CONVERT(varchar(12), x.id), 'NULL') + ', partition '
        + ISNULL(CONVERT(varchar(12), x.partition_id), 'NULL'),
    'The editor cannot show it.',
    'Give it to a partition that exists (flag1), or delete it with its settings.'
FROM (SELECT 'heading' AS kind, heading_id AS id, flag1 AS partition_id FROM Report_headers
    UNION ALL SELECT 'format', format_id, flag1 FROM Report_header_formats) AS x
WHERE NOT EXISTS (SELECT * FROM System_partitions p WHERE p.partition_id = x.partition_id)
UNION ALL
SELECT 'Lineage without its slashes', 'partition ' + CONVERT(varchar(12), partition_id),
    'A lineage starts and ends with "/": otherwise the outermost or the innermost ancestor is not recognised.',
    'Correct the lineage: "/" at the top, "/1/2/" below 2, which is below 1.'
FROM System_partitions WHERE lineage <> '' AND lineage <> '/' AND lineage NOT LIKE '/%/'
UNION ALL
SELECT 'Ancestor missing', 'partition ' + CONVERT(varchar(12), q.partition_id),
    'A partition of its lineage does not exist: the formats and headings it shared are not shown.',
    'Correct the lineage, or restore the missing partition.'
FROM System_partitions q
WHERE q.delete_date IS NULL AND q.lineage LIKE '/%/'
    AND LEN(q.lineage) - LEN(REPLACE(q.lineage, '/', '')) - 1 >
        (SELECT COUNT(*) FROM System_partitions p WHERE q.lineage LIKE '%/' + CONVERT(varchar(12), p.partition_id) + '/%')
UNION ALL
SELECT 'Ancestor deleted', 'partition ' + CONVERT(varchar(12), q.partition_id) + ', ancestor ' + CONVERT(varchar(12), p.partition_id),
    'The formats and headings of the deleted partition are still shown below it, and nobody can edit them.',
    'Restore the ancestor (delete_date NULL), or take it out of the lineage of those below it.'
FROM System_partitions q JOIN System_partitions p ON q.lineage LIKE '%/' + CONVERT(varchar(12), p.partition_id) + '/%'
WHERE q.delete_date IS NULL AND p.delete_date IS NOT NULL
UNION ALL
SELECT 'Partitions in a ring', 'partitions ' + CONVERT(varchar(12), q.partition_id) + ' and ' + CONVERT(varchar(12), p.partition_id),
    'Each stands in the other''s lineage (or one in its own): opening one of them ends with an error, and the rest is not loaded.',
    'Correct the lineage of both.'
FROM System_partitions q JOIN System_partitions p ON q.lineage LIKE '%/' + CONVERT(varchar(12), p.partition_id) + '/%'
    AND p.lineage LIKE '%/' + CONVERT(varchar(12), q.partition_id) + '/%'
WHERE q.partition_id <= p.partition_id

-- The two tagging options
UNION ALL
SELECT 'Option stored twice', k.key_name + ' of partition ' + CONVERT(varchar(12), c.partition_id) + ', rows: ' + CONVERT(varchar(12), COUNT(*)),
    'Any of them may be the one that is shown. Save writes all of them.',
    'Save once with the editor, which makes them equal, then delete all rows but one.'
FROM (SELECT 'TagKnownHeadings' AS key_name UNION ALL SELECT 'TagMixedCaseHeadings') AS k
    JOIN System_user_cfg c ON c.key_name = k.key_name
WHERE c.user_id = -1 AND c.application_id = 1 AND c.partition_id IS NOT NULL
GROUP BY k.key_name, c.partition_id HAVING COUNT(*) > 1
UNION ALL
SELECT 'Option with another word', k.key_name + ' of partition ' + CONVERT(varchar(12), c.partition_id),
    'Any value but True or False, also with a blank in front, reads as False, and the next Save stores False.',
    'Set key_value to True or False.'
FROM (SELECT 'TagKnownHeadings' AS key_name UNION ALL SELECT 'TagMixedCaseHeadings') AS k
    JOIN System_user_cfg c ON c.key_name = k.key_name
WHERE c.user_id = -1 AND c.application_id = 1 AND c.partition_id IS NOT NULL
    AND (c.key_value IS NULL OR UPPER(c.key_value) NOT IN ('TRUE', 'FALSE'))
UNION ALL
SELECT 'Option without a partition', k.key_name,
    'Opening ends with an error at this row: the options behind it are not read, and the next Save stores them a second time.',
    'Delete the row, or give it the partition it is for.'
FROM (SELECT 'TagKnownHeadings' AS key_name UNION ALL SELECT 'TagMixedCaseHeadings') AS k
WHERE EXISTS (SELECT * FROM System_user_cfg c
    WHERE c.key_name = k.key_name AND c.user_id = -1 AND c.application_id = 1 AND c.partition_id IS NULL)

-- Columns that cannot take what the editor writes. Numbers by their size: 0 a bit, 1 a byte, 2 two bytes, 3 four and more.
UNION ALL
SELECT 'Column unfit', e.tab + '.' + e.col,
    'The column is missing, too narrow or of another type: what the editor writes into it fails or is changed.',
    'Compare with tables.sql, and alter the column.'
FROM (SELECT 'Report_header_formats' AS tab, 'format_id' AS col, 2 AS size, 0 AS characters
    UNION ALL SELECT 'Report_header_formats', 'format_name', NULL, 20
    UNION ALL SELECT 'Report_header_formats', 'insert_empty_line_before', 0, 0
    UNION ALL SELECT 'Report_header_formats', 'insert_carriage_return_after', 0, 0
    UNION ALL SELECT 'Report_header_formats', 'insert_colon', 0, 0
    UNION ALL SELECT 'Report_header_formats', 'bold', 0, 0
    UNION ALL SELECT 'Report_header_formats', 'underline', 0, 0
    UNION ALL SELECT 'Report_header_formats', 'indent', 0, 0
    UNION ALL SELECT 'Report_header_formats', 'system_format', 0, 0
    UNION ALL SELECT 'Report_header_formats', 'flag1', 3, 0
    UNION ALL SELECT 'Report_headers', 'heading_id', 2, 0
    UNION ALL SELECT 'Report_headers', 'heading', NULL, 20
    UNION ALL SELECT 'Report_headers', 'flag1', 3, 0
    UNION ALL SELECT 'Report_header_settings', 'heading_id', 2, 0
    UNION ALL SELECT 'Report_header_settings', 'hosp_acct_id', 2, 0
    UNION ALL SELECT 'Report_header_settings', 'report_type_nbr', 2, 0
    UNION ALL SELECT 'Report_header_settings', 'format_id', 2, 0
    UNION ALL SELECT 'Report_header_settings', 'flag1', 3, 0
    UNION ALL SELECT 'System_user_cfg', 'user_id', 2, 0
    UNION ALL SELECT 'System_user_cfg', 'application_id', 1, 0
    UNION ALL SELECT 'System_user_cfg', 'key_name', NULL, 20
    UNION ALL SELECT 'System_user_cfg', 'key_value', NULL, 10
    UNION ALL SELECT 'System_user_cfg', 'partition_id', 3, 0
    UNION ALL SELECT 'System_log', 'severity', 1, 0
    UNION ALL SELECT 'System_log', 'type', 0, 0
    UNION ALL SELECT 'System_log', 'user_id', 2, 0
    UNION ALL SELECT 'System_log', 'error_code', 2, 0
    UNION ALL SELECT 'System_log', 'hosp_acct_id', 2, 0
    UNION ALL SELECT 'System_log', 'dept_id', 2, 0
    UNION ALL SELECT 'System_log', 'physician_id', 2, 0
    UNION ALL SELECT 'System_log', 'msg1', NULL, 90) AS e
    LEFT JOIN INFORMATION_SCHEMA.COLUMNS c ON c.TABLE_NAME = e.tab AND c.COLUMN_NAME = e.col
WHERE c.COLUMN_NAME IS NULL
    OR e.size > CASE c.DATA_TYPE WHEN 'bit' THEN 0 WHEN 'tinyint' THEN 1 WHEN 'smallint' THEN 2 WHEN 'int' THEN 3
        WHEN 'bigint' THEN 3 WHEN 'numeric' THEN 3 WHEN 'decimal' THEN 3 ELSE -1 END
    OR (e.size IS NULL AND c.DATA_TYPE NOT IN ('varchar', 'nvarchar', 'char', 'nchar'))
    OR (e.size IS NULL AND c.CHARACTER_MAXIMUM_LENGTH BETWEEN 0 AND e.characters - 1)
ORDER BY finding, concerns
