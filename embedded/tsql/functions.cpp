// What SQLite lacks: functions, LIKE, and the collations of texts and of moments.
#include "functions.h"

#include "catalog.h"
#include "datetime.h"
#include "errors.h"
#include "prepared.h"
#include "text.h"

#include "runtime/text.h"

#include <sqlite3.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tsql
{
namespace
{

// What a function sees of its call. None of the arguments is NULL.
struct Call
{
    int count;
    sqlite3_value **values;

    std::string_view Text(int i) const
    {
        const auto *const text = reinterpret_cast<const char *>(sqlite3_value_text(values[i]));
        return {text, static_cast<std::size_t>(sqlite3_value_bytes(values[i]))};
    }
    std::int64_t Integer(int i) const { return sqlite3_value_int64(values[i]); }
    int Kind(int i) const { return sqlite3_value_type(values[i]); }
    // A count of characters; `function` is named when it is negative.
    std::size_t Count(int i, const char *function) const
    {
        if (Integer(i) < 0)
            Raise(536, {function});
        return static_cast<std::size_t>(Integer(i));
    }
};

Value Copy(std::string_view text)
{
    return std::string(text);
}

bool Out(std::int64_t value, Type type)
{
    const std::int64_t largest = type == Type::TinyInt ? 255 : type == Type::SmallInt ? INT16_MAX : INT32_MAX;
    return type != Type::BigInt && (value > largest || value < (type == Type::TinyInt ? 0 : -largest - 1));
}

std::int64_t InRange(std::int64_t value, Type type)
{
    if (type == Type::Bit)
        return value != 0 ? 1 : 0;
    if (!Out(value, type))
        return value;
    if (type == Type::Int)
        Raise(8115, {"expression", "int"});
    Raise(220, {NameOf(type), std::to_string(value)});
}

// Blanks around the digits are passed over, and no digits are 0.
std::int64_t IntegerOf(std::string_view text, Type type)
{
    const std::string_view digits = runtime::Trim(text);
    const std::string_view number = digits.starts_with('+') ? digits.substr(1) : digits;
    std::int64_t value = 0;
    const auto read = std::from_chars(number.data(), number.data() + number.size(), value);
    if (digits.empty())
        return 0;
    if (read.ptr != number.data() + number.size() || read.ec == std::errc::invalid_argument)
        Raise(245, {"varchar", text, NameOf(type)});
    const bool wide = read.ec != std::errc() || value > INT32_MAX || value < INT32_MIN;
    if (type == Type::Int && wide)
        Raise(248, {"varchar", text});
    if ((type == Type::SmallInt || type == Type::TinyInt) && InRange(value, Type::BigInt) != 0 &&
        (wide || value > (type == Type::TinyInt ? 255 : INT16_MAX) || value < (type == Type::TinyInt ? 0 : INT16_MIN)))
        Raise(244, {"varchar", text, type == Type::TinyInt ? "INT1" : "INT2"});
    return InRange(value, type);
}

double NumberOf(std::string_view text)
{
    const std::string_view digits = runtime::Trim(text);
    double value = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (!std::isfinite(value) || read.ec != std::errc() || read.ptr != digits.data() + digits.size())
        Raise(8114, {"varchar", "float"});
    return value;
}

// ts_convert(type, size, value [, style])
Value Convert(const Call &call)
{
    const auto type = static_cast<Type>(call.Integer(0));
    const auto size = static_cast<std::size_t>(call.Integer(1));
    if (call.count > 3)
        return FormatTicks(ParseTicks(call.Text(2)), static_cast<int>(call.Integer(3)));
    if (type == Type::DateTime)
        return FormatTicks(ParseTicks(call.Text(2)), 121);
    if (type == Type::Float)
        return call.Kind(2) == SQLITE_TEXT ? NumberOf(call.Text(2)) : sqlite3_value_double(call.values[2]);
    if (call.Kind(2) == SQLITE_FLOAT)
        Unsupported("A conversion of float");
    if (IsInteger(type))
        return call.Kind(2) == SQLITE_TEXT ? IntegerOf(call.Text(2), type) : InRange(call.Integer(2), type);
    const std::string_view text = call.Text(2);
    const std::size_t length = runtime::Length(text);
    if (size == 0 || length <= size)
        return Copy(text);
    if (call.Kind(2) == SQLITE_INTEGER && type != Type::VarChar)
        Raise(8115, {"int", NameOf(type)});
    return call.Kind(2) == SQLITE_INTEGER ? Copy("*") : Copy(runtime::Left(text, size));
}

// ts_fits(type, size, value): what a column can hold. An error is raised otherwise.
Value Fits(const Call &call)
{
    const auto type = static_cast<Type>(call.Integer(0));
    const auto size = static_cast<std::size_t>(call.Integer(1));
    const int kind = call.Kind(2);
    const auto unfit = [&]
    { Unsupported("'" + std::string(call.Text(2)) + "' in a column of type " + std::string(NameOf(type))); };
    if (type == Type::DateTime)
        kind == SQLITE_TEXT ? void(ParseTicks(call.Text(2))) : unfit();
    else if (IsText(type))
    {
        const std::string_view text = call.Text(2);
        if (size != 0 && runtime::Length(text) > size)
            runtime::Length(runtime::TrimRight(text)) > size ? Raise(8152) : unfit(); // blanks would be cut off
        if ((type == Type::Char || type == Type::NChar) && runtime::Length(text) != size)
            unfit();
    }
    else if (kind == SQLITE_TEXT)
        IntegerOf(call.Text(2), type), unfit();
    else if (IsInteger(type) && (kind != SQLITE_INTEGER || InRange(call.Integer(2), type) != call.Integer(2)))
        unfit();
    return std::int64_t{1};
}

// ts_range(type, value): the result of a calculation, which has to fit its type.
Value Range(const Call &call)
{
    const auto type = static_cast<Type>(call.Integer(0));
    if (call.Kind(1) != SQLITE_INTEGER || (type != Type::Bit && Out(call.Integer(1), type)))
        Raise(8115, {"expression", NameOf(type)});
    return call.Integer(1);
}

// A start below 1 takes as much from the length.
Value Substring(const Call &call)
{
    const std::int64_t start = call.Integer(1);
    const std::int64_t end = start + static_cast<std::int64_t>(call.Count(2, "substring"));
    const std::string_view text = call.Text(0);
    const auto before = [](std::int64_t place)
    { return static_cast<std::size_t>(std::max<std::int64_t>(place - 1, 0)); };
    return Copy(runtime::Left(runtime::Without(text, before(start)), before(end) - before(start)));
}

Value CharIndex(const Call &call)
{
    const Place found = call.Text(0).empty() ? Place{std::string_view::npos, 0} : Find(call.Text(1), call.Text(0), 0);
    if (found.at == std::string_view::npos)
        return std::int64_t{0};
    return static_cast<std::int64_t>(runtime::Length(call.Text(1).substr(0, found.at))) + 1;
}

Value Replace(const Call &call)
{
    const std::string_view text = call.Text(0);
    const auto next = [&](std::size_t at) {
        return call.Text(1).empty() ? Place{std::string_view::npos, 0} : Find(text, call.Text(1), at);
    };
    std::string out;
    std::size_t at = 0;
    for (Place place = next(0); place.at != std::string_view::npos; place = next(at))
    {
        out.append(text, at, place.at - at).append(call.Text(2));
        at = place.at + place.length;
    }
    return out.append(text.substr(at));
}

Value Right(const Call &call)
{
    const std::string_view text = call.Text(0);
    const std::size_t length = runtime::Length(text);
    return Copy(runtime::Without(text, length - std::min(call.Count(1, "right"), length)));
}

// STR(number [, length]) of an integer: right-aligned, stars when it does not fit.
Value Str(const Call &call)
{
    const std::int64_t width = call.count > 1 ? call.Integer(1) : 10;
    if (call.Kind(0) != SQLITE_INTEGER || width < 1 || width > 8000)
        Unsupported("STR of these values");
    const std::string digits = std::to_string(InRange(call.Integer(0), Type::Int));
    const std::size_t blanks =
        static_cast<std::size_t>(width) - std::min(digits.size(), static_cast<std::size_t>(width));
    return digits.size() > static_cast<std::size_t>(width) ? std::string(static_cast<std::size_t>(width), '*')
                                                           : std::string(blanks, ' ') + digits;
}

struct Function
{
    const char *name;
    int arguments; // -1: any number
    Value (*call)(const Call &);
};
constexpr Function functions[] = {
    {"ts_charindex", 2, CharIndex},
    {"ts_convert", -1, Convert},
    {"ts_fits", 3, Fits},
    {"ts_left", 2, [](const Call &call) { return Copy(runtime::Left(call.Text(0), call.Count(1, "left"))); }},
    {"ts_len", 1,
     [](const Call &call) -> Value
     { return static_cast<std::int64_t>(runtime::Length(runtime::TrimRight(call.Text(0)))); }},
    {"ts_lower", 1, [](const Call &call) -> Value { return Lower(call.Text(0)); }},
    {"ts_range", 2, Range},
    {"ts_replace", 3, Replace},
    {"ts_right", 2, Right},
    {"ts_str", -1, Str},
    {"ts_substring", 3, Substring},
    {"ts_upper", 1, [](const Call &call) -> Value { return runtime::UpperCase(call.Text(0)); }},
    {"like", 2, [](const Call &call) -> Value { return std::int64_t{Like(call.Text(1), call.Text(0), true) ? 1 : 0}; }},
    {"ts_now", 0, [](const Call &) -> Value { return FormatTicks(CurrentTicks(), 121); }},
};

// What SQLite hands back at a call.
struct Registered
{
    FunctionError &error;
    Value (*call)(const Call &);
};

void Give(sqlite3_context *context, const Value &value)
{
    if (const auto *integer = std::get_if<std::int64_t>(&value))
        sqlite3_result_int64(context, *integer);
    else if (const auto *real = std::get_if<double>(&value))
        sqlite3_result_double(context, *real);
    else if (const auto *text = std::get_if<std::string>(&value))
        sqlite3_result_text(context, text->data(), static_cast<int>(text->size()), SQLITE_TRANSIENT);
}

// NULL gives NULL. An error becomes that of the running statement.
void Run(sqlite3_context *context, int count, sqlite3_value **values)
{
    const Registered &registered = *static_cast<Registered *>(sqlite3_user_data(context));
    if (std::any_of(values, values + count, [](sqlite3_value *one) { return sqlite3_value_type(one) == SQLITE_NULL; }))
        return;
    try
    {
        Give(context, registered.call({count, values}));
    }
    catch (const SqlError &error)
    {
        registered.error = error;
        sqlite3_result_error(context, error.what(), -1);
    }
    catch (const std::bad_alloc &)
    {
        sqlite3_result_error_nomem(context);
    }
}

// The aggregate ts_single(value): of the rows of a query that stands for a value there may be one.
void SingleStep(sqlite3_context *context, int, sqlite3_value **values)
{
    auto *const kept = static_cast<sqlite3_value **>(sqlite3_aggregate_context(context, sizeof(sqlite3_value *)));
    if (kept == nullptr)
        return sqlite3_result_error_nomem(context);
    if (*kept != nullptr)
    {
        const Registered &registered = *static_cast<Registered *>(sqlite3_user_data(context));
        registered.error = MakeError(512);
        return sqlite3_result_error(context, registered.error->what(), -1);
    }
    *kept = sqlite3_value_dup(values[0]);
}

void SingleEnd(sqlite3_context *context)
{
    auto *const kept = static_cast<sqlite3_value **>(sqlite3_aggregate_context(context, 0));
    if (kept == nullptr || *kept == nullptr)
        return;
    sqlite3_result_value(context, *kept);
    sqlite3_value_free(*kept);
}

std::string_view View(int size, const void *text)
{
    return {static_cast<const char *>(text), static_cast<std::size_t>(size)};
}

int CompareTexts(void *, int leftSize, const void *left, int rightSize, const void *right)
{
    return Compare(View(leftSize, left), View(rightSize, right));
}

// Moments are texts in one of several forms. One that is none is before all others; no column holds it.
int CompareMoments(void *, int leftSize, const void *left, int rightSize, const void *right)
{
    const auto ticks = [](std::string_view text)
    {
        try
        {
            return ParseTicks(text);
        }
        catch (const SqlError &)
        {
            return INT64_MIN;
        }
    };
    const std::int64_t one = ticks(View(leftSize, left));
    const std::int64_t other = ticks(View(rightSize, right));
    return one < other ? -1 : one > other ? 1 : 0;
}

void Delete(void *registered)
{
    delete static_cast<Registered *>(registered);
}

} // namespace

void RegisterFunctions(sqlite3 *db, FunctionError &error)
{
    int code = sqlite3_create_collation_v2(db, "ts", SQLITE_UTF8, nullptr, CompareTexts, nullptr);
    if (code == SQLITE_OK)
        code = sqlite3_create_collation_v2(db, "ts_moment", SQLITE_UTF8, nullptr, CompareMoments, nullptr);
    constexpr int flags =
        SQLITE_UTF8 | SQLITE_INNOCUOUS | SQLITE_DETERMINISTIC; // the clock stands still in a statement
    for (const Function &function : functions)
        if (code == SQLITE_OK)
            code = sqlite3_create_function_v2(db, function.name, function.arguments, flags,
                                              new Registered{error, function.call}, Run, nullptr, nullptr, Delete);
    if (code == SQLITE_OK)
        code = sqlite3_create_function_v2(db, "ts_single", 1, flags, new Registered{error, nullptr}, nullptr,
                                          SingleStep, SingleEnd, Delete);
    if (code != SQLITE_OK)
        RaiseSqlite(db, code);
}

} // namespace tsql
