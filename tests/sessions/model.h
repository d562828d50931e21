// What a session must come to, by the editor's claims alone: what was chosen last is what is shown and stored, and what
// was not touched is as it was.
#pragma once

#include <array>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace sessions
{

using Query = std::function<std::vector<std::string>(const std::string &sql)>;

constexpr int kAllAccounts = -1;

// What nobody changes.
struct World
{
    struct Account
    {
        std::string name;
        int partition = 0;
        bool deleted = false;
    };
    explicit World(const Query &query);
    // Whether a partition shows what belongs to another: its own, and what belongs to those above it.
    bool Shows(int partition, int owner) const { return m_shown.contains({partition, owner}); }

    std::map<int, std::string> partitions;
    std::map<int, Account> accounts;
    std::map<std::pair<int, int>, std::string> reportTypes; // by account and number

private:
    std::set<std::pair<int, int>> m_shown;
};

enum Table
{
    kFormat,
    kHeading,
    kSetting,
    kOption
};
enum Option
{
    kKnown,
    kMixed,
    kMode // the default heading mode
};

// A table, and which of its rows: the number of a format or heading; a setting's heading, account, report type and
// partition; an option's partition and Option.
using Key = std::array<int, 5>;

struct Row
{
    std::string name = {}; // an option's value
    int partition = 0;
    std::array<bool, 6> attributes{};
    bool system = false;
    int format = 0; // of a setting
    friend bool operator==(const Row &, const Row &) = default;
};

// The rows of a database that an editor can change. Nothing makes the key of a setting unique.
using Rows = std::multimap<Key, Row>;

Rows ReadRows(const Query &query);

// What an editor that was opened for a partition has loaded, and what has been done in it since.
class Model
{
public:
    // `rows` as the editor has found them; `world` lives longer.
    Model(const Rows &rows, const World &world, int partition);

    const Rows &Now() const { return m_now; }
    const Row &At(const Key &key) const; // of an unknown key an empty one
    bool Loaded(int partition) const;
    bool ReadOnly(const Row &record) const;
    // The formats or headings that a partition shows.
    std::map<int, std::string> Names(Table table, int partition) const;
    // Two settings of all accounts at one place, as copying a heading of two partitions leaves them: neither the one
    // shown nor what stays of them is claimed.
    bool Ambiguous(int heading) const;
    // The format that a heading gets, of those that the drop-down list of the partition has.
    int FormatOf(int heading, int account, int reportType, int partition) const;

    // What a user does. `partition` is the current one.
    void Set(const Key &key, const Row &row);
    void Choose(int heading, int account, int reportType, int partition, int format);
    void ApplyToAccounts(int heading, const std::vector<int> &accounts, int partition, int format);
    void ApplyToReports(int heading, int account, int format);
    void CopySettings(int heading, int copy);
    void Delete(const Key &record);
    void MarkChanged() { m_changed = true; }

    // The database after a Save, from what it holds before.
    Rows Saved(const Rows &before) const;
    const std::set<Key> &Touched() const { return m_touched; }
    bool Changed() const { return m_changed; }

private:
    void RemoveIf(const std::function<bool(const Key &place, int format)> &matches);
    void Put(const Key &place, int format);
    void Touch(const Key &place, int format);

    Rows m_now;
    const World &m_world;
    int m_partition;
    std::set<Key> m_touched;
    std::map<int, int> m_modes; // default heading modes, by partition
    bool m_changed = false;
};

// The first difference that a Save leaves unexplained, empty when there is none. After one of which a statement has
// failed, a row may also be as it was, and of the settings that it has `touched` each may be there, or both, or none.
std::string Difference(const Rows &before, const Rows &expected, const Rows &actual,
                       const std::set<Key> *touched = nullptr);

} // namespace sessions
