// Values: literals, arithmetic, texts, conversions, functions, conditions. One SELECT a case.
#include "play.h"

namespace
{

using tsqltest::Case;

class Expression : public tsqltest::PlayTest
{
};

TEST_F(Expression, Literals)
{
    PlayAll({
        {"integer", "SELECT 5", "5"},
        {"negative integer", "SELECT -5", "-5"},
        {"doubled signs", "SELECT - -5, +5, -(-(5))", "5|5|5"},
        {"decimal keeps its digits", "SELECT 1.50", "1.50"},
        {"an integer too long for int is a decimal", "SELECT 3000000000", "3000000000"},
        {"float", "SELECT 1e3", "1000"},
        {"float with many digits shows six", "SELECT 1234567e0", "1.23457e+006"},
        {"text", "SELECT 'O''Brien'", "O'Brien"},
        {"national text", "SELECT N'\xC3\xA9'", "\xC3\xA9"},
        {"NULL", "SELECT NULL", "NULL"},
        {"empty text", "SELECT ''", ""},
        {"more than 38 digits", "SELECT 123456789012345678901234567890123456789",
         "!1007 22003 The number '123456789012345678901234567890123456789' is out of the range for numeric "
         "representation "
         "(maximum precision 38)."},
        {"float out of range", "SELECT 1e999",
         "!168 22003 The floating point value '1e999' is out of the range of computer representation (8 bytes)."},
        {"text over two lines", "SELECT 'a\r\nb'", "a\r\nb"},
    });
}

TEST_F(Expression, IntegerArithmetic)
{
    PlayAll({
        {"precedence", "SELECT 2 + 3 * 4, (2 + 3) * 4", "14|20"},
        {"left to right", "SELECT 10 - 3 - 2, 100 / 10 / 2", "5|5"},
        {"division cuts", "SELECT 7 / 2, -7 / 2, 7 / -2", "3|-3|-3"},
        {"remainder has the sign of the dividend", "SELECT 7 % 3, -7 % 3, 7 % -3", "1|-1|1"},
        {"NULL spreads", "SELECT 1 + NULL, NULL * 2, 1 / NULL", "NULL|NULL|NULL"},
        {"overflow", "SELECT 2147483647 + 1",
         "!8115 22003 Arithmetic overflow error converting expression to data type int."},
        {"overflow below", "SELECT -2147483647 - 2",
         "!8115 22003 Arithmetic overflow error converting expression to data type int."},
        {"overflow of bigint", "SELECT CAST(9223372036854775807 AS bigint) + 1",
         "!8115 22003 Arithmetic overflow error converting expression to data type bigint."},
        {"overflow on the way", "SELECT 2147483647 + 1 - 1",
         "!8115 22003 Arithmetic overflow error converting expression to data type int."},
        {"a chain grows with its operands",
         "SELECT CAST(1 AS smallint) + CAST(2 AS smallint) + 40000 - CAST(3000000000 AS bigint)", "-2999959997"},
        {"a bracketed sum taken away", "SELECT 10 - (1 + 2) - (3 - 4)", "8"},
        {"no overflow with a bigint operand", "SELECT 2147483647 + CAST(1 AS bigint)", "2147483648"},
        {"smallint stays smallint", "SELECT CAST(32767 AS smallint) + CAST(1 AS smallint)",
         "!8115 22003 Arithmetic overflow error converting expression to data type smallint."},
        {"smallint with int is int", "SELECT CAST(32767 AS smallint) + 1", "32768"},
        {"division by zero", "SELECT 1 / 0", "!8134 22012 Divide by zero error encountered."},
        {"remainder by zero", "SELECT 1 % 0", "!8134 22012 Divide by zero error encountered."},
        {"the smallest by -1", "SELECT CAST(-2147483648 AS int) / -1",
         "!8115 22003 Arithmetic overflow error converting expression to data type int."},
        {"bits", "SELECT 6 & 3, 6 | 3, 6 ^ 3, ~5", "2|7|5|-6"},
        {"not of a bit", "SELECT ~CAST(1 AS bit), ~CAST(0 AS bit)", "0|1"},
        {"bits cannot be added", "SELECT CAST(1 AS bit) + CAST(1 AS bit)",
         "!8117 42000 Operand data type bit is invalid for add operator."},
        {"a bit and an integer can", "SELECT CAST(1 AS bit) + 1", "2"},
    });
}

TEST_F(Expression, DecimalAndFloatArithmetic)
{
    PlayAll({
        {"sum keeps the longer scale", "SELECT 1.5 + 2.25", "3.75"},
        {"sum is exact", "SELECT 0.1 + 0.2", "0.3"},
        {"product adds the scales", "SELECT 1.5 * 2.25", "3.375"},
        {"quotient has at least six places and is cut", "SELECT 2.0 / 3.0", "0.666666"},
        {"quotient that comes out", "SELECT 1.0 / 4", "0.250000"},
        {"with an integer", "SELECT 1.5 + 1", "2.5"},
        {"remainder", "SELECT 5.5 % 2", "1.5"},
        {"float", "SELECT 1e0 / 4", "0.25"},
        {"float with integer", "SELECT 7 / 2e0", "3.5"},
        {"float by zero", "SELECT 1e0 / 0", "!8134 22012 Divide by zero error encountered."},
        {"decimal by zero", "SELECT 1.5 / 0", "!8134 22012 Divide by zero error encountered."},
        {"float overflow", "SELECT 1e308 * 10",
         "!8115 22003 Arithmetic overflow error converting expression to data type float."},
        {"remainder of floats is no operation", "SELECT 5e0 % 2e0",
         "!402 42000 The data types float and float are incompatible in the modulo operator."},
    });
}

TEST_F(Expression, PlusJoinsTextsAndAddsNumbers)
{
    PlayAll({
        {"texts", "SELECT 'a' + 'b' + 'c'", "abc"},
        {"blanks stay", "SELECT 'a ' + ' b'", "a  b"},
        {"NULL spreads", "SELECT 'a' + NULL", "NULL"},
        {"text that is a number beside a number", "SELECT '5' + 1", "6"},
        {"text that is none", "SELECT 'a' + 1",
         "!245 22018 Conversion failed when converting the varchar value 'a' to data type int."},
        {"two texts that are numbers are joined", "SELECT '5' + '1'", "51"},
        {"empty text is 0", "SELECT '' + 1", "1"},
        {"text beside a decimal", "SELECT '1.5' + 1.5", "3.0"},
        {"minus between texts", "SELECT 'a' - 'b'",
         "!8117 42000 Operand data type varchar is invalid for subtract operator."},
        {"minus of a text", "SELECT -'5'", "!8117 42000 Operand data type varchar is invalid for minus operator."},
        {"inside a pattern", "SELECT '%/' + RTRIM(CAST(12 AS varchar(12))) + '/%'", "%/12/%"},
    });
}

TEST_F(Expression, CastToIntegers)
{
    PlayAll({
        {"blanks around", "SELECT CONVERT(int, '   41 ')", "41"},
        {"signs", "SELECT CAST('-7' AS int), CAST('+7' AS int)", "-7|7"},
        {"empty and blank are 0", "SELECT CAST('' AS int), CAST('   ' AS int)", "0|0"},
        {"no number", "SELECT CONVERT(int, 'x1')",
         "!245 22018 Conversion failed when converting the varchar value 'x1' to data type int."},
        {"a decimal text is no integer", "SELECT CONVERT(int, '1.5')",
         "!245 22018 Conversion failed when converting the varchar value '1.5' to data type int."},
        {"a national text is named so", "SELECT CONVERT(int, N'x')",
         "!245 22018 Conversion failed when converting the nvarchar value 'x' to data type int."},
        {"text too large for int", "SELECT CONVERT(int, '3000000000')",
         "!248 22003 The conversion of the varchar value '3000000000' overflowed an int column. Maximum integer value "
         "exceeded."},
        {"text too large for smallint", "SELECT CONVERT(smallint, '40000')",
         "!244 22003 The conversion of the varchar value '40000' overflowed an INT2 column. Use a larger integer "
         "column."},
        {"text too large for tinyint", "SELECT CONVERT(tinyint, '256')",
         "!244 22003 The conversion of the varchar value '256' overflowed an INT1 column. Use a larger integer "
         "column."},
        {"text below tinyint", "SELECT CONVERT(tinyint, '-1')",
         "!244 22003 The conversion of the varchar value '-1' overflowed an INT1 column. Use a larger integer column."},
        {"the ends of the ranges",
         "SELECT CAST('-32768' AS smallint), CAST('255' AS tinyint), CAST('-2147483648' AS int), "
         "CAST('-9223372036854775808' AS bigint)",
         "-32768|255|-2147483648|-9223372036854775808"},
        {"number too large for smallint", "SELECT CAST(40000 AS smallint)",
         "!220 22003 Arithmetic overflow error for data type smallint, value = 40000."},
        {"number too large for tinyint", "SELECT CAST(256 AS tinyint)",
         "!220 22003 Arithmetic overflow error for data type tinyint, value = 256."},
        {"number too large for int", "SELECT CAST(CAST(3000000000 AS bigint) AS int)",
         "!8115 22003 Arithmetic overflow error converting expression to data type int."},
        {"decimal too large for int", "SELECT CAST(3000000000 AS int)",
         "!8115 22003 Arithmetic overflow error converting numeric to data type int."},
        {"decimals are cut", "SELECT CAST(2.9 AS int), CAST(-2.9 AS int), CAST(2.9e0 AS int)", "2|-2|2"},
        {"float too large", "SELECT CAST(3e9 AS int)",
         "!232 22003 Arithmetic overflow error for type int, value = 3000000000.000000."},
        {"bit from numbers", "SELECT CAST(5 AS bit), CAST(0 AS bit), CAST(0.5 AS bit)", "1|0|1"},
        {"bit from texts", "SELECT CAST('True' AS bit), CAST('FALSE' AS bit), CAST('0' AS bit)", "1|0|0"},
        {"NULL", "SELECT CAST(NULL AS int)", "NULL"},
    });
}

TEST_F(Expression, CastToTexts)
{
    PlayAll({
        {"number", "SELECT CAST(12 AS varchar(12)), CAST(-5 AS varchar)", "12|-5"},
        {"a text is cut", "SELECT CAST('abcdef' AS varchar(3))", "abc"},
        {"by characters", "SELECT CAST('\xC3\xA9\xC3\xA9\xC3\xA9' AS varchar(2))", "\xC3\xA9\xC3\xA9"},
        {"char fills up", "SELECT CAST('a' AS char(3)) + '|'", "a  |"},
        {"thirty without a length", "SELECT LEN(CAST('1234567890123456789012345678901234567890' AS varchar))", "30"},
        {"max", "SELECT CAST('abc' AS varchar(max))", "abc"},
        {"an integer that does not fit is a star", "SELECT CAST(12345 AS varchar(3))", "*"},
        {"but an error for national texts", "SELECT CAST(12345 AS nvarchar(3))",
         "!8115 22003 Arithmetic overflow error converting int to data type nvarchar."},
        {"a decimal that does not fit is an error", "SELECT CAST(123.45 AS varchar(3))",
         "!8115 22003 Arithmetic overflow error converting numeric to data type varchar."},
        {"decimal", "SELECT CAST(1.50 AS varchar(10))", "1.50"},
        {"datetime", "SELECT CAST(CAST('20060102 15:04' AS datetime) AS varchar(30))", "Jan  2 2006  3:04PM"},
        {"datetime in a style", "SELECT CONVERT(varchar(10), CAST('20060102' AS datetime), 101)", "01/02/2006"},
        {"a style that is none", "SELECT CONVERT(varchar(10), CAST('20060102' AS datetime), 7777)",
         "!281 42000 7777 is not a valid style number when converting from datetime to a character string."},
    });
}

TEST_F(Expression, CastToDecimalFloatAndDateTime)
{
    PlayAll({
        {"decimal is rounded", "SELECT CAST(1.255 AS decimal(5,2)), CAST('-1.255' AS decimal(5,2))", "1.26|-1.26"},
        {"eighteen digits without a size", "SELECT CAST(1.5 AS decimal)", "2"},
        {"decimal out of range", "SELECT CAST(12345.6 AS decimal(5,2))",
         "!8115 22003 Arithmetic overflow error converting numeric to data type numeric."},
        {"text that is no decimal", "SELECT CAST('x' AS decimal(5,2))",
         "!8114 42000 Error converting data type varchar to numeric."},
        {"float from a text", "SELECT CAST(' 1.5e1 ' AS float), CAST('' AS float)", "15|0"},
        {"text that is no float", "SELECT CAST('1x' AS float)",
         "!8114 42000 Error converting data type varchar to float."},
        {"infinity is no float", "SELECT CAST('inf' AS float)",
         "!8114 42000 Error converting data type varchar to float."},
        {"real has fewer digits", "SELECT CAST(CAST(16777217 AS real) AS int)", "16777216"},
        {"datetime from a number", "SELECT CONVERT(varchar(30), CAST(1.5 AS datetime), 120)", "1900-01-02 12:00:00"},
        {"number from a datetime", "SELECT CAST(CAST('19000102 18:00' AS datetime) AS int)", "2"},
        {"text that is no date", "SELECT CAST('never' AS datetime)",
         "!241 22007 Conversion failed when converting date and/or time from character string."},
        {"a day that is none", "SELECT CAST('20060230' AS datetime)",
         "!242 22007 The conversion of a varchar data type to a datetime data type resulted in an out-of-range value."},
        {"smalldatetime rounds to minutes",
         "SELECT CONVERT(varchar(30), CAST('20060102 15:04:30' AS smalldatetime), 120)", "2006-01-02 15:05:00"},
    });
}

TEST_F(Expression, ComparingConvertsByPrecedence)
{
    PlayAll({
        {"text to int", "SELECT 1 WHERE ' 07 ' = 7", "1"},
        {"text to int fails", "SELECT 1 WHERE 'a' = 7",
         "!245 22018 Conversion failed when converting the varchar value 'a' to data type int."},
        {"texts as texts", "SELECT 1 WHERE '07' = '7'", "none"},
        {"texts without case and trailing blanks", "SELECT 1 WHERE 'Abc ' = 'aBC'", "1"},
        {"letters beyond ASCII", "SELECT 1 WHERE '\xC3\x89' = '\xC3\xA9'", "1"},
        {"text to datetime", "SELECT 1 WHERE CAST('20060102' AS datetime) = '1/2/2006'", "1"},
        {"text to bit", "SELECT 1 WHERE CAST(1 AS bit) = 'True'", "1"},
        {"int to decimal", "SELECT 1 WHERE 2 < 2.5", "1"},
        {"text to decimal", "SELECT 1 WHERE '2.50' = 2.5", "1"},
        {"all operators",
         "SELECT 1 WHERE 1 < 2 AND 2 > 1 AND 1 <= 1 AND 1 >= 1 AND 1 <> 2 AND 1 != 2 AND 2 !< 2 AND 2 !> 2", "1"},
        {"NULL equals nothing", "SELECT 1 WHERE NULL = NULL", "none"},
        {"NULL differs from nothing", "SELECT 1 WHERE NOT (1 = NULL)", "none"},
    });
}

TEST_F(Expression, Conditions)
{
    PlayAll({
        {"and before or", "SELECT 1 WHERE 1 = 1 OR 1 = 1 AND 1 = 2", "1"},
        {"parentheses", "SELECT 1 WHERE (1 = 1 OR 1 = 1) AND 1 = 2", "none"},
        {"not", "SELECT 1 WHERE NOT 1 = 2 AND NOT NOT 1 = 1", "1"},
        {"between", "SELECT 1 WHERE 2 BETWEEN 1 AND 3 AND 4 NOT BETWEEN 1 AND 3", "1"},
        {"between with texts", "SELECT 1 WHERE 'B' BETWEEN 'a' AND 'c'", "1"},
        {"between takes the ends", "SELECT 1 WHERE 1 BETWEEN 1 AND 1", "1"},
        {"in", "SELECT 1 WHERE 2 IN (1, 2) AND 3 NOT IN (1, 2)", "1"},
        {"in with texts", "SELECT 1 WHERE 'A ' IN ('b', 'a')", "1"},
        {"in converts", "SELECT 1 WHERE 2 IN ('1', '2')", "1"},
        {"in with NULL", "SELECT 1 WHERE 3 NOT IN (1, NULL)", "none"},
        {"is null", "SELECT 1 WHERE NULL IS NULL AND 1 IS NOT NULL", "1"},
        {"like", "SELECT 1 WHERE 'abc' LIKE 'A_C' AND 'abc' NOT LIKE 'b%'", "1"},
        {"like with a class", "SELECT 1 WHERE 'b1' LIKE '[a-c][0-9]'", "1"},
        {"like with escape", "SELECT 1 WHERE '50%' LIKE '50!%' ESCAPE '!'", "1"},
        {"like with a wrong escape", "SELECT 1 WHERE 'a' LIKE 'a' ESCAPE '!!'",
         "!506 22019 The invalid escape character \"!!\" was specified in a LIKE predicate."},
        {"like with a number", "SELECT 1 WHERE 125 LIKE '1%5'", "1"},
        {"like with NULL", "SELECT 1 WHERE NOT (NULL LIKE '%')", "none"},
        {"a condition is no value", "SELECT (1 = 1)", "!102 42000 Line 1: Incorrect syntax near '='."},
        {"a value is no condition", "SELECT 1 WHERE 1",
         "!4145 42000 Line 1: An expression of non-boolean type specified in a context where a condition is expected, "
         "near "
         "'1'."},
        {"a value is no condition before AND", "SELECT 1 WHERE 1 AND 1 = 1",
         "!4145 42000 Line 1: An expression of non-boolean type specified in a context where a condition is expected, "
         "near "
         "'AND'."},
    });
}

TEST_F(Expression, Case)
{
    PlayAll({
        {"searched", "SELECT CASE WHEN 1 = 2 THEN 'a' WHEN 1 = 1 THEN 'b' ELSE 'c' END", "b"},
        {"simple", "SELECT CASE 2 WHEN 1 THEN 'a' WHEN 2 THEN 'b' END", "b"},
        {"simple with texts", "SELECT CASE 'X' WHEN 'x ' THEN 1 ELSE 0 END", "1"},
        {"nothing fits", "SELECT CASE 3 WHEN 1 THEN 'a' END", "NULL"},
        {"types meet", "SELECT CASE WHEN 1 = 1 THEN 1 ELSE 2.5 END", "1.0"},
        {"a text beside a number is converted", "SELECT CASE WHEN 1 = 1 THEN '7' ELSE 0 END + 1", "8"},
        {"and fails when it is none", "SELECT CASE WHEN 1 = 1 THEN 'x' ELSE 0 END",
         "!245 22018 Conversion failed when converting the varchar value 'x' to data type int."},
        {"branches not taken are not worked out", "SELECT CASE WHEN 1 = 1 THEN 1 ELSE 1 / 0 END", "1"},
        {"nested", "SELECT CASE WHEN 1 = 1 THEN CASE WHEN 1 = 2 THEN 1 ELSE 2 END END", "2"},
        {"a number right before ELSE", "SELECT CASE WHEN 1 = 2 THEN 5ELSE 6 END", "6"},
        {"no branch", "SELECT CASE ELSE 1 END", "!102 42000 Line 1: Incorrect syntax near 'ELSE'."},
    });
}

TEST_F(Expression, TextFunctions)
{
    PlayAll({
        {"LEN leaves trailing blanks out", "SELECT LEN(' ab  '), LEN(''), LEN('\xC3\xA9')", "3|0|1"},
        {"LEN of a number", "SELECT LEN(1234)", "4"},
        {"LEFT and RIGHT", "SELECT LEFT('abc', 2), RIGHT('abc', 2), LEFT('abc', 9), RIGHT('abc', 0)", "ab|bc|abc|"},
        {"LEFT below 0", "SELECT LEFT('abc', -1)", "!536 42000 Invalid length parameter passed to the left function."},
        {"SUBSTRING", "SELECT SUBSTRING('abcdef', 2, 3), SUBSTRING('abc', 3, 9), SUBSTRING('abc', 9, 1)", "bcd|c|"},
        {"SUBSTRING from before the start", "SELECT SUBSTRING('abcdef', 0, 3), SUBSTRING('abcdef', -1, 3)", "ab|a"},
        {"SUBSTRING below 0", "SELECT SUBSTRING('abc', 1, -1)",
         "!536 42000 Invalid length parameter passed to the substring function."},
        {"CHARINDEX", "SELECT CHARINDEX('B', 'abcb'), CHARINDEX('b', 'abcb', 3), CHARINDEX('x', 'abc')", "2|4|0"},
        {"REPLACE ignores case", "SELECT REPLACE('aXbx', 'x', '--')", "a--b--"},
        {"REPLACE of nothing", "SELECT REPLACE('abc', '', 'x')", "abc"},
        {"UPPER and LOWER", "SELECT UPPER('a\xC3\xA9'), LOWER('A\xC3\x89')", "A\xC3\x89|a\xC3\xA9"},
        {"LTRIM and RTRIM", "SELECT '|' + LTRIM('  a ') + '|' + RTRIM(' a  ') + '|'", "|a | a|"},
        {"STR aligns right in ten", "SELECT STR(42), STR(-42.7)", "        42|       -43"},
        {"STR with length and places", "SELECT STR(123.456, 8, 2), STR(5, 3), STR(1.5, 1)", "  123.46|  5|2"},
        {"STR that does not fit", "SELECT STR(1234, 3)", "***"},
        {"STR of a text", "SELECT STR('7')", "         7"},
        {"NULL in, NULL out", "SELECT LEN(NULL), LEFT(NULL, 1), UPPER(NULL), STR(NULL)", "NULL|NULL|NULL|NULL"},
        {"a function that is none", "SELECT SOUNDSLIKE('a')",
         "!195 42000 'SOUNDSLIKE' is not a recognized function name."},
        {"too few arguments", "SELECT LEFT('a')", "!174 42000 The left function requires 2 argument(s)."},
        {"too many arguments", "SELECT LEN('a', 'b')", "!174 42000 The len function requires 1 argument(s)."},
    });
}

TEST_F(Expression, NumberFunctions)
{
    PlayAll({
        {"ABS", "SELECT ABS(-5), ABS(5), ABS(-1.5)", "5|5|1.5"},
        {"ABS out of range", "SELECT ABS(CAST(-2147483648 AS int))",
         "!8115 22003 Arithmetic overflow error converting expression to data type int."},
        {"SIGN", "SELECT SIGN(-5), SIGN(0), SIGN(2.5)", "-1|0|1.0"},
        {"ROUND", "SELECT ROUND(2.345, 2), ROUND(2.675, 2), ROUND(-2.5, 0)", "2.350|2.680|-3.0"},
        {"ROUND to the left", "SELECT ROUND(748.58, -1), ROUND(748, -2)", "750.00|700"},
        {"ROUND that cuts", "SELECT ROUND(2.789, 1, 1)", "2.700"},
        {"FLOOR and CEILING of integers and floats", "SELECT FLOOR(5), CEILING(5), FLOOR(-1.5e0), CEILING(-1.5e0)",
         "5|5|-2|-1"},
        {"FLOOR and CEILING of decimals", "SELECT FLOOR(1.7), CEILING(1.2)", "1|2"},
    });
}

TEST_F(Expression, DateFunctions)
{
    PlayAll({
        {"YEAR, MONTH, DAY", "SELECT YEAR('20060102'), MONTH('20060102'), DAY('20060102')", "2006|1|2"},
        {"DATEPART",
         "SELECT DATEPART(hh, '20060102 15:04:05'), DATEPART(minute, '20060102 15:04:05'), DATEPART(dw, '20060102'), "
         "DATEPART(qq, '20060402'), DATEPART(dy, '20060201')",
         "15|4|2|2|32"},
        {"DATEADD", "SELECT CONVERT(varchar(30), DATEADD(day, 30, '20060102'), 120)", "2006-02-01 00:00:00"},
        {"DATEADD of months keeps to the month's end",
         "SELECT CONVERT(varchar(30), DATEADD(month, 1, '20060131'), 112)", "20060228"},
        {"DATEADD back over years", "SELECT CONVERT(varchar(30), DATEADD(yy, -1, '20040229'), 112)", "20030228"},
        {"DATEADD out of range", "SELECT DATEADD(year, 9000, '20060102')",
         "!517 22003 Adding a value to a 'datetime' column caused an overflow."},
        {"DATEDIFF counts borders",
         "SELECT DATEDIFF(year, '20051231', '20060101'), DATEDIFF(day, '20060102 23:59', '20060103')", "1|1"},
        {"DATEDIFF of hours and seconds",
         "SELECT DATEDIFF(hour, '20060102 01:59', '20060102 03:00'), DATEDIFF(ss, '20060102', '20060103')", "2|86400"},
        {"a part that is none", "SELECT DATEPART(fortnight, '20060102')",
         "!155 42000 'fortnight' is not a recognized datepart option."},
        {"adding days", "SELECT CONVERT(varchar(30), CAST('20060102' AS datetime) + 1, 112)", "20060103"},
        {"taking half a day", "SELECT CONVERT(varchar(30), CAST('20060102' AS datetime) - 0.5, 120)",
         "2006-01-01 12:00:00"},
        {"GETDATE is one moment of a statement", "SELECT 1 WHERE GETDATE() = GETDATE() AND GETDATE() > '20200101'",
         "1"},
        {"a datetime is no number without CONVERT", "SELECT LEFT('abc', GETDATE())",
         "!257 42000 Implicit conversion from data type datetime to int is not allowed. Use the CONVERT function to "
         "run this "
         "query."},
    });
}

TEST_F(Expression, ChoosingAmongValues)
{
    PlayAll({
        {"ISNULL", "SELECT ISNULL(NULL, 'a'), ISNULL('b', 'a'), ISNULL(NULL, NULL)", "a|b|NULL"},
        {"ISNULL has the first one's type",
         "SELECT ISNULL(CAST(NULL AS varchar(2)), 'abc'), ISNULL(CAST(NULL AS int), '7') + 1", "ab|8"},
        {"COALESCE", "SELECT COALESCE(NULL, NULL, 3, 4)", "3"},
        {"COALESCE has the winning type", "SELECT COALESCE(NULL, 1, 2.5)", "1.0"},
        {"NULLIF", "SELECT NULLIF(1, 1), NULLIF(1, 2), NULLIF('a', 'A ')", "NULL|1|NULL"},
        {"ISNULL wants two", "SELECT ISNULL(1)", "!174 42000 The isnull function requires 2 argument(s)."},
    });
}

TEST_F(Expression, Globals)
{
    EXPECT_EQ("0", Play("SELECT @@ROWCOUNT"));
    EXPECT_EQ("1;2 + 2", Play("SELECT 1 UNION ALL SELECT 2 SELECT @@ROWCOUNT"));
    EXPECT_EQ("!8134 22012 Divide by zero error encountered. + 8134 + 0",
              Play("SELECT 1 / 0 SELECT @@ERROR SELECT @@ERROR"));
    EXPECT_EQ("1", Play("SELECT 1 WHERE @@VERSION LIKE '%SQLite%'"));
    EXPECT_EQ("!137 42000 Must declare the scalar variable \"@@NOTHING\".", Play("SELECT @@NOTHING"));
}

TEST_F(Expression, ColumnsSayTheirTypes)
{
    m_session->Execute(
        "SELECT 1, 'abc' AS t, 1.25, CAST('a' AS char(4)), N'xy', GETDATE(), CAST(1 AS bit), 1e0, "
        "CAST(1 AS bigint), 'ab' + 'c', UPPER('abc'), CAST('a' AS varchar(max)), STR(1), COUNT(*), NULL");
    using tsql::Type;
    struct Expected
    {
        const char *name;
        Type type;
        int size;
        int scale;
    };
    constexpr Expected expected[] = {
        {"", Type::Int, 0, 0},      {"t", Type::VarChar, 3, 0}, {"", Type::Decimal, 3, 2}, {"", Type::Char, 4, 0},
        {"", Type::NVarChar, 2, 0}, {"", Type::DateTime, 0, 0}, {"", Type::Bit, 0, 0},     {"", Type::Float, 0, 0},
        {"", Type::BigInt, 0, 0},   {"", Type::VarChar, 3, 0},  {"", Type::VarChar, 0, 0}, {"", Type::VarChar, 0, 0},
        {"", Type::VarChar, 0, 0},  {"", Type::Int, 0, 0},      {"", Type::Int, 0, 0},
    };
    const auto &columns = m_session->NextResult()->Columns();
    ASSERT_EQ(std::size(expected), columns.size());
    for (std::size_t i = 0; i < columns.size(); ++i)
    {
        EXPECT_EQ(expected[i].name, columns[i].name) << i;
        EXPECT_EQ(expected[i].type, columns[i].type) << i;
        EXPECT_EQ(expected[i].size, columns[i].size) << i;
        EXPECT_EQ(expected[i].scale, columns[i].scale) << i;
    }
}

TEST_F(Expression, ValuesAreReadByTheirTypes)
{
    m_session->Execute("SELECT 7, CAST(1 AS bit), 2.50, 1e0 / 4, CAST('20060102 15:04:05.007' AS datetime), NULL");
    tsql::Result *row = m_session->NextResult();
    ASSERT_TRUE(row->Step());
    EXPECT_EQ(7, row->Integer(0));
    EXPECT_EQ(1, row->Integer(1));
    EXPECT_DOUBLE_EQ(2.5, row->Number(2));
    EXPECT_DOUBLE_EQ(0.25, row->Number(3));
    const tsql::DateTime moment = row->Moment(4);
    EXPECT_EQ(2006, moment.year);
    EXPECT_EQ(1, moment.month);
    EXPECT_EQ(2, moment.day);
    EXPECT_EQ(15, moment.hour);
    EXPECT_EQ(4, moment.minute);
    EXPECT_EQ(5, moment.second);
    EXPECT_EQ(7000000, moment.nanosecond);
    EXPECT_TRUE(row->IsNull(5));
    EXPECT_EQ("", row->Text(5));
    EXPECT_FALSE(row->IsNull(0));
    EXPECT_FALSE(row->Step());
    EXPECT_FALSE(row->Step());
}

} // namespace
