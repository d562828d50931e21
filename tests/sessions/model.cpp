// What a session must come to: see model.h.
#include "model.h"

#include <algorithm>
#include <sstream>

namespace sessions
{

namespace
{

constexpr const char *kKnown = "TagKnownHeadings";
constexpr const char *kMixed = "TagMixedCaseHeadings";

std::string Text(const Place &place)
{
    const auto [heading, account, reportType, partition] = place;
    std::ostringstream text;
    text << "heading " << heading << ", account " << account << ", report type " << reportType << ", partition "
         << partition;
    return text.str();
}

// A table's rows by their key.
template <class Table>
std::string TableDifference(const char *name, const Table &before, const Table &expected, const Table &actual,
                            bool mayBeAsBefore)
{
    std::set<typename Table::key_type> keys;
    for (const Table *table : {&before, &expected, &actual})
        for (const auto &[key, row] : *table)
            keys.insert(key);
    const auto same = [](const Table &one, const Table &other, const auto &key)
    {
        const auto here = one.find(key), there = other.find(key);
        return here == one.end() || there == other.end() ? (here == one.end()) == (there == other.end())
                                                         : here->second == there->second;
    };
    for (const auto &key : keys)
        if (!same(actual, expected, key) && !(mayBeAsBefore && same(actual, before, key)))
        {
            std::ostringstream text;
            if constexpr (requires { key.first; })
                text << name << " " << key.second << " of partition " << key.first;
            else
                text << name << " " << key;
            text << (actual.contains(key)
                         ? (expected.contains(key) ? " is not as it should be" : " should not be there")
                         : " is missing");
            return text.str();
        }
    return {};
}

} // namespace

std::vector<std::string> Cells(const std::string &row)
{
    std::vector<std::string> cells;
    std::size_t start = 0;
    for (std::size_t end; (end = row.find(" | ", start)) != std::string::npos; start = end + 3)
        cells.push_back(row.substr(start, end - start));
    cells.push_back(row.substr(start));
    return cells;
}

Rows Rows::Read(const Query &query)
{
    Rows rows;
    for (const std::string &row :
         query("SELECT format_id, insert_empty_line_before, insert_carriage_return_after, insert_colon, bold, "
               "underline, indent, system_format, flag1, format_name FROM Report_header_formats"))
    {
        const auto cells = Cells(row);
        Format format{cells[9], {}, cells[7] == "1", std::stoi(cells[8])};
        for (std::size_t i = 0; i < format.attributes.size(); ++i)
            format.attributes[i] = cells[i + 1] == "1";
        rows.formats[std::stoi(cells[0])] = format;
    }
    for (const std::string &row : query("SELECT heading_id, flag1, heading FROM Report_headers"))
    {
        const auto cells = Cells(row);
        rows.headings[std::stoi(cells[0])] = {cells[2], std::stoi(cells[1])};
    }
    for (const std::string &row : query("SELECT heading_id, hosp_acct_id, report_type_nbr, flag1, format_id FROM "
                                        "Report_header_settings ORDER BY heading_id"))
    {
        const auto cells = Cells(row);
        rows.settings.push_back({{std::stoi(cells[0]), std::stoi(cells[1]), std::stoi(cells[2]), std::stoi(cells[3])},
                                 std::stoi(cells[4])});
    }
    for (const std::string &row :
         query("SELECT partition_id, key_name, key_value FROM System_user_cfg WHERE key_name = 'TagKnownHeadings' OR "
               "key_name = 'TagMixedCaseHeadings' OR key_name = 'DefaultHeadingMode'"))
    {
        const auto cells = Cells(row);
        rows.options[{std::stoi(cells[0]), cells[1]}] = cells[2];
    }
    return rows;
}

std::vector<int> Rows::At(const Place &place) const
{
    std::vector<int> formats;
    for (const auto &[where, format] : settings)
        if (where == place)
            formats.push_back(format);
    std::ranges::sort(formats);
    return formats;
}

Model::Model(const Rows &rows, const Rows::Query &query, int partition) : m_now(rows)
{
    const auto lineages = query("SELECT partition_id, lineage FROM System_partitions");
    const auto within = [](int id, const std::string &lineage)
    { return lineage.find("/" + std::to_string(id) + "/") != std::string::npos; };
    std::string own;
    for (const std::string &row : lineages)
        if (std::stoi(Cells(row)[0]) == partition)
            own = Cells(row)[1];
    for (const std::string &row : lineages)
    {
        const int id = std::stoi(Cells(row)[0]);
        if (within(id, own))
            m_above.insert(id);
        else if (id != partition && !within(partition, Cells(row)[1]))
            continue;
        std::set<int> &ancestors = m_ancestors[id];
        for (const std::string &other : lineages)
            if (within(std::stoi(Cells(other)[0]), Cells(row)[1]))
                ancestors.insert(std::stoi(Cells(other)[0]));
    }
    // Accounts of other partitions, and deleted ones, are not loaded with their settings.
    std::set<int> accounts{kAllAccounts};
    for (const std::string &row : query("SELECT hosp_acct_id, partition_id FROM account_info WHERE is_deleted = '0'"))
        if (const int owner = std::stoi(Cells(row)[1]); m_ancestors.contains(owner) && !m_above.contains(owner))
            accounts.insert(std::stoi(Cells(row)[0]));
    std::erase_if(m_now.settings, [&](const auto &setting) { return !accounts.contains(std::get<1>(setting.first)); });
}

std::vector<int> Model::Shown(int partition) const
{
    std::vector<int> shown{partition};
    const std::set<int> &ancestors = m_ancestors.at(partition);
    shown.insert(shown.end(), ancestors.begin(), ancestors.end());
    return shown;
}

bool Model::Ambiguous(int heading) const
{
    std::set<Place> seen;
    return std::ranges::any_of(m_now.settings, [&](const auto &setting)
                               { return std::get<0>(setting.first) == heading && !seen.insert(setting.first).second; });
}

int Model::FormatOf(int heading, int account, int reportType, int partition) const
{
    const std::vector<int> shown = Shown(partition);
    for (const Place &place :
         {Place{heading, account, reportType, 0}, {heading, account, 0, 0}, {heading, kAllAccounts, 0, partition}})
        for (const auto &[where, id] : m_now.settings)
            if (const auto format = m_now.formats.find(id); where == place && format != m_now.formats.end() &&
                                                            std::ranges::count(shown, format->second.partition) > 0)
                return id;
    return 0;
}

void Model::RemoveIf(const std::function<bool(const Place &, int)> &matches)
{
    std::erase_if(m_now.settings,
                  [&](const auto &setting)
                  {
                      if (!matches(setting.first, setting.second))
                          return false;
                      Touch(setting.first, setting.second);
                      return true;
                  });
}

// The last one counts: those that stand in its place go, copies of the default of all accounts too.
void Model::Put(const Place &place, int format)
{
    Place copy = place;
    if (std::get<1>(place) == kAllAccounts)
        std::get<3>(copy) = 0;
    RemoveIf([&](const Place &where, int) { return where == place || where == copy; });
    m_now.settings.emplace_back(place, format);
    Touch(place, format);
    m_changed = true;
}

// Whatever happens to the default of the default heading, its format becomes the partition's default heading mode.
void Model::Touch(const Place &place, int format)
{
    m_settings.insert(place);
    if (const int partition = std::get<3>(place); place == Place{0, kAllAccounts, 0, partition})
        m_modes[partition] = format;
}

void Model::Choose(int heading, int account, int reportType, int partition, int format)
{
    Put({heading, account, reportType, account == kAllAccounts ? partition : 0}, format);
}

// The last account of the list is left out.
void Model::ApplyToAccounts(int heading, const std::vector<int> &accounts, int partition, int format)
{
    RemoveIf(
        [&](const Place &where, int)
        {
            const int account = std::get<1>(where);
            return std::get<0>(where) == heading &&
                   std::find(accounts.begin(), accounts.end() - 1, account) != accounts.end() - 1 &&
                   (account != kAllAccounts || std::get<3>(where) == partition);
        });
    Put({heading, kAllAccounts, 0, partition}, format);
}

void Model::ApplyToReports(int heading, int account, int format)
{
    RemoveIf([&](const Place &where, int) { return std::get<0>(where) == heading && std::get<1>(where) == account; });
    Put({heading, account, 0, 0}, format);
}

void Model::AddFormat(int id, const Format &format)
{
    m_now.formats[id] = format;
    m_formats.insert(id);
    m_changed = true;
}

void Model::AddHeading(int id, const Heading &heading, int copied)
{
    m_now.headings[id] = heading;
    m_headings.insert(id);
    m_changed = true;
    if (copied == 0) // "<Default>" is not copied
        return;
    for (std::size_t i = 0, count = m_now.settings.size(); i < count; ++i)
    {
        const auto [place, format] = m_now.settings[i];
        if (std::get<0>(place) != copied || format == 0)
            continue;
        const Place copy{id, std::get<1>(place), std::get<2>(place), 0};
        m_now.settings.emplace_back(copy, format);
        m_settings.insert(copy);
    }
}

void Model::DeleteFormat(int id)
{
    m_now.formats.erase(id);
    m_formats.insert(id);
    RemoveIf([&](const Place &, int format) { return format == id; });
    m_changed = true;
}

// By itself this is no unsaved edit.
void Model::DeleteHeading(int id)
{
    m_now.headings.erase(id);
    m_headings.insert(id);
    RemoveIf([&](const Place &where, int) { return std::get<0>(where) == id; });
}

void Model::RenameFormat(int id, const std::string &name)
{
    m_now.formats.at(id).name = name;
    m_formats.insert(id);
    m_changed = true;
}

void Model::RenameHeading(int id, const std::string &name)
{
    m_now.headings.at(id).name = name;
    m_headings.insert(id);
    m_changed = true;
}

void Model::SetAttribute(int id, int attribute, bool on)
{
    m_now.formats.at(id).attributes.at(static_cast<std::size_t>(attribute)) = on;
    m_formats.insert(id);
    m_changed = true;
}

void Model::SetOption(int partition, const std::string &key, bool on)
{
    m_now.options[{partition, key}] = on ? "True" : "False";
    m_changed = true;
}

bool Model::Option(int partition, const std::string &key) const
{
    const auto option = m_now.options.find({partition, key});
    return option != m_now.options.end() && option->second == "True";
}

Rows Model::Saved(const Rows &before) const
{
    Rows rows = before;
    if (!m_changed)
        return rows;
    for (const auto &[partition, ancestors] : m_ancestors)
        for (const char *key : {kKnown, kMixed})
            rows.options[{partition, key}] = Option(partition, key) ? "True" : "False";
    for (const int id : m_formats)
        if (const auto format = m_now.formats.find(id); format == m_now.formats.end())
            rows.formats.erase(id);
        else
            rows.formats[id] = format->second;
    for (const Place &place : m_settings)
    {
        std::erase_if(rows.settings, [&](const auto &setting) { return setting.first == place; });
        for (const int format : m_now.At(place))
            rows.settings.emplace_back(place, format);
    }
    for (const auto &[partition, format] : m_modes)
        rows.options[{partition, "DefaultHeadingMode"}] = std::to_string(format);
    for (const int id : m_headings)
        if (const auto heading = m_now.headings.find(id); heading != m_now.headings.end())
            rows.headings[id] = heading->second;
        else
        {
            rows.headings.erase(id);
            std::erase_if(rows.settings, [&](const auto &setting) { return std::get<0>(setting.first) == id; });
        }
    return rows;
}

std::string Difference(const Rows &before, const Rows &expected, const Rows &actual, const std::set<Place> *touched)
{
    const bool mayBeAsBefore = touched != nullptr;
    std::string difference = TableDifference("format", before.formats, expected.formats, actual.formats, mayBeAsBefore);
    if (difference.empty())
        difference = TableDifference("heading", before.headings, expected.headings, actual.headings, mayBeAsBefore);
    if (difference.empty())
        difference = TableDifference("option", before.options, expected.options, actual.options, mayBeAsBefore);
    std::set<Place> places;
    for (const Rows *rows : {&before, &expected, &actual})
        for (const auto &setting : rows->settings)
            places.insert(setting.first);
    for (const Place &place : places)
    {
        const std::vector<int> was = before.At(place), should = expected.At(place), is = actual.At(place);
        if (!difference.empty() || was.size() > 1 || should.size() > 1 || is == should)
            continue; // a place with two settings is one to the database: see Model::Ambiguous
        // Of what is replaced both may be there, or neither.
        const auto explained = [&](int format)
        { return std::ranges::count(was, format) + std::ranges::count(should, format) > 0; };
        if (!touched || (was == should && !touched->contains(place)) || !std::ranges::all_of(is, explained))
            difference = "the setting of " + Text(place) + " has " + (is.empty() ? "no format" : "another format") +
                         ", not " + (should.empty() ? "none" : std::to_string(should.front()));
    }
    return difference;
}

} // namespace sessions
