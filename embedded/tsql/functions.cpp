// The functions of the dialect, and the SQLite functions and the collation that the rewritten statements call.
#include "functions.h"

#include "datetime.h"
#include "errors.h"
#include "prepared.h"
#include "text.h"
#include "token.h"

#include <sqlite3.h>

#include <algorithm>
#include <memory>
#include <utility>

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
        const unsigned char *const text = sqlite3_value_text(values[i]);
        return {reinterpret_cast<const char *>(text), static_cast<std::size_t>(sqlite3_value_bytes(values[i]))};
    }
    std::int64_t Integer(int i) const { return sqlite3_value_int64(values[i]); }
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

constexpr int longestText = 100'000'000; // bytes of any text

using runtime::Left;
using runtime::Length;
using runtime::Without;

Value TextOf(std::string_view text)
{
    return TextValue(std::string(text));
}

// ts_convert(value, from, to, how [, style])
Value ConvertOf(const Call &call)
{
    return Convert(ValueOf(call.values[0]), Unpack(call.Integer(1)), Unpack(call.Integer(2)),
                   static_cast<Conversion>(call.Integer(3)), call.count > 4 ? static_cast<int>(call.Integer(4)) : 0);
}

// ts_check(value, type): the result of a calculation; one beyond 64 bits has become a real number.
Value CheckOf(const Call &call)
{
    const auto type = static_cast<Type>(call.Integer(1));
    if (sqlite3_value_type(call.values[0]) != SQLITE_INTEGER)
        Raise(8115, {"expression", TypeName({type})});
    return IntegerValue(Checked(call.Integer(0), type, true));
}

Value Divide(const Call &call)
{
    if (call.Integer(1) == 0)
        Raise(8134);
    if (call.Integer(1) == -1)
        return call.Integer(0) == INT64_MIN ? RealValue(0x1p63) : IntegerValue(-call.Integer(0));
    return IntegerValue(call.Integer(0) / call.Integer(1));
}

Value Modulo(const Call &call)
{
    if (call.Integer(1) == 0)
        Raise(8134);
    return IntegerValue(call.Integer(1) == -1 ? 0 : call.Integer(0) % call.Integer(1));
}

// A start below 1 takes as much from the length.
Value Substring(const Call &call)
{
    const std::int64_t start = call.Integer(1);
    const std::int64_t end = start + static_cast<std::int64_t>(call.Count(2, "substring"));
    const auto before = [](std::int64_t place)
    { return static_cast<std::size_t>(std::max<std::int64_t>(place - 1, 0)); };
    return TextOf(Without(Left(call.Text(0), before(end)), before(start)));
}

