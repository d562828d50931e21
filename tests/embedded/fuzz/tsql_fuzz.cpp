// Feeds any bytes to the dialect as one batch on a small database in memory; built with clang's libFuzzer.
#include "tsql/session.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace
{

constexpr std::string_view tables =
    "CREATE TABLE t (a int NOT NULL PRIMARY KEY, b varchar(20), c decimal(9,2), d datetime, e bit, "
    "f float, g char(3), h nvarchar(10)) INSERT t VALUES (1, 'Ann', 1.5, '20060102', 1, 0.5, 'x', "
    "N'y'), (2, NULL, NULL, NULL, NULL, NULL, NULL, NULL) CREATE TABLE u (a int, b varchar(20))";

// Reads every value of every result, by each way that suits its type.
void Drain(tsql::Session &session)
{
    for (int errors = 0; errors < 1000;)
    {
        try
        {
            tsql::Result *result = session.NextResult();
            if (!result)
                return;
            const int columns = static_cast<int>(result->Columns().size());
            for (int rows = 0; columns > 0 && rows < 1000 && result->Step(); ++rows)
                for (int i = 0; i < columns; ++i)
                {
                    volatile std::size_t size = result->Text(i).size();
                    volatile double number = result->Number(i);
                    volatile std::int64_t integer = result->Integer(i);
                    (void)size;
                    (void)number;
                    (void)integer;
                    if (result->Columns()[static_cast<std::size_t>(i)].type == tsql::Type::DateTime &&
                        !result->IsNull(i))
                        (void)result->Moment(i);
                }
        }
        catch (const tsql::SqlError &)
        {
            ++errors;
        }
    }
}

bool MentionsTransactions(std::string_view batch)
{
    std::string upper(batch);
    std::transform(upper.begin(), upper.end(), upper.begin(), [](unsigned char c) { return std::toupper(c); });
    for (const char *word : {"TRAN", "COMMIT", "ROLLBACK"})
        if (upper.find(word) != std::string::npos)
            return true;
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string_view batch(reinterpret_cast<const char *>(data), size);
    // What the batch does is rolled back, so that one session serves many; batches with transactions get their own.
    static std::unique_ptr<tsql::Session> shared;
    const bool transactions = MentionsTransactions(batch);
    if (!shared || transactions)
    {
        shared = tsql::Session::Open(":memory:", true, 0);
        shared->Execute(tables);
        Drain(*shared);
    }
    if (!transactions)
        shared->Internal("SAVEPOINT fuzz");
    try
    {
        shared->Execute(batch);
        Drain(*shared);
    }
    catch (const tsql::SqlError &)
    {
    }
    shared->Cancel();
    if (transactions)
        shared.reset();
    else
    {
        shared->Internal("ROLLBACK TO fuzz");
        shared->Internal("RELEASE fuzz");
    }
    return 0;
}
