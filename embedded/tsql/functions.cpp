// The SQLite functions and the collation that the translated statements call. All of them give NULL for NULL.
#include "functions.h"

#include "datetime.h"
#include "errors.h"
#include "text.h"
#include "types.h"

#include <sqlite3.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tsql
{
namespace
{

constexpr int longestText = 100'000'000; // bytes of any text

std::string_view TextOf(sqlite3_value *value)
{
    const unsigned char *text = sqlite3_value_text(value);
    return {reinterpret_cast<const char *>(text), static_cast<std::size_t>(sqlite3_value_bytes(value))};
}

Value ValueOf(sqlite3_value *value)
{
    switch (sqlite3_value_type(value))
    {
    case SQLITE_INTEGER:
        return IntegerValue(sqlite3_value_int64(value));
    case SQLITE_FLOAT:
        return RealValue(sqlite3_value_double(value));
    default:
        return TextValue(std::string(TextOf(value)));
    }
}

std::int64_t IntegerOf(sqlite3_value *value)
{
    return sqlite3_value_int64(value);
}

// What a function sees of its call.
struct Call
{
    FunctionState &state;
    int count;
    sqlite3_value **values;

    std::string_view Text(int i) const { return TextOf(values[i]); }
    std::int64_t Integer(int i) const { return IntegerOf(values[i]); }
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

// ts_cv(value, from, to, how [, style])
Value ConvertTo(const Call &call)
{
    return Convert(ValueOf(call.values[0]), Unpack(call.Integer(1)), Unpack(call.Integer(2)),
                   static_cast<Conversion>(call.Integer(3)), call.count > 4 ? static_cast<int>(call.Integer(4)) : 0);
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
Value Sum(const Call &call)
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

Value DivideIntegers(const Call &call)
{
    if (call.Integer(1) == 0)
        Raise(8134);
    if (call.Integer(1) == -1)
        return call.Integer(0) == INT64_MIN ? RealValue(9223372036854775808.0) : IntegerValue(-call.Integer(0));
    return IntegerValue(call.Integer(0) / call.Integer(1));
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

Value LengthOf(const Call &call)
{
    return IntegerValue(static_cast<std::int64_t>(Length(TrimRight(call.Text(0)))));
}

Value Left(const Call &call)
{
    return TextValue(std::string(call.Text(0).substr(0, Prefix(call.Text(0), call.Count(1, "left")))));
}

Value Right(const Call &call)
{
    const std::size_t length = Length(call.Text(0));
    const std::size_t count = std::min(call.Count(1, "right"), length);
    return TextValue(std::string(call.Text(0).substr(Prefix(call.Text(0), length - count))));
}

// A start below 1 takes as much from the length.
Value Substring(const Call &call)
{
    const std::int64_t start = call.Integer(1);
    const std::int64_t end = start + static_cast<std::int64_t>(call.Count(2, "substring"));
    const std::string_view text = call.Text(0);
    const std::size_t first = Prefix(text, static_cast<std::size_t>(std::max<std::int64_t>(start - 1, 0)));
    const std::size_t last = Prefix(text, static_cast<std::size_t>(std::max<std::int64_t>(end - 1, 0)));
    return TextValue(std::string(text.substr(first, last - std::min(first, last))));
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

Value UpperOf(const Call &call)
{
    return TextValue(Upper(call.Text(0)));
}

Value LowerOf(const Call &call)
{
    return TextValue(Lower(call.Text(0)));
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

Value Absolute(const Call &call)
{
    if (!call.IsInteger(0))
        return RealValue(std::fabs(call.Real(0)));
    return call.Integer(0) == INT64_MIN ? RealValue(9223372036854775808.0) : IntegerValue(std::abs(call.Integer(0)));
}

// ROUND(number, digits [, truncate])
Value Round(const Call &call)
{
    const int digits = static_cast<int>(std::clamp<std::int64_t>(call.Integer(1), -300, 300));
    const double rounded = RoundTo(call.Real(0), digits, call.count > 2 && call.Integer(2) != 0);
    if (call.IsInteger(0))
        return digits >= 0 ? IntegerValue(call.Integer(0)) : RealValue(rounded);
    return RealValue(rounded);
}

Value Sign(const Call &call)
{
    const int sign = call.Real(0) > 0 ? 1 : call.Real(0) < 0 ? -1 : 0;
    return call.IsInteger(0) ? IntegerValue(sign) : RealValue(sign);
}

Value Floor(const Call &call)
{
    return call.IsInteger(0) ? IntegerValue(call.Integer(0)) : RealValue(std::floor(call.Real(0)));
}

Value Ceiling(const Call &call)
{
    return call.IsInteger(0) ? IntegerValue(call.Integer(0)) : RealValue(std::ceil(call.Real(0)));
}

Value GetDate(const Call &call)
{
    if (call.state.now == 0)
        call.state.now = CurrentTicks();
    return IntegerValue(call.state.now);
}

Value DatePartOf(const Call &call)
{
    return IntegerValue(DatePart(call.Text(0), call.Integer(1)));
}

Value DateAddOf(const Call &call)
{
    return IntegerValue(DateAdd(call.Text(0), call.Integer(1), call.Integer(2)));
}

Value DateDiffOf(const Call &call)
{
    return IntegerValue(DateDiff(call.Text(0), call.Integer(1), call.Integer(2)));
}

void Fail(sqlite3_context *context, FunctionState &state, const SqlError &error)
{
    state.error = error;
    sqlite3_result_error(context, error.what(), -1);
}

template <Value (*Function)(const Call &)>
void Wrapped(sqlite3_context *context, int count, sqlite3_value **values)
{
    FunctionState &state = *static_cast<FunctionState *>(sqlite3_user_data(context));
    for (int i = 0; i < count; ++i)
        if (sqlite3_value_type(values[i]) == SQLITE_NULL)
            return;
    try
    {
        const Value result = Function({state, count, values});
        switch (result.kind)
        {
        case Value::Integer:
            sqlite3_result_int64(context, result.integer);
            break;
        case Value::Real:
            sqlite3_result_double(context, result.real);
            break;
        case Value::Text:
            sqlite3_result_text(context, result.text.data(), static_cast<int>(result.text.size()), SQLITE_TRANSIENT);
            break;
        default:
            break;
        }
    }
    catch (const SqlError &error)
    {
        Fail(context, state, error);
    }
    catch (const std::exception &)
    {
        sqlite3_result_error_nomem(context);
    }
}

struct Function
{
    const char *name;
    void (*call)(sqlite3_context *, int, sqlite3_value **);
};

constexpr Function functions[] = {
    {"ts_cv", Wrapped<ConvertTo>},
    {"ts_like", Wrapped<LikeOf>},
    {"ts_idiv", Wrapped<DivideIntegers>},
    {"ts_sum", Wrapped<Sum>},
    {"ts_mod", Wrapped<Modulo>},
    {"ts_div", Wrapped<Divide>},
    {"ts_len", Wrapped<LengthOf>},
    {"ts_left", Wrapped<Left>},
    {"ts_right", Wrapped<Right>},
    {"ts_substring", Wrapped<Substring>},
    {"ts_charindex", Wrapped<CharIndex>},
    {"ts_replace", Wrapped<Replace>},
    {"ts_upper", Wrapped<UpperOf>},
    {"ts_lower", Wrapped<LowerOf>},
    {"ts_str", Wrapped<Str>},
    {"ts_abs", Wrapped<Absolute>},
    {"ts_round", Wrapped<Round>},
    {"ts_sign", Wrapped<Sign>},
    {"ts_floor", Wrapped<Floor>},
    {"ts_ceiling", Wrapped<Ceiling>},
    {"ts_getdate", Wrapped<GetDate>},
    {"ts_datepart", Wrapped<DatePartOf>},
    {"ts_dateadd", Wrapped<DateAddOf>},
    {"ts_datediff", Wrapped<DateDiffOf>},
};

// ts_single(value): the value of the only row; error 512 when there are more.
struct Single
{
    sqlite3_value *value;
    bool seen;
};

void SingleStep(sqlite3_context *context, int, sqlite3_value **values)
{
    Single *single = static_cast<Single *>(sqlite3_aggregate_context(context, sizeof(Single)));
    if (!single)
        return sqlite3_result_error_nomem(context);
    if (single->seen)
    {
        try
        {
            Raise(512);
        }
        catch (const SqlError &error)
        {
            Fail(context, *static_cast<FunctionState *>(sqlite3_user_data(context)), error);
        }
        return;
    }
    single->seen = true;
    single->value = sqlite3_value_dup(values[0]);
}

void SingleFinal(sqlite3_context *context)
{
    Single *single = static_cast<Single *>(sqlite3_aggregate_context(context, 0));
    if (single && single->value)
    {
        sqlite3_result_value(context, single->value);
        sqlite3_value_free(single->value);
    }
}

int Collate(void *, int leftSize, const void *left, int rightSize, const void *right)
{
    return Compare({static_cast<const char *>(left), static_cast<std::size_t>(leftSize)},
                   {static_cast<const char *>(right), static_cast<std::size_t>(rightSize)});
}

} // namespace

void RegisterFunctions(sqlite3 *db, FunctionState &state)
{
    sqlite3_limit(db, SQLITE_LIMIT_LENGTH, longestText);
    int code = sqlite3_create_collation_v2(db, "ts", SQLITE_UTF8, nullptr, Collate, nullptr);
    for (const Function &function : functions)
    {
        const int flags =
            SQLITE_UTF8 | SQLITE_INNOCUOUS | (function.call == Wrapped<GetDate> ? 0 : SQLITE_DETERMINISTIC);
        if (code == SQLITE_OK)
            code = sqlite3_create_function_v2(db, function.name, -1, flags, &state, function.call, nullptr, nullptr,
                                              nullptr);
    }
    if (code == SQLITE_OK)
        code = sqlite3_create_function_v2(db, "ts_single", 1, SQLITE_UTF8, &state, nullptr, SingleStep, SingleFinal,
                                          nullptr);
    if (code != SQLITE_OK)
        RaiseSqlite(db, code);
}

} // namespace tsql
