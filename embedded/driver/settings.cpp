// Where a connection's attributes come from: see settings.h.
#include "settings.h"

#include "text.h"

#include <odbcinst.h>

#include <cstdlib>
#include <filesystem>
#include <functional>

namespace driver
{
namespace
{

std::string ReadProfile(const std::string &section, const char *key, const char *file)
{
    char value[1024] = "";
    SQLGetPrivateProfileString(section.c_str(), key, "", value, sizeof value, file);
    return value;
}

bool IsYes(std::string_view text)
{
    return EqualsIgnoringCase(text, "yes") || EqualsIgnoringCase(text, "true") || text == "1";
}

std::string FromEnvironment(const char *name, std::string otherwise)
{
    const char *value = std::getenv(name);
    return value != nullptr && *value != '\0' ? value : otherwise;
}

// A path is taken as it is; a name stands for a file of the folder, with or without ".db" behind it.
std::string ResolveFile(const std::string &database, const std::string &folder)
{
    if (database.empty() || database.find('/') != std::string::npos || folder.empty())
        return database;
    const std::filesystem::path plain = std::filesystem::path(folder) / database;
    std::error_code ignored;
    if (std::filesystem::exists(plain, ignored))
        return plain.string();
    return plain.string() + ".db";
}

using Lookup = std::function<std::string(const char *key)>;

void FillFrom(Settings &settings, const Lookup &find)
{
    settings.user = find("UID");
    settings.password = find("PWD");
    settings.application = find("APP");
    settings.server = find("Server");
    settings.database = find("Database");
    settings.file = FromEnvironment("KVEMBEDDED_DATABASE", ResolveFile(settings.database, find("Folder")));
    settings.create = IsYes(find("Create"));
    if (const std::string timeout = find("BusyTimeout"); !timeout.empty())
        settings.busyMilliseconds = std::atoi(timeout.c_str());
    settings.servers = SplitList(find("Servers"), ',');
    settings.silentServers = SplitList(find("SilentServers"), ',');
    settings.statementLog = FromEnvironment("KVEMBEDDED_LOG", find("StatementLog"));
    settings.faultList = FromEnvironment("KVEMBEDDED_FAULTS", find("FaultList"));
    if (const std::string application = find("FaultApplication"); !application.empty())
        settings.faultApplication = application;
    if (const std::string size = find("ClaimedTextSize"); !size.empty())
        settings.claimedTextSize = std::atoi(size.c_str());
}

// A data source names its driver by section or by path; a path has no section to fall back to.
std::string DriverSectionOf(const std::string &dataSource)
{
    const std::string driver = ReadProfile(dataSource, "Driver", "odbc.ini");
    return driver.find('/') == std::string::npos ? driver : std::string();
}

std::string FindInProfiles(const std::string &dataSource, const std::string &driverSection, const char *key)
{
    if (!dataSource.empty())
        if (std::string value = ReadProfile(dataSource, key, "odbc.ini"); !value.empty())
            return value;
    return driverSection.empty() ? std::string() : ReadProfile(driverSection, key, "odbcinst.ini");
}

} // namespace

ConnectString::ConnectString(std::string_view text)
{
    size_t at = 0;
    while (at < text.size())
    {
        const size_t equals = text.find('=', at);
        const size_t semicolon = std::min(text.find(';', at), text.size());
        if (equals == std::string_view::npos || semicolon < equals)
        {
            at = semicolon + 1;
            continue;
        }
        const std::string_view key = TrimBlanks(text.substr(at, equals - at));
        std::string value;
        size_t end = equals + 1;
        if (end < text.size() && text[end] == '{')
        {
            // "}}" inside braces is one "}"
            for (++end; end < text.size(); ++end)
            {
                if (text[end] == '}' && (end + 1 >= text.size() || text[end + 1] != '}'))
                    break;
                value += text[end];
                if (text[end] == '}')
                    ++end;
            }
            end = std::min(text.find(';', std::min(end, text.size())), text.size());
        }
        else
        {
            end = std::min(text.find(';', end), text.size());
            value = text.substr(equals + 1, end - equals - 1);
        }
        m_pairs.emplace_back(key, value);
        at = end + 1;
    }
}

std::optional<std::string> ConnectString::Find(std::string_view key) const
{
    for (const auto &[name, value] : m_pairs)
        if (EqualsIgnoringCase(name, key))
            return value;
    return std::nullopt;
}

Settings SettingsOfDataSource(const std::string &name, const std::string &user, const std::string &password)
{
    const std::string driverSection = DriverSectionOf(name);
    Settings settings;
    FillFrom(settings, [&](const char *key) { return FindInProfiles(name, driverSection, key); });
    if (!user.empty())
        settings.user = user;
    if (!password.empty())
        settings.password = password;
    return settings;
}

Settings SettingsOfConnectString(std::string_view text)
{
    const ConnectString given(text);
    std::string dataSource = given.Find("DSN").value_or("");
    if (dataSource == "''" || given.Find("DRIVER"))
        dataSource.clear();
    const std::string driverSection =
        dataSource.empty() ? given.Find("DRIVER").value_or("") : DriverSectionOf(dataSource);

    Settings settings;
    FillFrom(settings,
             [&](const char *key)
             {
                 if (std::optional<std::string> value = given.Find(key))
                     return *value;
                 return FindInProfiles(dataSource, driverSection, key);
             });
    return settings;
}

} // namespace driver
