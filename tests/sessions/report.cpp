// What the settings report says: see report.h.
#include "report.h"

#include "platform/native_path.h"

#include <array>
#include <fstream>

namespace sessions
{

namespace
{

constexpr std::array<const char *, 6> kAttributes{
    "CR Before: ", "CR After: ", "Colon: ", "Bold: ", "Underline: ", "Indent: "};

} // namespace

Facts ReportOf(const std::string &path)
{
    Facts facts;
    std::ifstream file(platform::NativePath(path), std::ios::binary);
    std::string section, fact, account, reportType;
    const auto end = [&]
    {
        if (!fact.empty())
            facts.insert(fact);
        fact.clear();
    };
    for (std::string line; std::getline(file, line);)
    {
        if (!line.empty())
            line.pop_back(); // CR
        if (const std::size_t number = line.find(".  "); section.empty() && number != std::string::npos)
        {
            end();
            fact = line.substr(number + 3);
        }
        else if (line.starts_with("Tag "))
            facts.insert(line);
        else if (line == "CONFIGURATION SETTINGS")
        {
            end();
            section = line;
        }
        else if (section.empty() && line.starts_with("\t"))
            fact += line;
        else if (line.starts_with("\t\t") && account != "(#)")
            facts.insert(account + reportType + line);
        else if (line.starts_with("\t"))
            reportType = line;
        else if (line.ends_with(")"))
            account = line.substr(line.rfind('('));
    }
    end();
    return facts;
}

Facts ExpectedReport(const Rows &rows, int partition, const Rows::Query &query)
{
    Facts facts;
    for (const auto &[key, name] : {std::pair{"TagKnownHeadings", "Tag Only Known Headings: "},
                                    {"TagMixedCaseHeadings", "Tag Mixed Case Headings: "}})
        if (const auto option = rows.options.find({partition, key}); option != rows.options.end())
            facts.insert(name + std::string(option->second == "True" ? "Yes" : "No"));
    const std::string id = std::to_string(partition);
    std::map<int, std::string> names;
    for (const std::string &row : query("SELECT partition_id, partition_name FROM System_partitions WHERE "
                                        "partition_id = " +
                                        id +
                                        " OR (SELECT lineage FROM System_partitions WHERE "
                                        "partition_id = " +
                                        id + ") LIKE '%/' + RTRIM(CAST(partition_id AS varchar(12))) + '/%'"))
        names[std::stoi(row)] = row.substr(row.find(" | ") + 3);
    for (const auto &[number, format] : rows.formats)
        if (names.contains(format.partition))
        {
            std::string fact = format.name + " \\ " + names[format.partition];
            for (std::size_t i = 0; i < kAttributes.size(); ++i)
                fact += std::string("\t") + kAttributes[i] + (format.attributes[i] ? "Yes" : "No");
            facts.insert(fact);
        }
    for (const auto &[number, heading] : rows.headings)
        if (names.contains(heading.partition))
            facts.insert(heading.name + " \\ " + names[heading.partition]);
    // Settings of the partition's accounts, and its own for all accounts, as far as their report type is known.
    std::set<int> accounts;
    for (const std::string &row : query("SELECT hosp_acct_id FROM account_info WHERE partition_id = " + id))
        accounts.insert(std::stoi(row));
    std::map<std::pair<int, int>, std::string> types;
    for (const std::string &row : query("SELECT hosp_acct_id, report_type_nbr, report_name FROM reports_cfg"))
    {
        const std::size_t first = row.find(" | "), second = row.find(" | ", first + 3);
        types[{std::stoi(row), std::stoi(row.substr(first + 3))}] = row.substr(second + 3);
    }
    std::set<std::pair<Place, int>> seen;
    for (const auto &[place, number] : rows.settings)
    {
        const auto [heading, account, reportType, owner] = place;
        const auto type = types.find({account, reportType});
        const auto format = rows.formats.find(number);
        const auto name = rows.headings.find(heading);
        if (type == types.end() || format == rows.formats.end() || name == rows.headings.end() ||
            !(accounts.contains(account) || (account == kAllAccounts && owner == partition)) ||
            !seen.insert({place, number}).second)
            continue;
        facts.insert("(" + std::to_string(account) + ")\t" + (reportType == 0 ? "Report Default" : type->second) + "(" +
                     std::to_string(reportType) + ")\t\t" + name->second.name + " - " + format->second.name);
    }
    return facts;
}

} // namespace sessions
