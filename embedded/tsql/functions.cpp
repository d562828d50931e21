// What SQLite lacks.
#include "functions.h"

#include "catalog.h"
#include "errors.h"
#include "text.h"

#include "runtime/text.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>

namespace tsql
{
namespace
{

// A call of a function. None of the arguments is NULL.
struct Call
{
    sqlite3_context *context;
    sqlite3_value **values;

    std::string_view Text(int i) const
    {
        const auto *const text = reinterpret_cast<const char *>(sqlite3_value_text(values[i]));
        return {text, static_cast<std::size_t>(sqlite3_value_bytes(values[i]))};
    }
    std::int64_t Integer(int i) const { return sqlite3_value_int64(values[i]); }
    int Storage(int i) const { return sqlite3_value_type(values[i]); }
    void Give(std::int64_t value) const { sqlite3_result_int64(context, value); }
    void Give(std::string_view text) const
    {
        sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
    }
};

std::int64_t Count(std::string_view text)
{
    return static_cast<std::int64_t>(runtime::Length(text));
}

bool IsInRange(std::int64_t value, Type type)
{
    const std::int64_t largest = type == Type::TinyInt ? 255 : type == Type::SmallInt ? INT16_MAX : INT32_MAX;
    return type == Type::BigInt || (value <= largest && value >= (type == Type::TinyInt ? 0 : -largest - 1));
}

std::int64_t InRange(std::int64_t value, std::string_view name)
{
    const Type type = TypeOf(name);
    if (type != Type::Bit && !IsInRange(value, type))
        type == Type::Int ? Raise(8115, {"expression", name}) : Raise(220, {name, std::to_string(value)});
    return type == Type::Bit && value != 0 ? 1 : value;
}

// Blanks around the digits are passed over, and no digits are 0.
std::int64_t IntegerOf(std::string_view text, std::string_view name)
{
    const Type type = TypeOf(name);
    const std::string_view digits = runtime::Trim(text);
    const std::string_view number = digits.starts_with('+') ? digits.substr(1) : digits;
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    const bool isNumber = end == number.data() + number.size() && error != std::errc::invalid_argument;
    if (digits.empty())
        return 0;
    if (type == Type::Bit && !isNumber)
        Unsupported("'" + std::string(text) + "' as bit");
    if (!isNumber || digits.starts_with("+-"))
        Raise(245, {"varchar", text, name});
    if (error == std::errc() && IsInRange(value, type))
        return InRange(value, name);
    if (type == Type::SmallInt || type == Type::TinyInt)
        Raise(244, {"varchar", text, type == Type::TinyInt ? "INT1" : "INT2"});
    type == Type::Int ? Raise(248, {"varchar", text}) : Raise(8115, {"expression", name});
}

// Reads what means the same whatever the server's language: "20030211" or "2003-02-11", with a time behind a blank or
// T, "08:15", "08:15:30" or "08:15:30.50". The server's clock ticks in 1/300 s, so that a fraction of whole hundredths
// alone is kept as it stands.
std::string ReadMoment(std::string_view text)
{
    constexpr std::string_view times[] = {"", " 00:00", " 00:00:00", " 00:00:00.0", " 00:00:00.00", " 00:00:00.000"};
    std::string form; // with 0 for each digit
    std::string digits;
    for (const char c : runtime::Trim(text))
    {
        const bool digit = c >= '0' && c <= '9';
        form += digit ? '0' : c == 'T' ? ' ' : c;
        digits.append(digit ? 1 : 0, c);
    }
    const std::string_view date = form.starts_with("0000-00-00") ? "0000-00-00" : "00000000";
    digits.resize(std::max<std::size_t>(digits.size(), 17), '0');
    if (!form.starts_with(date) || std::ranges::count(times, form.substr(date.size())) == 0 || digits[16] != '0')
        Unsupported("the date '" + std::string(text) + "'");
    const auto part = [&](int at, int count) { return std::stoi(digits.substr(at, count)); };
    const std::chrono::year_month_day day = std::chrono::year(part(0, 4)) / part(4, 2) / part(6, 2);
    if (!day.ok() || part(0, 4) < 1753 || part(8, 2) > 23 || part(10, 2) > 59 || part(12, 2) > 59)
        Raise(242, {"varchar"});
    for (const auto &[place, mark] : {std::pair(4, '-'), {7, '-'}, {10, ' '}, {13, ':'}, {16, ':'}, {19, '.'}})
        digits.insert(place, 1, mark);
    return digits;
}

// A text that is too long is cut.
void Convert(const Call &call)
{
    const std::string_view type = call.Text(0);
    const std::string_view text = call.Storage(1) == SQLITE_TEXT ? call.Text(1) : std::string_view();
    const auto size = static_cast<std::size_t>(SizeOf(type));
    switch (KindOf(type))
    {
    case Kind::Number:
        return call.Give(text.data() ? IntegerOf(text, type) : InRange(call.Integer(1), type));
    case Kind::Real:
        if (sqlite3_value_numeric_type(call.values[1]) == SQLITE_TEXT && !runtime::Trim(text).empty())
            Raise(8114, {"varchar", type});
        return sqlite3_result_double(call.context, sqlite3_value_double(call.values[1]));
    case Kind::Moment:
        return call.Give(ReadMoment(text));
    default:
        if (!text.data() && size != 0 && call.Text(1).size() > size)
            Unsupported("'" + std::string(call.Text(1)) + "' as " + std::string(type)); // it would be a star
        return call.Give(size != 0 ? runtime::Left(call.Text(1), size) : call.Text(1));
    }
}

// SQLite makes a real number of what leaves 64 bits.
void Range(const Call &call)
{
    if (call.Storage(1) != SQLITE_INTEGER || !IsInRange(call.Integer(1), TypeOf(call.Text(0))))
        Raise(8115, {"expression", call.Text(0)});
    call.Give(call.Integer(1));
}

// The server cuts blanks off without a word and fills up short texts with them; here they would be kept and missed.
void Fits(const Call &call)
{
    const std::string_view type = call.Text(0);
    const std::string_view text = call.Text(1);
    if (KindOf(type) == Kind::Number)
        InRange(call.Integer(1), type);
    else if (Count(runtime::TrimRight(text)) > SizeOf(type))
        Raise(8152);
    Unsupported("'" + std::string(text) + "' in a column of type " + std::string(type));
}

// Right-aligned in 10 characters; stars when that is too little.
void Str(const Call &call)
{
    const std::string digits = std::to_string(call.Integer(0));
    call.Give(digits.size() > 10 ? std::string(10, '*') : std::string(10 - digits.size(), ' ') + digits);
}

struct Function
{
    const char *name;
    int arguments;
    void (*call)(const Call &);
};
constexpr Function functions[] = {
    {"ts_convert", 2, Convert},
    {"ts_fits", 2, Fits},
    {"ts_len", 1, [](const Call &call) { call.Give(Count(runtime::TrimRight(call.Text(0)))); }},
    {"ts_one", 1, [](const Call &call) { call.Integer(0) > 1 ? Raise(512) : call.Give(call.Integer(0)); }},
    {"ts_range", 2, Range},
    {"ts_str", 1, Str},
    {"ts_upper", 1, [](const Call &call) { call.Give(runtime::UpperCase(call.Text(0))); }},
    {"like", 2, [](const Call &call) { call.Give(std::int64_t{Like(call.Text(1), call.Text(0))}); }},
};

// NULL gives NULL.
void Run(sqlite3_context *context, int count, sqlite3_value **values)
{
    if (std::any_of(values, values + count, [](sqlite3_value *one) { return sqlite3_value_type(one) == SQLITE_NULL; }))
        return;
    try
    {
        static_cast<const Function *>(sqlite3_user_data(context))->call({context, values});
    }
    catch (const SqlError &error)
    {
        sqlite3_result_error(context, Carried(error).c_str(), -1);
    }
    catch (const std::bad_alloc &)
    {
        sqlite3_result_error_nomem(context);
    }
}

int CompareTexts(void *, int leftSize, const void *left, int rightSize, const void *right)
{
    return Compare({static_cast<const char *>(left), static_cast<std::size_t>(leftSize)},
                   {static_cast<const char *>(right), static_cast<std::size_t>(rightSize)});
}

} // namespace

DateTime MomentOf(std::string_view text)
{
    DateTime at{};
    std::sscanf(std::string(text).c_str(), "%d-%d-%d %d:%d:%d.%d", &at.year, &at.month, &at.day, &at.hour, &at.minute,
                &at.second, &at.nanosecond);
    at.nanosecond *= 1000000;
    return at;
}

void RegisterFunctions(sqlite3 *db)
{
    constexpr int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS | SQLITE_DETERMINISTIC;
    int code = sqlite3_create_collation_v2(db, "ts", SQLITE_UTF8, nullptr, CompareTexts, nullptr);
    for (const Function &function : functions)
        if (code == SQLITE_OK)
            code = sqlite3_create_function_v2(db, function.name, function.arguments, flags,
                                              const_cast<Function *>(&function), Run, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK)
        RaiseSqlite(db, code);
}

} // namespace tsql
