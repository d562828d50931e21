// Keys of lists, made and parsed back.
#include "editor/keys.h"

#include "runtime/error.h"

#include <gtest/gtest.h>

using namespace editor;

namespace
{

int ErrorOf(RecordKey (*parse)(std::string_view), const char *key)
{
    try
    {
        parse(key);
        return 0;
    }
    catch (const runtime::Error &error)
    {
        return error.Number();
    }
}

TEST(Keys, AreIdAndPartition)
{
    EXPECT_EQ("12-3", PlainKey(12, 3));
    EXPECT_EQ("Key12-3", ListKey(12, 3));
    EXPECT_EQ("Key0--1", ListKey(0, -1));
    EXPECT_EQ("Key4", ReportTypeKey("4"));
}

TEST(Keys, AreParsedBackAtTheFirstDash)
{
    EXPECT_EQ((RecordKey{12, 3}), ParseListKey("Key12-3"));
    EXPECT_EQ((RecordKey{12, -1}), ParseListKey("Key12--1"));
    EXPECT_EQ((RecordKey{0, 70000}), ParsePlainKey("0-70000"));
    EXPECT_EQ((RecordKey{32767, 2147483647}), ParsePlainKey("32767-2147483647"));
}

TEST(Keys, ThatAreNoneAreErrors)
{
    EXPECT_EQ(runtime::kInvalidProcedureCall, ErrorOf(ParseListKey, "Key12"));
    EXPECT_EQ(runtime::kOverflow, ErrorOf(ParseListKey, "Key40000-1"));
    EXPECT_EQ(runtime::kTypeMismatch, ErrorOf(ParseListKey, "Key-5-1"));
    EXPECT_EQ(runtime::kTypeMismatch, ErrorOf(ParsePlainKey, "x-1"));
    EXPECT_EQ(runtime::kOverflow, ErrorOf(ParsePlainKey, "1-3000000000"));
}

TEST(Keys, OfReportTypesAreTrimmed)
{
    EXPECT_EQ(0, ParseReportTypeKey("Key0"));
    EXPECT_EQ(15, ParseReportTypeKey(" Key15 "));
    EXPECT_THROW(ParseReportTypeKey("Key70000"), runtime::Error);
}

} // namespace
