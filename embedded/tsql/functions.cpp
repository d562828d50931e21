// What SQLite lacks.
#include "functions.h"

#include "catalog.h"
#include "errors.h"
#include "runtime/collation.h"
#include "runtime/text.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <utility>

namespace tsql
{
namespace
{

std::string_view TextAt(const void *text, int size)
{
    return {static_cast<const char *>(text), static_cast<std::size_t>(size)};
}

// A call of a function. None of the arguments is NULL.
struct Call
{
    sqlite3_context *context;
    sqlite3_value **values;

    std::string_view Text(int i) const { return TextAt(sqlite3_value_text(values[i]), sqlite3_value_bytes(values[i])); }
    std::int64_t Integer(int i) const { return sqlite3_value_int64(values[i]); }
    int Storage(int i) const { return sqlite3_value_type(values[i]); }
    void Give(std::int64_t value) const { sqlite3_result_int64(context, value); }
    void Give(std::string_view text) const
    {
        sqlite3_result_text(context, text.data(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
    }
};

int Compare(std::string_view left, std::string_view right)
{
    thread_local std::string keys[2]; // kept for their memory
    for (std::string &key : keys)
        key.clear();
    runtime::AppendSortKey(keys[0], left);
    runtime::AppendSortKey(keys[1], right);
    return keys[0].compare(keys[1]);
}

// Takes the first character of a text that is not empty.
std::string_view Take(std::string_view &text)
{
    const std::string_view first = text.substr(0, runtime::FirstCharacter(text).length);
    text.remove_prefix(first.size());
    return first;
}

// Matches one character against the class behind '[', which `pattern` loses. A class that does not end matches nothing.
bool MatchesClass(std::string_view character, std::string_view &pattern)
{
    const bool negated = pattern.starts_with('^');
    pattern.remove_prefix(negated ? 1 : 0);
    const std::size_t end = pattern.find(']', 1);
    std::string_view members = pattern.substr(0, end);
    pattern.remove_prefix(std::min(members.size() + 1, pattern.size()));
    if (end == std::string_view::npos)
        return false;
    bool found = false;
    while (!members.empty())
    {
        const std::string_view low = Take(members);
        const bool range = members.size() > 1 && members[0] == '-';
        members.remove_prefix(range ? 1 : 0);
        const std::string_view high = range ? Take(members) : low;
        found = found || (Compare(low, character) <= 0 && Compare(character, high) <= 0);
    }
    return found != negated;
}

// With %, _, [a-f], [^a-f]. Trailing blanks of the text are passed over.
bool Like(std::string_view text, std::string_view pattern)
{
    const auto capital = [](std::string_view one) { return runtime::UpperCase(runtime::FirstCharacter(one).code); };
    while (!pattern.empty())
    {
        const std::string_view wanted = Take(pattern);
        if (wanted == "%")
        {
            while (!text.empty() && !Like(text, pattern))
                Take(text);
            return !text.empty() || Like(text, pattern);
        }
        if (text.empty())
            return false;
        const std::string_view character = Take(text);
        if (wanted == "[" ? !MatchesClass(character, pattern) : wanted != "_" && capital(wanted) != capital(character))
            return false;
    }
    return runtime::TrimRight(text).empty();
}

[[noreturn]] void Refuse(std::string_view value, std::string_view type)
{
    Unsupported("'" + std::string(value) + "' as " + std::string(type));
}

bool IsInRange(std::int64_t value, Type type)
{
    const std::int64_t largest = type == Type::TinyInt ? 255 : type == Type::SmallInt ? INT16_MAX : INT32_MAX;
    return type == Type::BigInt || (value <= largest && value >= (type == Type::TinyInt ? 0 : -largest - 1));
}

std::int64_t InRange(std::int64_t value, std::string_view name)
{
    const Type type = TypeOf(name);
    if (type == Type::Bit)
        return value != 0 ? 1 : 0;
    if (!IsInRange(value, type))
        type == Type::Int ? Raise(8115, {"expression", name}) : Raise(220, {name, std::to_string(value)});
    return value;
}

// Blanks around the digits are passed over, and no digits are 0.
std::int64_t IntegerOf(std::string_view text, std::string_view name)
{
    const Type type = TypeOf(name);
    std::string_view digits = runtime::Trim(text);
    if (digits.empty())
        return 0;
    digits.remove_prefix(digits.starts_with('+') && !digits.starts_with("+-") ? 1 : 0);
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    const bool isNumber = end == digits.data() + digits.size() && error != std::errc::invalid_argument;
    if (isNumber && error == std::errc() && IsInRange(value, type))
        return InRange(value, name);
    if (type == Type::Int || (!isNumber && type != Type::Bit))
        Raise(isNumber ? 248 : 245, {"varchar", text, name});
    Refuse(text, name);
}

// Reads the form that means the same whatever the server's language, "2003-02-11T08:15:30" or
// "2003-02-11T08:15:30.500", and keeps it as "2003-02-11 08:15:30.500". The server's clock ticks in 1/300 s: hundredths
// alone stay as they are.
std::string ReadMoment(std::string_view text)
{
    std::string form(text);
    std::ranges::replace_if(
        form, [](char c) { return c >= '0' && c <= '9'; }, '0');
    std::string moment = std::string(text) + (text.size() == 19 ? ".000" : "");
    if (!std::string_view("0000-00-00T00:00:00.000").starts_with(form) || moment.size() != 23 || moment[22] != '0')
        Refuse(text, "datetime");
    const auto part = [&](int at) { return std::stoi(moment.substr(at, at == 0 ? 4 : 2)); };
    const std::chrono::year_month_day day = std::chrono::year(part(0)) / part(5) / part(8);
    if (!day.ok() || part(0) < 1753 || part(11) > 23 || part(14) > 59 || part(17) > 59)
        Raise(242, {"varchar"});
    moment[10] = ' ';
    return moment;
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
        if (call.Storage(1) == SQLITE_FLOAT) // which SQLite makes of a sum beyond 64 bits
            Raise(8115, {"expression", type});
        return call.Give(text.data() ? IntegerOf(text, type) : InRange(call.Integer(1), type));
    case Kind::Real:
        if (sqlite3_value_numeric_type(call.values[1]) == SQLITE_TEXT && !runtime::Trim(text).empty())
            Refuse(text, type);
        return sqlite3_result_double(call.context, sqlite3_value_double(call.values[1]));
    case Kind::Moment:
        return call.Give(ReadMoment(text));
    default:
        if (!text.data() && size != 0 && call.Text(1).size() > size)
            Refuse(call.Text(1), type); // it would be a star
        return call.Give(size != 0 ? runtime::Left(call.Text(1), size) : call.Text(1));
    }
}

// The server cuts blanks off without a word and fills up short texts with them; here they would be kept and missed.
void Fits(const Call &call)
{
    const std::string_view type = call.Text(0);
    const std::string_view text = call.Text(1);
    if (KindOf(type) == Kind::Number)
        InRange(call.Integer(1), type);
    else if (runtime::Length(runtime::TrimRight(text)) > static_cast<std::size_t>(SizeOf(type)))
        Raise(8152);
    Refuse(text, type);
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
    {"ts_len", 1, [](const Call &call) { call.Give(std::int64_t(runtime::Length(runtime::TrimRight(call.Text(0))))); }},
    {"ts_one", 1, [](const Call &call) { call.Integer(0) > 1 ? Raise(512) : call.Give(call.Integer(0)); }},
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
    catch (...)
    {
        FailFunction(context);
    }
}

} // namespace

void RegisterFunctions(sqlite3 *db)
{
    constexpr int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS | SQLITE_DETERMINISTIC;
    const auto compare = [](void *, int leftSize, const void *left, int rightSize, const void *right)
    { return Compare(TextAt(left, leftSize), TextAt(right, rightSize)); };
    int code = sqlite3_create_collation_v2(db, "ts", SQLITE_UTF8, nullptr, compare, nullptr);
    for (const Function &function : functions)
        if (code == SQLITE_OK)
            code = sqlite3_create_function_v2(db, function.name, function.arguments, flags,
                                              const_cast<Function *>(&function), Run, nullptr, nullptr, nullptr);
    if (code != SQLITE_OK)
        RaiseSqlite(db, code);
}

} // namespace tsql
