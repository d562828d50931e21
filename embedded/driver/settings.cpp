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
            if (value.substr(0, 1) == "{")
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

const std::string *Settings::Find(std::string_view key) const
{
    const auto found =
        std::find_if(m_given.begin(), m_given.end(),
                     [&](const auto &each) { return !each.second.empty() && runtime::EqualNoCase(each.first, key); });
    return found == m_given.end() ? nullptr : &found->second;
}

std::string Settings::Get(std::string_view key) const
{
    if (const std::string *const given = Find(key))
        return *given;
    const std::string *const byDriver = Find("DRIVER");
    const std::string *const source = byDriver != nullptr ? nullptr : Find("DSN");
    if (const std::string value = ReadProfile(source != nullptr ? *source : "", key, "odbc.ini"); !value.empty())
        return value;
    // a data source names its driver by section or by path; a path has no section to fall back to
    const std::string driver = byDriver != nullptr ? *byDriver
                               : source != nullptr ? ReadProfile(*source, "Driver", "odbc.ini")
                                                   : "";
    return driver.find('/') == std::string::npos ? ReadProfile(driver, key, "odbcinst.ini") : "";
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
    const std::string plain = (std::filesystem::path(folder) / database).string();
    std::error_code ignored;
    return std::filesystem::exists(plain, ignored) ? plain : plain + ".db";
}

} // namespace driver
