// The properties that a host sets: see properties.h.
#include "play/properties.h"

#include "runtime/convert.h"
#include "runtime/error.h"
#include "script/failure.h"

#include <algorithm>

namespace scenario
{

namespace
{

enum class Type
{
    Integer,
    Long,
    Text,
};

struct Property
{
    std::string_view name;
    Type type;
};

constexpr Property kProperties[] = {
    {"User_ID", Type::Integer},    {"PartitionID", Type::Long},    {"DebugMode", Type::Integer},
    {"LogFile", Type::Text},       {"SqlServerName", Type::Text},  {"Password", Type::Text},
    {"SqlUserName", Type::Text},   {"SqlDbName", Type::Text},      {"SQLDSN", Type::Text},
    {"SqlTimeout", Type::Integer}, {"Zentra_INIFile", Type::Text},
};

} // namespace

PropertyValue ToProperty(const std::string &name, const std::string &text)
{
    const auto *const found = std::ranges::find(kProperties, name, &Property::name);
    if (found == std::end(kProperties))
        throw Refusal("the host cannot set " + name);
    try
    {
        if (found->type == Type::Integer)
            return runtime::ToInteger(std::string_view(text));
        if (found->type == Type::Long)
            return runtime::ToLong(std::string_view(text));
        return text;
    }
    catch (const runtime::Error &error)
    {
        throw Refusal(name + " cannot be \"" + text + "\": " + error.Description());
    }
}

} // namespace scenario
