// What the settings report must say: see report.h.
#include "report.h"

#include "play/native_path.h"
#include "runtime/text.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string_view>

namespace sessions
{

namespace
{

constexpr const char *kEnd = "\r\n";
constexpr const char *kSeparator = "\r\r\n";

// Texts that follow in any order, with their numbers in front or without.
struct Group
{
    std::multiset<std::string> texts;
    bool numbered = false;
};
using Groups = std::vector<Group>;

// What the database sorts a name by.
std::string SortKey(const std::string &name)
{
    return runtime::UpperCase(name.substr(0, name.find_last_not_of(' ') + 1));
}

void Add(Groups &groups, const std::string &line)
{
    groups.push_back({{line + kEnd}});
}

template <class Key>
void AddSorted(Groups &groups, const std::map<Key, std::multiset<std::string>> &entries)
{
    for (const auto &[key, texts] : entries)
        groups.push_back({texts, true});
}

void AddHead(Groups &groups, const std::vector<std::string> &lines)
{
    groups.push_back({{kSeparator}});
    for (const std::string &line : lines)
        Add(groups, line);
    Add(groups, std::string(76, '-'));
}

void AddFormatsAndHeadings(Groups &groups, const Rows &rows, const std::map<int, std::string> &names)
{
    constexpr const char *kAttributes[] = {"CR Before: ", "CR After: ", "Colon: ", "Bold: ", "Underline: ", "Indent: "};
    std::map<std::pair<std::string, std::string>, std::multiset<std::string>> formats, headings;
    for (const auto &[number, format] : rows.formats)
        if (const auto owner = names.find(format.partition); owner != names.end())
        {
            std::string text = format.name + " \\ " + owner->second + kEnd;
            for (std::size_t i = 0; i < format.attributes.size(); ++i)
                text += std::string("\t") + kAttributes[i] + (format.attributes[i] ? "Yes" : "No") + kEnd;
            formats[{SortKey(owner->second), SortKey(format.name)}].insert(text);
        }
    for (const auto &[number, heading] : rows.headings)
        if (const auto owner = names.find(heading.partition); owner != names.end())
            headings[{SortKey(owner->second), SortKey(heading.name)}].insert(heading.name + " \\ " + owner->second +
                                                                             kEnd);
    AddHead(groups, {"HEADING FORMATS"});
    AddSorted(groups, formats);
    AddHead(groups, {"HEADINGS"});
    AddSorted(groups, headings);
}

// Settings of the partition's accounts, and its own for all accounts, as far as their report type is known.
void AddConfiguration(Groups &groups, const Rows &rows, int partition, const Rows::Query &query)
{
    std::map<int, std::string> accounts{{kAllAccounts, "Account Default"}};
    for (const std::string &row : query("SELECT hosp_acct_id, hosp_acct_name, partition_id FROM account_info"))
        if (const auto cells = Cells(row); std::stoi(cells[2]) == partition)
            accounts[std::stoi(cells[0])] = cells[1];
    std::map<std::pair<int, int>, std::string> types;
    for (const std::string &row : query("SELECT hosp_acct_id, report_type_nbr, report_name FROM reports_cfg"))
    {
        const auto cells = Cells(row);
        const int type = std::stoi(cells[1]);
        types[{std::stoi(cells[0]), type}] = type == 0 ? "Report Default" : cells[2];
    }
    std::map<std::tuple<int, int, std::string>, std::multiset<std::string>> settings;
    for (const auto &[place, number] : std::set(rows.settings.begin(), rows.settings.end()))
    {
        const auto [heading, account, type, owner] = place;
        const auto format = rows.formats.find(number);
        const auto name = rows.headings.find(heading);
        if (types.contains({account, type}) && format != rows.formats.end() && name != rows.headings.end() &&
            accounts.contains(account) && (account != kAllAccounts || owner == partition))
            settings[{account, type, SortKey(name->second.name)}].insert("\t\t" + name->second.name + " - " +
                                                                         format->second.name + kEnd);
    }
    AddHead(groups, {"CONFIGURATION SETTINGS", "ACCT(#)", "\tREPORT(#)", "\t\tHEADER - FORMAT"});
    std::pair<int, int> last{-2, -2};
    for (const auto &[key, texts] : settings)
    {
        const auto &[account, type, heading] = key;
        const std::string number = "(" + std::to_string(account) + ")";
        if (account != last.first && last.first != -2)
            groups.push_back({{kSeparator}});
        if (account != last.first)
            Add(groups, accounts[account] + number);
        if (last != std::pair(account, type))
            Add(groups, "\t" + types[{account, type}] + "(" + std::to_string(type) + ")");
        last = {account, type};
        groups.push_back({texts});
    }
}

Groups Expected(const Rows &rows, int partition, const Rows::Query &query)
{
    std::map<int, std::string> names, lineages;
    for (const std::string &row : query("SELECT partition_id, partition_name, lineage FROM System_partitions"))
    {
        const auto cells = Cells(row);
        names[std::stoi(cells[0])] = cells[1];
        lineages[std::stoi(cells[0])] = cells[2];
    }
    std::erase_if(names,
                  [&, lineage = lineages[partition]](const auto &name) {
                      return name.first != partition &&
                             lineage.find("/" + std::to_string(name.first) + "/") == std::string::npos;
                  });
    Groups groups;
    Add(groups, "Partition: " + names[partition]);
    Add(groups, std::string(76, '-'));
    Group options;
    for (const auto &[key, label] : {std::pair{"TagKnownHeadings", "Tag Only Known Headings: "},
                                     {"TagMixedCaseHeadings", "Tag Mixed Case Headings: "}})
        if (const auto option = rows.options.find({partition, key}); option != rows.options.end())
            options.texts.insert(label + std::string(option->second == "True" ? "Yes" : "No") + kEnd);
    groups.push_back(options);
    AddFormatsAndHeadings(groups, rows, names);
    AddConfiguration(groups, rows, partition, query);
    return groups;
}

} // namespace

std::string ReportDifference(const std::string &path, const Rows &rows, int partition, const Rows::Query &query)
{
    std::ifstream file(scenario::NativePath(path), std::ios::binary);
    const std::string report{std::istreambuf_iterator<char>(file), {}};
    if (!report.starts_with("GENERAL SETTINGS\t\t\t"))
        return "its beginning";
    std::string_view rest = std::string_view(report).substr(report.find(kEnd) + 2);
    int number = 0;
    for (Group &group : Expected(rows, partition, query))
    {
        number = group.numbered ? number : 0;
        while (!group.texts.empty())
        {
            const std::string front = group.numbered ? std::to_string(++number) + ".  " : "";
            const auto next =
                std::ranges::find_if(group.texts, [&](const auto &text) { return rest.starts_with(front + text); });
            if (next == group.texts.end())
                return front + *group.texts.begin() + "instead of " + std::string(rest.substr(0, rest.find('\n')));
            rest.remove_prefix(front.size() + next->size());
            group.texts.erase(next);
        }
    }
    return std::string(rest);
}

} // namespace sessions