Value CharIndex(const Call &call)
{
    const std::string_view text = call.Text(1);
    const std::int64_t start = call.count > 2 ? std::max<std::int64_t>(call.Integer(2), 1) : 1;
    if (call.Text(0).empty())
        return IntegerValue(0);
    const Place place = Find(text, call.Text(0), Left(text, static_cast<std::size_t>(start - 1)).size());
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

Value RightOf(const Call &call)
{
    const std::size_t length = Length(call.Text(0));
    return TextOf(Without(call.Text(0), length - std::min(call.Count(1, "right"), length)));
}

// STR(number [, length]) of an integer: right-aligned, stars when it does not fit.
Value Str(const Call &call)
{
    const std::int64_t length = call.count > 1 ? call.Integer(1) : 10;
    if (length < 1 || length > 8000)
        return {};
    const auto width = static_cast<std::size_t>(length);
    const std::string digits = std::to_string(call.Integer(0));
    return TextValue(digits.size() > width ? std::string(width, '*')
                                           : std::string(width - digits.size(), ' ') + digits);
}

Value GetDate(const Call &call)
{
    if (call.state.now == 0)
        call.state.now = CurrentTicks();
    return IntegerValue(call.state.now);
}

constexpr Function functions[] = {
    {"CHARINDEX", 2, "tti", 'I', CharIndex},
    {"GETDATE", 0, "", 'D', GetDate},
    {"LEFT", 2, "ti", 'T', [](const Call &call) { return TextOf(Left(call.Text(0), call.Count(1, "left"))); }},
    {"LEN", 1, "t", 'I',
     [](const Call &call)
     { return IntegerValue(static_cast<std::int64_t>(Length(runtime::TrimRight(call.Text(0))))); }},
    {"LOWER", 1, "t", 'T', [](const Call &call) { return TextValue(Lower(call.Text(0))); }},
    {"LTRIM", 1, "t", 'T',
     [](const Call &call)
     { return TextOf(call.Text(0).substr(std::min(call.Text(0).find_first_not_of(' '), call.Text(0).size()))); }},
    {"REPLACE", 3, "ttt", 'T', Replace},
    {"RIGHT", 2, "ti", 'T', RightOf},
    {"RTRIM", 1, "t", 'T', [](const Call &call) { return TextOf(runtime::TrimRight(call.Text(0))); }},
    {"STR", 1, "ii", 'V', Str},
    {"SUBSTRING", 3, "tii", 'T', Substring},
    {"UPPER", 1, "t", 'T', [](const Call &call) { return TextValue(runtime::UpperCase(call.Text(0))); }},
    // What operators and conversions are written as.
    {"check", 2, "", 0, CheckOf},
    {"convert", 4, "", 0, ConvertOf},
    {"divide", 2, "", 0, Divide},
    {"like", 3, "", 0, // text, pattern, whether trailing blanks of the text are passed over
     [](const Call &call) { return IntegerValue(Like(call.Text(0), call.Text(1), call.Integer(2) != 0) ? 1 : 0); }},
    {"modulo", 2, "", 0, Modulo},
};

// What SQLite hands back at a call.
struct Registered
{
    FunctionState &state;
    Value (*call)(const Call &);
};

// Runs `work`; an error of it becomes that of the running statement.
template <typename Work>
void Guarded(sqlite3_context *context, FunctionState &state, Work work)
{
    try
    {
        work();
    }
    catch (const SqlError &error)
    {
        state.error = error;
        sqlite3_result_error(context, error.what(), -1);
    }
    catch (const std::exception &)
    {
        sqlite3_result_error_nomem(context);
    }
}

void Run(sqlite3_context *context, int count, sqlite3_value **values)
{
    const Registered &registered = *static_cast<Registered *>(sqlite3_user_data(context));
    for (int i = 0; i < count; ++i)
        if (sqlite3_value_type(values[i]) == SQLITE_NULL)
            return;
    Guarded(context, registered.state,
            [&]
            {
                const Value result = registered.call({registered.state, count, values});
                if (result.kind == Value::Integer)
                    sqlite3_result_int64(context, result.integer);
                else if (result.kind == Value::Real)
                    sqlite3_result_double(context, result.real);
                else if (result.kind == Value::Text)
                    sqlite3_result_text(context, result.text.data(), static_cast<int>(result.text.size()),
                                        SQLITE_TRANSIENT);
            });
}

// The aggregate ts_single(value): that of the only row; of the rows of a subquery that stands for a value there may be
// one.
void SingleStep(sqlite3_context *context, int, sqlite3_value **values)
{
    auto &kept = *static_cast<sqlite3_value **>(sqlite3_aggregate_context(context, sizeof(sqlite3_value *)));
    const Registered &registered = *static_cast<Registered *>(sqlite3_user_data(context));
    Guarded(context, registered.state,
            [&]
            {
                if (kept != nullptr)
                    Raise(512);
                kept = sqlite3_value_dup(values[0]);
            });
}

void SingleEnd(sqlite3_context *context)
{
    auto *const kept = static_cast<sqlite3_value **>(sqlite3_aggregate_context(context, 0));
    if (kept == nullptr || *kept == nullptr)
        return;
    sqlite3_result_value(context, *kept);
    sqlite3_value_free(*kept);
}

int Collate(void *, int leftSize, const void *left, int rightSize, const void *right)
{
    return Compare({static_cast<const char *>(left), static_cast<std::size_t>(leftSize)},
                   {static_cast<const char *>(right), static_cast<std::size_t>(rightSize)});
}

void Delete(void *registered)
{
    delete static_cast<Registered *>(registered);
}

} // namespace

const Function *FindFunction(std::string_view name)
{
    const auto found =
        std::find_if(std::begin(functions), std::end(functions),
                     [&](const Function &function) { return function.result != 0 && SameWord(function.name, name); });
    return found == std::end(functions) ? nullptr : found;
}

void RegisterFunctions(sqlite3 *db, FunctionState &state)
{
    sqlite3_limit(db, SQLITE_LIMIT_LENGTH, longestText);
    int code = sqlite3_create_collation_v2(db, "ts", SQLITE_UTF8, nullptr, Collate, nullptr);
    constexpr int flags = SQLITE_UTF8 | SQLITE_INNOCUOUS;
    for (const Function &function : functions)
        if (code == SQLITE_OK)
            code = sqlite3_create_function_v2(db, ("ts_" + std::string(function.name)).c_str(), -1,
                                              flags | (function.call == GetDate ? 0 : SQLITE_DETERMINISTIC),
                                              new Registered{state, function.call}, Run, nullptr, nullptr, Delete);
    if (code == SQLITE_OK)
        code = sqlite3_create_function_v2(db, "ts_single", 1, flags, new Registered{state, nullptr}, nullptr,
                                          SingleStep, SingleEnd, Delete);
    if (code != SQLITE_OK)
        RaiseSqlite(db, code);
}

} // namespace tsql
