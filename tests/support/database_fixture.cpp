// The fixture of tests that need a database: a fresh one, the component connected to it, and a desktop that answers.
#include "support/database_fixture.h"

#include "host/modGlobalVariables.h"
#include "host/modMain.h"
#include "model/globals.h"

namespace support
{

namespace
{

void ForgetRecords()
{
    model::gPartitions = nullptr;
    model::gCurrentPartition = nullptr;
    model::gFormats = nullptr;
    model::gHeadings = nullptr;
    model::gSettings = nullptr;
}

void Disconnect()
{
    host::gResultset.reset();
    host::Disconnect();
    host::gConnection.reset();
    host::gEnvironment.reset();
}

} // namespace

DatabaseTest::DatabaseTest()
{
    ForgetRecords();
    host::gUserID = 0;
    host::gPartitionID = -1;
    host::gSQLDSN.clear();
    host::gSqlUserName = "sa";
    host::gPassword.clear();
    host::gSqlTimeout = 0;
    host::gSqlServerName = database.ServerName();
    host::gSqlDbName = database.DatabaseName();
    host::gIniTagKnownHeadings = false;
    host::gIniTagMixedCaseHeadings = false;
}

DatabaseTest::~DatabaseTest()
{
    ForgetRecords();
    Disconnect();
}

void DatabaseTest::SetUp()
{
    Connect();
}

void DatabaseTest::Connect()
{
    Disconnect();
    ASSERT_TRUE(host::Connect()) << "the component cannot connect to the embedded database";
}

} // namespace support
