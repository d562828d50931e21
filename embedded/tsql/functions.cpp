// The functions of the dialect as SQLite calls them. All of them give NULL for NULL.
#include "functions.h"

#include "datetime.h"
#include "errors.h"
#include "statement.h"
#include "text.h"

#include <sqlite3.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>

namespace tsql
{

// What a function sees of its call.
struct Call
{
    FunctionState &state;
    int count;
    sqlite3_value **values;

    std::string_view Text(int i) const
    {
        const unsigned char *text = sqlite3_value_text(values[i]);
        return {reinterpret_cast<const char *>(text), static_cast<std::size_t>(sqlite3_value_bytes(values[i]))};
    }
    std::int64_t Integer(int i) const { return sqlite3_value_int64(values[i]); }
    double Real(int i) const { return sqlite3_value_double(values[i]); }
    bool IsInteger(int i) const { return sqlite3_value_type(values[i]) == SQLITE_INTEGER; }
    // A count of characters, at least 0; `function` is named when it is negative.
    std::size_t Count(int i, const char *function) const
    {
        if (Integer(i) < 0)
            Raise(536, {function});
        return static_cast<std::size_t>(Integer(i));
    }
};

namespace
{

constexpr int longestText = 100'000'000;         // bytes of any text
constexpr std::int64_t longestRepetition = 8000; // characters

Value TextPart(std::string_view text, std::size_t first, std::size_t last)
{
    return TextValue(std::string(text.substr(first, last - std::min(first, last))));
}

// ts_like(text, pattern, ignore blanks [, escape])
Value LikeOf(const Call &call)
{
    std::uint32_t escape = 0;
    if (call.count > 3)
    {
        std::size_t at = 0;
        const std::string_view text = call.Text(3);
        escape = text.empty() ? 0 : Decode(text, at);
        if (text.empty() || at != text.size())
            Raise(506, {text});
    }
    return IntegerValue(Like(call.Text(0), call.Text(1), escape, call.Integer(2) != 0) ? 1 : 0);
}

// ts_sum(type, a, 0, b, 1, c ...): a + b - c, checked at each step.
Value SumOf(const Call &call)
{
    std::int64_t sum = call.Integer(1);
    for (int i = 2; i + 1 < call.count; i += 2)
    {
        const bool overflow = call.Integer(i) != 0 ? __builtin_sub_overflow(sum, call.Integer(i + 1), &sum)
                                                   : __builtin_add_overflow(sum, call.Integer(i + 1), &sum);
        if (overflow)
            Raise(8115, {"expression", "bigint"});
        Convert(IntegerValue(sum), {Type::BigInt, 0, 0}, Unpack(call.Integer(0)), Conversion::Expression);
    }
    return IntegerValue(sum);
}

// What has no place among 64 bits becomes a number that no integer type takes.
Value Negative(std::int64_t number)
{
    return number == INT64_MIN ? RealValue(9223372036854775808.0) : IntegerValue(-number);
}

Value DivideIntegers(const Call &call)
{
    if (call.Integer(1) == 0)
        Raise(8134);
    return call.Integer(1) == -1 ? Negative(call.Integer(0)) : IntegerValue(call.Integer(0) / call.Integer(1));
}

Value Modulo(const Call &call)
{
    if (call.Real(1) == 0)
        Raise(8134);
    if (call.IsInteger(0) && call.IsInteger(1))
        return IntegerValue(call.Integer(1) == -1 ? 0 : call.Integer(0) % call.Integer(1));
    return RealValue(std::fmod(call.Real(0), call.Real(1)));
}

// ts_div(a, b [, scale]): decimals are cut to the scale, floats are not.
Value Divide(const Call &call)
{
    if (call.Real(1) == 0)
        Raise(8134);
    const double quotient = call.Real(0) / call.Real(1);
    return RealValue(call.count > 2 ? RoundTo(quotient, static_cast<int>(call.Integer(2)), true) : quotient);
}

// Of the rows of a subquery that stands for a value there may be one.
Value Single(const Call &call)
{
    if (call.Integer(0) > 1)
        Raise(512);
    return IntegerValue(1);
}

// A start below 1 takes as much from the length.
Value Substring(const Call &call)
{
    const std::int64_t start = call.Integer(1);
    const std::int64_t end = start + static_cast<std::int64_t>(call.Count(2, "substring"));
    const auto place = [&](std::int64_t character)
    { return Prefix(call.Text(0), static_cast<std::size_t>(std::max<std::int64_t>(character - 1, 0))); };
    return TextPart(call.Text(0), place(start), place(end));
}

Value CharIndex(const Call &call)
{
    const std::string_view text = call.Text(1);
    const std::int64_t start = call.count > 2 ? std::max<std::int64_t>(call.Integer(2), 1) : 1;
    if (call.Text(0).empty())
        return IntegerValue(0);
    const Place place = Find(text, call.Text(0), Prefix(text, static_cast<std::size_t>(start - 1)));
    return IntegerValue(place.length == 0 ? 0 : static_cast<std::int64_t>(Length(text.substr(0, place.at))) + 1);
}

Value Replace(const Call &call)
{
    const std::string_view text = call.Text(0);
    std::string out;
    std::size_t at = 0;
    if (!call.Text(1).empty())
        for (Place place = Find(text, call.Text(1), 0); place.length > 0; place = Find(text, call.Text(1), at))
        {
            out.append(text, at, place.at - at).append(call.Text(2));
            at = place.at + place.length;
            if (out.size() > longestText)
                Raise(8152);
        }
    return TextValue(out.append(text.substr(at)));
}

Value Repeated(std::string_view text, std::int64_t count)
{
    if (count < 0)
        return {};
    std::string out;
    const std::int64_t length = std::max<std::int64_t>(static_cast<std::int64_t>(Length(text)), 1);
    for (std::int64_t i = 0; i < std::min(count, longestRepetition / length + 1); ++i)
        out += text;
    return TextPart(out, 0, Prefix(out, longestRepetition));
}

Value Reverse(const Call &call)
{
    const std::string_view text = call.Text(0);
    std::string out;
    for (std::size_t at = 0; at < text.size();)
    {
        const std::size_t start = at;
        Decode(text, at);
        out.insert(0, text.substr(start, at - start));
    }
    return TextValue(std::move(out));
}

// The character of a code, NULL beyond `most`; the code of the first character, NULL when there is none.
Value CharacterOf(std::int64_t code, std::int64_t most)
{
    if (code < 0 || code > most)
        return {};
    std::string out;
    Append(out, static_cast<std::uint32_t>(code));
    return TextValue(std::move(out));
}

Value CodeOf(std::string_view text, std::uint32_t most)
{
    std::size_t at = 0;
    if (text.empty())
        return {};
    const std::uint32_t code = Decode(text, at);
    return IntegerValue(code <= most ? code : '?');
}

// The bytes the server keeps a value in: DATALENGTH(value, type).
Value DataLength(const Call &call)
{
    const ValueType type = Unpack(call.Integer(1));
    constexpr int sizes[] = {1, 1, 2, 4, 8};
    if (IsText(type.type))
        return IntegerValue(static_cast<std::int64_t>(Length(call.Text(0))) * (IsNational(type.type) ? 2 : 1));
    if (IsInteger(type.type))
        return IntegerValue(sizes[static_cast<int>(type.type)]);
    if (type.type == Type::Decimal)
        return IntegerValue(type.size < 10 ? 5 : type.size < 20 ? 9 : type.size < 29 ? 13 : 17);
    return IntegerValue(type.size == realSize || type.size == smallDateSize ? 4 : 8);
}

// STR(number [, length [, decimals]]): right-aligned, stars when it does not fit, decimals cut to fit.
Value Str(const Call &call)
{
    const std::int64_t length = call.count > 1 ? call.Integer(1) : 10;
    const std::int64_t decimals = call.count > 2 ? std::min<std::int64_t>(call.Integer(2), 16) : 0;
    if (length < 1 || length > 8000 || decimals < 0)
        return {};
    const std::size_t width = static_cast<std::size_t>(length);
    char text[400];
    for (int digits = static_cast<int>(decimals);; --digits)
    {
        const auto end =
            std::to_chars(text, text + sizeof text, RoundTo(call.Real(0), digits), std::chars_format::fixed, digits);
        const std::string out(text, end.ptr);
        if (out.size() <= width)
            return TextValue(std::string(width - out.size(), ' ') + out);
        if (digits == 0)
            return TextValue(std::string(width, '*'));
    }
}

// ROUND(number, digits [, truncate])
Value Round(const Call &call)
{
    const int digits = static_cast<int>(std::clamp<std::int64_t>(call.Integer(1), -300, 300));
    if (call.IsInteger(0) && digits >= 0)
        return IntegerValue(call.Integer(0));
    return RealValue(RoundTo(call.Real(0), digits, call.count > 2 && call.Integer(2) != 0));
}

Value Sign(const Call &call)
{
    const int sign = call.Real(0) > 0 ? 1 : call.Real(0) < 0 ? -1 : 0;
    return call.IsInteger(0) ? IntegerValue(sign) : RealValue(sign);
}

Value GetDate(const Call &call)
{
    if (call.state.now == 0)
        call.state.now = CurrentTicks();
    return IntegerValue(call.state.now);
}

template <double (*Cut)(double)>
Value Whole(const Call &call)
{
    return call.IsInteger(0) ? IntegerValue(call.Integer(0)) : RealValue(Cut(call.Real(0)));
}

// Sorted by name.
constexpr Function functions[] = {
    {"ABS", 1, "n", '=',
     [](const Call &call)
     {
         if (!call.IsInteger(0))
             return RealValue(std::fabs(call.Real(0)));
         return call.Integer(0) < 0 ? Negative(call.Integer(0)) : IntegerValue(call.Integer(0));
     }},
    {"ASCII", 1, "t", 'I', [](const Call &call) { return CodeOf(call.Text(0), 255); }},
    {"CEILING", 1, "n", '0', Whole<std::ceil>},
    {"CHAR", 1, "i", 'V', [](const Call &call) { return CharacterOf(call.Integer(0), 255); }},
    {"CHARINDEX", 2, "tti", 'I', CharIndex},
    {"DATALENGTH", 1, "a", 'I', DataLength},
    {"DATEADD", 3, "pid", 'D',
     [](const Call &call) { return IntegerValue(DateAdd(call.Text(0), call.Integer(1), call.Integer(2))); }},
    {"DATEDIFF", 3, "pdd", 'I',
     [](const Call &call) { return IntegerValue(DateDiff(call.Text(0), call.Integer(1), call.Integer(2))); }},
    {"DATEPART", 2, "pd", 'I', [](const Call &call) { return IntegerValue(DatePart(call.Text(0), call.Integer(1))); }},
    {"DAY", 1, "d", 'I', [](const Call &call) { return IntegerValue(DatePart("day", call.Integer(0))); }},
    {"FLOOR", 1, "n", '0', Whole<std::floor>},
    {"GETDATE", 0, "", 'D', GetDate},
    {"LEFT", 2, "ti", 'T',
     [](const Call &call) { return TextPart(call.Text(0), 0, Prefix(call.Text(0), call.Count(1, "left"))); }},
    {"LEN", 1, "t", 'I',
     [](const Call &call) { return IntegerValue(static_cast<std::int64_t>(Length(TrimRight(call.Text(0))))); }},
    {"LOWER", 1, "t", 'T', [](const Call &call) { return TextValue(Lower(call.Text(0))); }},
    {"LTRIM", 1, "t", 'T',
     [](const Call &call) {
         return TextPart(call.Text(0), std::min(call.Text(0).find_first_not_of(' '), call.Text(0).size()), longestText);
     }},
    {"MONTH", 1, "d", 'I', [](const Call &call) { return IntegerValue(DatePart("month", call.Integer(0))); }},
    {"NCHAR", 1, "i", 'N', [](const Call &call) { return CharacterOf(call.Integer(0), 0xFFFF); }},
    {"REPLACE", 3, "ttt", 'T', Replace},
    {"REPLICATE", 2, "ti", 'T', [](const Call &call) { return Repeated(call.Text(0), call.Integer(1)); }},
    {"REVERSE", 1, "t", 'T', Reverse},
    {"RIGHT", 2, "ti", 'T',
     [](const Call &call)
     {
         const std::size_t length = Length(call.Text(0));
         const std::size_t count = std::min(call.Count(1, "right"), length);
         return TextPart(call.Text(0), Prefix(call.Text(0), length - count), call.Text(0).size());
     }},
    {"ROUND", 2, "nii", '=', Round},
    {"RTRIM", 1, "t", 'T', [](const Call &call) { return TextValue(std::string(TrimRight(call.Text(0)))); }},
    {"SIGN", 1, "n", '=', Sign},
    {"SPACE", 1, "i", 'V', [](const Call &call) { return Repeated(" ", call.Integer(0)); }},
    {"STR", 1, "fii", 'V', Str},
    {"SUBSTRING", 3, "tii", 'T', Substring},
    {"UNICODE", 1, "t", 'I', [](const Call &call) { return CodeOf(call.Text(0), 0x10FFFF); }},
    {"UPPER", 1, "t", 'T', [](const Call &call) { return TextValue(Upper(call.Text(0))); }},
    {"YEAR", 1, "d", 'I', [](const Call &call) { return IntegerValue(DatePart("year", call.Integer(0))); }},
};

// What operators and conversions are written as.
constexpr Function operators[] = {
    {"cv", 0, "", 0,
     [](const Call &call)
     {
         return Convert(ValueOf(call.values[0]), Unpack(call.Integer(1)), Unpack(call.Integer(2)),
                        static_cast<Conversion>(call.Integer(3)),
                        call.count > 4 ? static_cast<int>(call.Integer(4)) : 0);
     }},
    {"div", 0, "", 0, Divide},
    {"idiv", 0, "", 0, DivideIntegers},
    {"like", 0, "", 0, LikeOf},
    {"mod", 0, "", 0, Modulo},
    {"single", 0, "", 0, Single},
    {"sum", 0, "", 0, SumOf},
};

// What SQLite hands back at a call.
struct Registered
{
    FunctionState &state;
    Value (*call)(const Call &);
};

void Run(sqlite3_context *context, int count, sqlite3_value **values)
{
    const Registered &registered = *static_cast<Registered *>(sqlite3_user_data(context));
    for (int i = 0; i < count; ++i)
        if (sqlite3_value_type(values[i]) == SQLITE_NULL)
            return;
    try
    {
        const Value result = registered.call({registered.state, count, values});
        if (result.kind == Value::Integer)
            sqlite3_result_int64(context, result.integer);
        else if (result.kind == Value::Real)
            sqlite3_result_double(context, result.real);
        else if (result.kind == Value::Text)
            sqlite3_result_text(context, result.text.data(), static_cast<int>(result.text.size()), SQLITE_TRANSIENT);
    }
    catch (const SqlError &error)
    {
        registered.state.error = error;
        sqlite3_result_error(context, error.what(), -1);
    }
    catch (const std::exception &)
    {
        sqlite3_result_error_nomem(context);
    }
}

int Collate(void *, int leftSize, const void *left, int rightSize, const void *right)
{
    return Compare({static_cast<const char *>(left), static_cast<std::size_t>(leftSize)},
                   {static_cast<const char *>(right), static_cast<std::size_t>(rightSize)});
}

} // namespace

const Function *FindFunction(std::string_view name)
{
    const Function *found =
        std::lower_bound(std::begin(functions), std::end(functions), name,
                         [](const Function &function, std::string_view wanted) { return function.name < wanted; });
    return found != std::end(functions) && found->name == name ? found : nullptr;
}

void RegisterFunctions(sqlite3 *db, FunctionState &state)
{
    sqlite3_limit(db, SQLITE_LIMIT_LENGTH, longestText);
    int code = sqlite3_create_collation_v2(db, "ts", SQLITE_UTF8, nullptr, Collate, nullptr);
    const auto add = [&](const Function &function)
    {
        const int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS | (function.call == GetDate ? 0 : SQLITE_DETERMINISTIC);
        if (code == SQLITE_OK)
            code = sqlite3_create_function_v2(db, ("ts_" + std::string(function.name)).c_str(), -1, flags,
                                              new Registered{state, function.call}, Run, nullptr, nullptr,
                                              [](void *registered) { delete static_cast<Registered *>(registered); });
    };
    std::for_each(std::begin(functions), std::end(functions), add);
    std::for_each(std::begin(operators), std::end(operators), add);
    if (code != SQLITE_OK)
        RaiseSqlite(db, code);
}

} // namespace tsql
