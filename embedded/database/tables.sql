-- The tables that the headings editor reads and writes, in T-SQL that SQL Server runs as it stands.
--
-- Identifiers of formats, headings, accounts and report types are 16-bit; those of partitions are 32-bit. The columns
-- flag1 of the three heading tables hold the owning partition's id. Layout flags are small integers rather than bits:
-- only 1 means yes, and old sites hold NULL and other values.

-- The tenants. lineage is the chain of a partition's ancestors, outermost first, without its own id: '/' for a
-- partition at the top, '/1/2/' for one below 2 below 1. delete_date is NULL while the partition is live.
CREATE TABLE System_partitions (
    partition_id   int          NOT NULL PRIMARY KEY,
    partition_name varchar(60)  NULL,
    lineage        varchar(255) NULL,
    delete_date    datetime     NULL
)
GO

-- How a heading is laid out. Format 0 is what a heading without a setting gets.
CREATE TABLE Report_header_formats (
    format_id                    smallint    NOT NULL PRIMARY KEY,
    format_name                  varchar(50) NULL,
    insert_empty_line_before     smallint    NULL,
    insert_carriage_return_after smallint    NULL,
    insert_colon                 smallint    NULL,
    bold                         smallint    NULL,
    underline                    smallint    NULL,
    indent                       smallint    NULL,
    system_format                smallint    NULL,
    flag1                        int         NOT NULL
)
GO
CREATE INDEX Report_header_formats_flag1 ON Report_header_formats (flag1)
GO

-- The headings that recognition finds in reports. Heading 0 is "<Default>".
CREATE TABLE Report_headers (
    heading_id smallint     NOT NULL PRIMARY KEY,
    heading    varchar(100) NULL,
    flag1      int          NOT NULL
)
GO
CREATE INDEX Report_headers_flag1 ON Report_headers (flag1)
GO

-- Which format a heading has for an account (-1: all accounts) and a report type (0: all of the account). A row of a
-- real account has flag1 0, a row of all accounts has the partition, so that partitions can differ.
-- The index is not unique: a copied heading takes the defaults of its original along with flag1 0, and defaults of two
-- partitions then become two rows for all accounts that differ in nothing but their format.
CREATE TABLE Report_header_settings (
    heading_id      smallint NOT NULL,
    hosp_acct_id    smallint NOT NULL,
    report_type_nbr smallint NOT NULL,
    format_id       smallint NOT NULL,
    flag1           int      NOT NULL
)
GO
CREATE INDEX Report_header_settings_place ON Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, flag1)
GO

-- The accounts (hospitals, practices). The row -1 stands for all of them and belongs to no partition.
CREATE TABLE account_info (
    hosp_acct_id   smallint    NOT NULL PRIMARY KEY,
    hosp_acct_name varchar(60) NULL,
    is_deleted     char(1)     NOT NULL,
    partition_id   int         NOT NULL
)
GO

-- The report types of each account. Type 0 is the account's default for all of its types.
CREATE TABLE reports_cfg (
    report_type_nbr smallint    NOT NULL,
    report_name     varchar(60) NULL,
    hosp_acct_id    smallint    NOT NULL,
    is_deleted      char(1)     NOT NULL,
    PRIMARY KEY (hosp_acct_id, report_type_nbr)
)
GO

-- Keys and values of the whole suite, site-wide (partition_id NULL) or of one partition. Nothing makes a key unique.
CREATE TABLE System_user_cfg (
    user_id        smallint     NOT NULL,
    application_id smallint     NOT NULL,
    key_name       varchar(50)  NOT NULL,
    key_value      varchar(255) NULL,
    partition_id   int          NULL
)
GO

-- The event log of the whole suite.
CREATE TABLE System_log (
    date_timestamp datetime    NOT NULL,
    severity       smallint    NOT NULL,
    type           smallint    NOT NULL,
    user_id        smallint    NOT NULL,
    error_code     int         NOT NULL,
    hosp_acct_id   smallint    NOT NULL,
    dept_id        smallint    NOT NULL,
    physician_id   int         NOT NULL,
    document_id    int         NOT NULL,
    schedule_id    int         NOT NULL,
    batch_nbr      int         NOT NULL,
    flag1          smallint    NOT NULL,
    flag2          smallint    NOT NULL,
    flag3          smallint    NOT NULL,
    flag4          smallint    NOT NULL,
    number1        int         NOT NULL,
    number2        int         NOT NULL,
    msg1           varchar(90) NULL
)
GO
CREATE INDEX System_log_time ON System_log (date_timestamp)
GO
