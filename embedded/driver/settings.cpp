// Where a connection's attributes come from: see settings.h.
#include "settings.h"

#include "runtime/text.h"

#include <odbcinst.h>

#include <algorithm>
#include <filesystem>

namespace driver
{
namespace
{

std::string ReadProfile(const std::string &section, std::string_view key, const char *file)
{
    char value[1024] = "";
    if (!section.empty())
        SQLGetPrivateProfileString(section.c_str(), std::string(key).c_str(), "", value, sizeof value, file);
    return value;
}

} // namespace

Settings::Settings(std::string_view text)
{
    while (!text.empty())
    {
        const size_t equals = text.find('=');
        size_t end = std::min(text.find(';'), text.size());
        if (equals < end)
        {
            std::string value(text.substr(equals + 1, end - equals - 1));
            if (value.starts_with('{'))
            {
                value.clear();
                // "}}" inside braces is one "}"
                for (end = equals + 2; end < text.size() && (text[end] != '}' || text.substr(end, 2) == "}}"); ++end)
                    value += text[text[end] == '}' ? ++end : end];
                end = std::min(text.find(';', end), text.size());
            }
            m_given.emplace_back(runtime::Trim(text.substr(0, equals)), value);
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
}

std::string Settings::Given(std::string_view key) const
{
    for (const auto &[name, value] : m_given)
        if (!value.empty() && runtime::EqualNoCase(name, key))
            return value;
    return {};
}

std::string Settings::Get(std::string_view key) const
{
    std::string value = Given(key);
    std::string driver = Given("DRIVER");
    if (const std::string source = Given("DSN"); value.empty() && driver.empty())
    {
        value = ReadProfile(source, key, "odbc.ini");
        driver = ReadProfile(source, "Driver", "odbc.ini");
    }
    // a data source names its driver by section or by path; a path has no section to fall back to
    return value.empty() && driver.find('/') == std::string::npos ? ReadProfile(driver, key, "odbcinst.ini") : value;
}

bool Settings::Is(std::string_view key, std::string_view value) const
{
    return runtime::EqualNoCase(Get(key), value);
}

std::string Settings::DatabaseFile() const
{
    const std::string database = Get("Database");
    const std::string folder = Get("Folder");
    if (database.empty() || database.find('/') != std::string::npos || folder.empty())
        return database;
    const std::string plain = std::filesystem::path(folder) / database;
    std::error_code ignored;
    return std::filesystem::exists(plain, ignored) ? plain : plain + ".db";
}

} // namespace driver
