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

void AddHead(Groups &groups, const std::vector<std::string> &lines)
{
    groups.push_back({{kSeparator}});
    for (const std::string &line : lines)
        Add(groups, line);
    Add(groups, std::string(76, '-'));
}

void AddFormatsAndHeadings(Groups &groups, const Rows &rows, int partition, const World &world)
{
    constexpr const char *kAttributes[] = {"CR Before: ", "CR After: ", "Colon: ", "Bold: ", "Underline: ", "Indent: "};
    std::map<std::pair<std::string, std::string>, std::multiset<std::string>> sorted[2];
    for (const auto &[key, row] : rows)
    {
        if (key[0] > kHeading || !world.Shows(partition, row.partition))
            continue;
        const std::string &owner = world.partitions.at(row.partition);
        std::string text = row.name + " \\ " + owner + kEnd;
        for (std::size_t i = 0; key[0] == kFormat && i < row.attributes.size(); ++i)
            text += std::string("\t") + kAttributes[i] + (row.attributes[i] ? "Yes" : "No") + kEnd;
        sorted[key[0]][{SortKey(owner), SortKey(row.name)}].insert(text);
    }
    for (const Table table : {kFormat, kHeading})
    {
        AddHead(groups, {table == kFormat ? "HEADING FORMATS" : "HEADINGS"});
        for (const auto &[key, texts] : sorted[table])
            groups.push_back({texts, true});
    }
}

// Settings of the partition's accounts, and its own for all accounts, as far as their report type is known.
void AddConfiguration(Groups &groups, const Rows &rows, int partition, const World &world)
{
    std::map<std::tuple<int, int, std::string>, std::multiset<std::string>> settings;
    std::set<std::pair<Key, int>> seen;
    for (const auto &[key, row] : rows)
    {
        const auto [table, heading, account, type, owner] = key;
        const auto format = rows.find({kFormat, row.format}), name = rows.find({kHeading, heading});
        if (table == kSetting && world.reportTypes.contains({account, type}) && format != rows.end() &&
            name != rows.end() &&
            (account == kAllAccounts ? owner : world.accounts.at(account).partition) == partition &&
            seen.insert({key, row.format}).second)
            settings[{account, type, SortKey(name->second.name)}].insert("\t\t" + name->second.name + " - " +
                                                                         format->second.name + kEnd);
    }
    AddHead(groups, {"CONFIGURATION SETTINGS", "ACCT(#)", "\tREPORT(#)", "\t\tHEADER - FORMAT"});
    const std::string *last = nullptr;
    int lastAccount = 0;
    for (const auto &[key, texts] : settings)
    {
        const auto &[account, type, heading] = key;
        const std::string &name = world.reportTypes.at({account, type});
        if (!last || account != lastAccount)
        {
            if (last)
                groups.push_back({{kSeparator}});
            Add(groups, (account == kAllAccounts ? "Account Default" : world.accounts.at(account).name) + "(" +
                            std::to_string(account) + ")");
        }
        if (&name != last)
            Add(groups, "\t" + (type == 0 ? "Report Default" : name) + "(" + std::to_string(type) + ")");
        last = &name;
        lastAccount = account;
        groups.push_back({texts});
    }
}

Groups Expected(const Rows &rows, int partition, const World &world)
{
    Groups groups;
    Add(groups, "Partition: " + world.partitions.at(partition));
    Add(groups, std::string(76, '-'));
    Group options;
    for (const auto &[option, label] :
         {std::pair{kKnown, "Tag Only Known Headings: "}, {kMixed, "Tag Mixed Case Headings: "}})
        for (auto [row, end] = rows.equal_range({kOption, partition, option}); row != end; ++row)
            options.texts.insert(label + std::string(row->second.name == "True" ? "Yes" : "No") + kEnd);
    groups.push_back(options);
    AddFormatsAndHeadings(groups, rows, partition, world);
    AddConfiguration(groups, rows, partition, world);
    return groups;
}

} // namespace

std::string ReportDifference(const std::string &path, const Rows &rows, int partition, const World &world)
{
    std::ifstream file(scenario::NativePath(path), std::ios::binary);
    const std::string report{std::istreambuf_iterator<char>(file), {}};
    if (!report.starts_with("GENERAL SETTINGS\t\t\t"))
        return "its beginning";
    std::string_view rest = std::string_view(report).substr(report.find(kEnd) + 2);
    int number = 0;
    for (Group &group : Expected(rows, partition, world))
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
