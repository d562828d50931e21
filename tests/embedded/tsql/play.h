// Plays batches on a session and writes down what came out, for comparing with what should have.
#pragma once

#include "tsql/session.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tsqltest
{

// A batch and what it should give, in the notation of Play.
struct Case
{
    const char *name;
    const char *batch;
    const char *expected;
};

inline std::string ErrorText(const tsql::SqlError &error)
{
    return "!" + std::to_string(error.number) + " " + error.state + " " + error.what();
}

// Every result of the batch, joined by " + ": rows as "1|a;2|NULL" ("none" when there is no row), a row count as "#2",
// the result of an assignment as "#", an error as "!208 42S02 text".
inline std::string Play(tsql::Session &session, std::string_view batch)
{
    std::string out;
    const auto add = [&](const std::string &text) { out += (out.empty() ? "" : " + ") + text; };
    try
    {
        session.Execute(batch);
    }
    catch (const tsql::SqlError &error)
    {
        return ErrorText(error);
    }
    for (;;)
    {
        try
        {
            tsql::Result *result = session.NextResult();
            if (!result)
                return out;
            if (result->columns.empty())
            {
                add(result->changedRows < 0 ? "#" : "#" + std::to_string(result->changedRows));
                continue;
            }
            const int columns = static_cast<int>(result->columns.size());
            std::string rows;
            int count = 0;
            while (result->Step())
            {
                rows += count++ == 0 ? "" : ";";
                for (int i = 0; i < columns; ++i)
                    rows += (i > 0 ? "|" : "") + (result->IsNull(i) ? "NULL" : std::string(result->Text(i)));
            }
            add(count == 0 ? "none" : rows);
        }
        catch (const tsql::SqlError &error)
        {
            add(ErrorText(error));
        }
    }
}

// Plays with a new database in memory for each test.
class PlayTest : public testing::Test
{
protected:
    std::string Play(std::string_view batch) { return tsqltest::Play(*m_session, batch); }

    template <std::size_t Count>
    void PlayAll(const Case (&cases)[Count])
    {
        for (const Case &one : cases)
            EXPECT_EQ(one.expected, Play(one.batch)) << one.name << ": " << one.batch;
    }

    std::unique_ptr<tsql::Session> m_session = tsql::Session::Open(":memory:", true, 5000);
};

} // namespace tsqltest
