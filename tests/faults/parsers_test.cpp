// Random bytes for the readers of the INI file, of list keys and of lineages: 200,000 each where KV_STRIDE is 1, else
// 20,000, and 2,000 INI files.
#include "editor/keys.h"
#include "model/clsPartition.h"
#include "platform/profile.h"
#include "runtime/error.h"
#include "support/test_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <set>
#include <string>
#include <string_view>

namespace
{

class Parsers : public testing::Test
{
protected:
    // Bytes of any kind, more often those that the reader looks for.
    std::string Bytes(std::string_view likely, std::size_t most)
    {
        std::string bytes(m_random() % (most + 1), '\0');
        for (char &c : bytes)
            c = m_random() % 4 > 0 ? likely[m_random() % likely.size()] : static_cast<char>(m_random());
        return bytes;
    }

    std::mt19937 m_random{1};
    const bool m_long = std::getenv("KV_STRIDE") && std::atoi(std::getenv("KV_STRIDE")) == 1;
    const int m_runs = m_long ? 200000 : 20000;
};

// Checks a reader of keys: it gives a key that can be made again, or one of the three errors.
template <class Parse, class Make>
void ExpectKeyOrError(const std::string &bytes, Parse parse, Make make)
{
    try
    {
        const auto key = parse(bytes);
        EXPECT_EQ(key, parse(make(key)));
    }
    catch (const runtime::Error &error)
    {
        static const std::set<std::int32_t> kErrors = {runtime::kInvalidProcedureCall, runtime::kOverflow,
                                                       runtime::kTypeMismatch};
        EXPECT_TRUE(kErrors.contains(error.Number())) << testing::PrintToString(bytes) << error.Description();
    }
}

TEST_F(Parsers, OfKeysGiveAKeyOrAnError)
{
    for (int run = 0; run < m_runs; ++run)
    {
        const std::string bytes = (run % 2 ? "Key" : "") + Bytes("0123456789--. +eKy", 14);
        ExpectKeyOrError(bytes, editor::ParsePlainKey,
                         [](const auto &key) { return editor::PlainKey(key.id, key.partition); });
        ExpectKeyOrError(bytes, editor::ParseListKey,
                         [](const auto &key) { return editor::ListKey(key.id, key.partition); });
        ExpectKeyOrError(bytes, editor::ParseReportTypeKey,
                         [](std::int16_t type) { return editor::ReportTypeKey(std::to_string(type)); });
    }
}

TEST_F(Parsers, OfLineagesFindWholeNumbersAlone)
{
    for (int run = 0; run < m_runs; ++run)
    {
        const std::string lineage = Bytes("//012", 20);
        const int id = static_cast<int>(m_random() % 30);
        // number by number, each between two slashes
        bool expected = false;
        for (std::size_t slash = lineage.find('/'); slash != std::string::npos;)
        {
            const std::size_t next = lineage.find('/', slash + 1);
            expected = expected ||
                       (next != std::string::npos && lineage.substr(slash + 1, next - slash - 1) == std::to_string(id));
            slash = next;
        }
        EXPECT_EQ(expected, model::IsInLineage(id, lineage)) << testing::PrintToString(lineage);
    }
}

TEST_F(Parsers, OfTheIniFileGiveOneLineOfAtMost127Characters)
{
    const support::TestFolder folder;
    const std::string file = folder.Path("any.ini");
    const int files = m_long ? m_runs : m_runs / 10;
    int found = 0;
    for (int run = 0; run < files; ++run)
    {
        std::string bytes = Bytes("[]=;\"' \r\nSK", 60);
        if (run % 2)
            bytes.insert(m_random() % (bytes.size() + 1), "\n[S]\nK = " + Bytes("x\"' ", 200));
        support::WriteFile(file, bytes);
        const std::string value = platform::ReadProfileString("S", "K", file);
        found += value.empty() ? 0 : 1;
        EXPECT_LE(value.size(), 127u * 3) << testing::PrintToString(bytes);
        EXPECT_EQ(std::string::npos, value.find('\n')) << testing::PrintToString(bytes);
    }
    EXPECT_GT(found, files / 4);
}

} // namespace
