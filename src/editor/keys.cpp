// Making and parsing the keys of lists.
#include "editor/keys.h"

#include "runtime/convert.h"
#include "runtime/error.h"
#include "runtime/text.h"

#include <charconv>
#include <iterator>

namespace editor
{

namespace
{
constexpr std::string_view kPrefix = "Key";

std::string Joined(std::string_view prefix, std::int16_t id, std::int32_t partition)
{
    std::string key(prefix);
    const auto append = [&key](auto number)
    {
        char digits[12];
        key.append(digits, std::to_chars(digits, std::end(digits), number).ptr);
    };
    append(id);
    key += '-';
    append(partition);
    return key;
}

} // namespace

std::string PlainKey(std::int16_t id, std::int32_t partition)
{
    return Joined("", id, partition);
}

std::string ListKey(std::int16_t id, std::int32_t partition)
{
    return Joined(kPrefix, id, partition);
}

std::string ReportTypeKey(std::string_view number)
{
    return std::string(kPrefix).append(number);
}

RecordKey ParsePlainKey(std::string_view key)
{
    const auto dash = key.find('-');
    if (dash == std::string_view::npos)
        runtime::Raise(runtime::kInvalidProcedureCall);
    return {runtime::ToInteger(key.substr(0, dash)), runtime::ToLong(key.substr(dash + 1))};
}

RecordKey ParseListKey(std::string_view key)
{
    return ParsePlainKey(runtime::Without(key, kPrefix.size()));
}

std::int16_t ParseReportTypeKey(std::string_view key)
{
    return runtime::ToInteger(runtime::Without(runtime::Trim(key), kPrefix.size()));
}

} // namespace editor
