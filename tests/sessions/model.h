// What a session must come to, by the editor's claims alone: what was chosen last is what is shown and stored, and what
// was not touched is as it was.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace sessions
{

struct Format
{
    std::string name;
    std::array<bool, 6> attributes{};
    bool system = false;
    int partition = 0;
    friend bool operator==(const Format &, const Format &) = default;
};

struct Heading
{
    std::string name;
    int partition = 0;
    friend bool operator==(const Heading &, const Heading &) = default;
};

// The values of a row.
std::vector<std::string> Cells(const std::string &row);

// Heading, account, report type, partition.
using Place = std::tuple<int, int, int, int>;

// The rows of a database that an editor can change.
struct Rows
{
    std::map<int, Format> formats;
    std::map<int, Heading> headings;
    std::vector<std::pair<Place, int>> settings;                // with their formats; nothing makes a place unique
    std::map<std::pair<int, std::string>, std::string> options; // by partition and key

    using Query = std::function<std::vector<std::string>(const std::string &sql)>;
    static Rows Read(const Query &query);

    // The formats set at a place, sorted.
    std::vector<int> At(const Place &place) const;
};

constexpr int kAllAccounts = -1;

// What an editor that was opened for a partition has loaded, and what has been done in it since.
class Model
{
public:
    // `rows` as the editor has found them.
    Model(const Rows &rows, const Rows::Query &query, int partition);

    bool Loaded(int partition) const { return m_ancestors.contains(partition); }
    std::vector<int> Shown(int partition) const; // the partition and those above it
    bool ReadOnly(int owner, bool system) const { return system || m_above.contains(owner); }
    // Two settings of all accounts at one place, as copying a heading of two partitions leaves them: neither the one
    // shown nor what stays of them is claimed.
    bool Ambiguous(int heading) const;
    // The format that a heading gets, of those that the drop-down list of the partition has.
    int FormatOf(int heading, int account, int reportType, int partition) const;

    // What a user does. `partition` is the current one.
    void Choose(int heading, int account, int reportType, int partition, int format);
    void ApplyToAccounts(int heading, const std::vector<int> &accounts, int partition, int format);
    void ApplyToReports(int heading, int account, int format);
    void AddFormat(int id, const Format &format);
    void AddHeading(int id, const Heading &heading, int copied);
    void DeleteFormat(int id);
    void DeleteHeading(int id);
    void RenameFormat(int id, const std::string &name);
    void RenameHeading(int id, const std::string &name);
    void SetAttribute(int id, int attribute, bool on);
    void SetOption(int partition, const std::string &key, bool on);

    // The database after a Save, from what it holds before.
    Rows Saved(const Rows &before) const;

    const Rows &Now() const { return m_now; }
    bool Option(int partition, const std::string &key) const;
    const std::set<Place> &Touched() const { return m_settings; }
    bool Changed() const { return m_changed; }
    void MarkChanged() { m_changed = true; }

private:
    void RemoveIf(const std::function<bool(const Place &, int format)> &matches);
    void Put(const Place &place, int format);
    void Touch(const Place &place, int format);

    Rows m_now;
    std::map<int, std::set<int>> m_ancestors; // of each partition loaded
    std::set<int> m_above;                    // those above the host's partition
    std::set<int> m_formats, m_headings;      // touched
    std::set<Place> m_settings;               // touched
    std::map<int, int> m_modes;               // default heading modes, by partition
    bool m_changed = false;
};

// The first difference that a Save leaves unexplained, empty when there is none. After one of which a statement has
// failed, a row may also be as it was, and of the settings that it has `touched` each may be there, or both, or none.
std::string Difference(const Rows &before, const Rows &expected, const Rows &actual,
                       const std::set<Place> *touched = nullptr);

} // namespace sessions
