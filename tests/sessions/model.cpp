// What a session must come to: see model.h.
#include "model.h"

#include <algorithm>

namespace sessions
{

namespace
{

constexpr const char *kOptions[] = {"TagKnownHeadings", "TagMixedCaseHeadings", "DefaultHeadingMode"};

// Visits the rows of a query: numbers of the leading columns, then the text of the last one.
void ForEach(const Query &query, const std::string &sql,
             const std::function<void(const std::vector<int> &numbers, const std::string &text)> &visit)
{
    for (const std::string &row : query(sql))
    {
        std::vector<int> numbers;
        std::size_t start = 0;
        for (std::size_t end; (end = row.find(" | ", start)) != std::string::npos; start = end + 3)
            numbers.push_back(std::stoi(row.substr(start, end - start)));
        visit(numbers, row.substr(start));
    }
}

} // namespace

World::World(const Query &query)
{
    ForEach(query, "SELECT partition_id, partition_name FROM System_partitions",
            [this](const auto &numbers, const std::string &text) { partitions[numbers[0]] = text; });
    ForEach(query, "SELECT partition_id, lineage FROM System_partitions",
            [this](const auto &numbers, const std::string &text)
            {
                for (const auto &[other, name] : partitions)
                    if (other == numbers[0] || text.find("/" + std::to_string(other) + "/") != std::string::npos)
                        m_shown.insert({numbers[0], other});
            });
    ForEach(query, "SELECT hosp_acct_id, partition_id, is_deleted, hosp_acct_name FROM account_info",
            [this](const auto &numbers, const std::string &text) {
                accounts[numbers[0]] = {text, numbers[1], numbers[2] == 1};
            });
    ForEach(query, "SELECT hosp_acct_id, report_type_nbr, report_name FROM reports_cfg",
            [this](const auto &numbers, const std::string &text) {
                reportTypes[{numbers[0], numbers[1]}] = text;
            });
}

Rows ReadRows(const Query &query)
{
    Rows rows;
    ForEach(query,
            "SELECT format_id, insert_empty_line_before, insert_carriage_return_after, insert_colon, bold, underline, "
            "indent, system_format, flag1, format_name FROM Report_header_formats",
            [&](const auto &numbers, const std::string &text)
            {
                Row format{text, numbers[8], {}, numbers[7] == 1};
                std::copy_n(numbers.begin() + 1, format.attributes.size(), format.attributes.begin());
                rows.emplace(Key{kFormat, numbers[0]}, format);
            });
    ForEach(query, "SELECT heading_id, flag1, heading FROM Report_headers",
            [&](const auto &numbers, const std::string &text)
            {
                rows.emplace(Key{kHeading, numbers[0]}, Row{text, numbers[1], {}, numbers[0] == 0}); // "<Default>"
            });
    ForEach(
        query, "SELECT heading_id, hosp_acct_id, report_type_nbr, flag1, format_id FROM Report_header_settings",
        [&](const auto &numbers, const std::string &text) {
            rows.emplace(Key{kSetting, numbers[0], numbers[1], numbers[2], numbers[3]}, Row{.format = std::stoi(text)});
        });
    for (int option = kKnown; option <= kMode; ++option)
        ForEach(query,
                "SELECT partition_id, key_value FROM System_user_cfg WHERE key_name = '" +
                    std::string(kOptions[option]) + "'",
                [&](const auto &numbers, const std::string &text) {
                    rows.emplace(Key{kOption, numbers[0], option}, Row{.name = text});
                });
    return rows;
}

// Accounts of other partitions, and deleted ones, are not loaded with their settings. A Save writes the tagging options
// of all partitions that are.
Model::Model(const Rows &rows, const World &world, int partition) : m_now(rows), m_world(world), m_partition(partition)
{
    std::erase_if(m_now,
                  [&](const auto &row)
                  {
                      const auto account = world.accounts.find(row.first[2]);
                      return row.first[0] == kSetting && row.first[2] != kAllAccounts &&
                             (account == world.accounts.end() || account->second.deleted ||
                              !world.Shows(account->second.partition, partition));
                  });
    for (const auto &[id, name] : world.partitions)
        for (const int option : {kKnown, kMixed})
            if (const Key key{kOption, id, option}; Loaded(id))
                Set(key, {.name = At(key).name == "True" ? "True" : "False"});
    m_changed = false;
}

const Row &Model::At(const Key &key) const
{
    static const Row kNone;
    const auto row = m_now.find(key);
    return row == m_now.end() ? kNone : row->second;
}

bool Model::Loaded(int partition) const
{
    return m_world.Shows(m_partition, partition) || m_world.Shows(partition, m_partition);
}

bool Model::ReadOnly(const Row &record) const
{
    return record.system || (record.partition != m_partition && m_world.Shows(m_partition, record.partition));
}

std::map<int, std::string> Model::Names(Table table, int partition) const
{
    std::map<int, std::string> names;
    for (const auto &[key, row] : m_now)
        if (key[0] == table && m_world.Shows(partition, row.partition))
            names[key[1]] = row.name;
    return names;
}

bool Model::Ambiguous(int heading) const
{
    return std::ranges::any_of(
        m_now, [&](const auto &row)
        { return row.first[0] == kSetting && row.first[1] == heading && m_now.count(row.first) > 1; });
}

int Model::FormatOf(int heading, int account, int reportType, int partition) const
{
    for (const Key &place : {Key{kSetting, heading, account, reportType, 0},
                             {kSetting, heading, account, 0, 0},
                             {kSetting, heading, kAllAccounts, 0, partition}})
        for (auto [row, end] = m_now.equal_range(place); row != end; ++row)
            if (const auto format = m_now.find({kFormat, row->second.format});
                format != m_now.end() && m_world.Shows(partition, format->second.partition))
                return row->second.format;
    return 0;
}

void Model::Set(const Key &key, const Row &row)
{
    m_now.erase(key);
    m_now.emplace(key, row);
    m_touched.insert(key);
    m_changed = true;
}

void Model::RemoveIf(const std::function<bool(const Key &, int)> &matches)
{
    std::erase_if(m_now,
                  [&](const auto &row)
                  {
                      if (row.first[0] != kSetting || !matches(row.first, row.second.format))
                          return false;
                      Touch(row.first, row.second.format);
                      return true;
                  });
}

// The last one counts: those that stand in its place go, copies of the default of all accounts too.
void Model::Put(const Key &place, int format)
{
    Key copy = place;
    if (place[2] == kAllAccounts)
        copy[4] = 0;
    RemoveIf([&](const Key &where, int) { return where == place || where == copy; });
    Set(place, {.format = format});
    Touch(place, format);
}

// Whatever happens to the default of the default heading, its format becomes the partition's default heading mode.
void Model::Touch(const Key &place, int format)
{
    m_touched.insert(place);
    if (place == Key{kSetting, 0, kAllAccounts, 0, place[4]})
        m_modes[place[4]] = format;
}

void Model::Choose(int heading, int account, int reportType, int partition, int format)
{
    Put({kSetting, heading, account, reportType, account == kAllAccounts ? partition : 0}, format);
}

// The last account of the list is left out.
void Model::ApplyToAccounts(int heading, const std::vector<int> &accounts, int partition, int format)
{
    RemoveIf(
        [&](const Key &where, int)
        {
            return where[1] == heading &&
                   std::find(accounts.begin(), accounts.end() - 1, where[2]) != accounts.end() - 1 &&
                   (where[2] != kAllAccounts || where[4] == partition);
        });
    Put({kSetting, heading, kAllAccounts, 0, partition}, format);
}

void Model::ApplyToReports(int heading, int account, int format)
{
    RemoveIf([&](const Key &where, int) { return where[1] == heading && where[2] == account; });
    Put({kSetting, heading, account, 0, 0}, format);
}

void Model::CopySettings(int heading, int copy)
{
    for (const auto &[place, row] : Rows(m_now))
        if (place[0] == kSetting && place[1] == heading && row.format != 0)
            m_touched.insert(m_now.emplace(Key{kSetting, copy, place[2], place[3], 0}, row)->first);
}

// Of a heading this is by itself no unsaved edit.
void Model::Delete(const Key &record)
{
    m_now.erase(record);
    m_touched.insert(record);
    RemoveIf([&](const Key &place, int format) { return (record[0] == kFormat ? format : place[1]) == record[1]; });
    m_changed = m_changed || record[0] == kFormat;
}

Rows Model::Saved(const Rows &before) const
{
    Rows rows = before;
    if (!m_changed)
        return rows;
    for (const Key &key : m_touched)
    {
        rows.erase(key);
        const auto [first, last] = m_now.equal_range(key);
        rows.insert(first, last);
    }
    for (const auto &[partition, format] : m_modes)
    {
        rows.erase({kOption, partition, kMode});
        rows.emplace(Key{kOption, partition, kMode}, Row{.name = std::to_string(format)});
    }
    // Settings of a deleted heading that were not loaded go, too.
    std::erase_if(rows,
                  [&](const auto &row)
                  {
                      const Key heading{kHeading, row.first[1]};
                      return row.first[0] == kSetting && m_touched.contains(heading) && !m_now.contains(heading);
                  });
    return rows;
}

std::string Difference(const Rows &before, const Rows &expected, const Rows &actual, const std::set<Key> *touched)
{
    std::set<Key> keys;
    for (const Rows *rows : {&before, &expected, &actual})
        for (const auto &[key, row] : *rows)
            keys.insert(key);
    const auto at = [](const Rows &rows, const Key &key)
    {
        std::vector<Row> found;
        for (auto [row, end] = rows.equal_range(key); row != end; ++row)
            found.push_back(row->second);
        return found;
    };
    for (const Key &key : keys)
    {
        const std::vector<Row> was = at(before, key), should = at(expected, key), is = at(actual, key);
        if (was.size() > 1 || should.size() > 1 || is == should || (touched && is == was))
            continue; // a place with two settings is one to the database: see Model::Ambiguous
        // Of what is replaced both may be there, or neither.
        const auto explained = [&](const Row &row)
        { return std::ranges::count(was, row) + std::ranges::count(should, row) > 0; };
        if (touched && key[0] == kSetting && (was != should || touched->contains(key)) &&
            std::ranges::all_of(is, explained))
            continue;
        constexpr const char *kTables[] = {"format", "heading", "setting", "option"};
        std::string text = kTables[key[0]];
        for (std::size_t i = 1; i < key.size(); ++i)
            text += " " + std::to_string(key[i]);
        return text + (is.empty()       ? " is missing"
                       : should.empty() ? " should not be there"
                                        : " is not as it should be");
    }
    return {};
}

} // namespace sessions
