// What the users of a random session do next.
#include "session.h"

#include <string_view>
#include <utility>

namespace sessions
{

namespace
{

constexpr const char *kStatements[] = {"NextSRFormatID",
                                       "NextSRHeaderID",
                                       "INSERT INTO Report_header_formats",
                                       "UPDATE Report_header_formats",
                                       "DELETE FROM Report_header_formats",
                                       "INSERT INTO Report_headers",
                                       "UPDATE Report_headers",
                                       "DELETE FROM Report_headers",
                                       "INSERT INTO Report_header_settings",
                                       "UPDATE Report_header_settings",
                                       "DELETE FROM Report_header_settings",
                                       "DefaultHeadingMode",
                                       "system_user_cfg",
                                       "System_log",
                                       "account_info",
                                       "reports_cfg",
                                       "System_partitions",
                                       "SELECT"};
constexpr const char *kNames[] = {"Alpha", "beta", "O'Neil", " Gamma ", "plain", "PLAN",
                                  "BOLD",  "Exam", "",       "  ",      "(x)",   "A (1)"};
// Settings of an account that no editor of these sessions loads, and records of a stranger.
constexpr const char *kOthersEdits[] = {
    "UPDATE Report_header_settings SET format_id = 10 WHERE hosp_acct_id = 99",
    "INSERT INTO Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1) VALUES (21, 99, "
    "3, 30, 0)",
    "UPDATE Report_header_formats SET bold = 0 WHERE format_id = 30",
    "UPDATE Report_headers SET heading = 'THEIRS' WHERE heading_id = 40",
    "UPDATE Report_headers SET heading = 'RENAMED' WHERE heading_id = 22",
    "UPDATE System_user_cfg SET key_value = 'False' WHERE partition_id = 4",
    "DELETE FROM Report_header_settings WHERE hosp_acct_id = 99"};

class Users
{
public:
    explicit Users(std::uint32_t seed) : m_random(seed), m_openings(1 + Below(3)) {}

    std::optional<Step> Next(Session &session)
    {
        const std::string line = session.WindowIsOpen() ? InWindow(session) : BetweenWindows(session);
        if (line.empty())
            return std::nullopt;
        return Step{line, {OneIn(4) ? "No" : "Yes"}}; // to the question that it may bring up
    }

private:
    int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
    bool OneIn(int chances) { return Below(chances) == 0; }
    template <class List>
    auto &OneOf(const List &list)
    {
        return list[static_cast<std::size_t>(Below(static_cast<int>(std::size(list))))];
    }

    std::string BetweenWindows(Session &session)
    {
        if (!std::exchange(m_hostSet, true))
            return "host PartitionID " + std::to_string(1 + Below(3));
        if (OneIn(6))
            return OthersEdit(session);
        if (m_openings-- == 0)
            return {};
        m_tab = 0;
        m_left = 4 + Below(20);
        return "show";
    }

    std::string InWindow(Session &session)
    {
        if (session.Partial())
            return "close";
        if (m_left-- > 0)
            return Act(session);
        return OneIn(3) ? OneIn(2) ? "close" : "click btnCancel" : "click btnSave";
    }

    std::string OthersEdit(Session &session)
    {
        if (!OneIn(3))
            return "exec \"" + std::string(OneOf(kOthersEdits)) + "\"";
        // Another editor takes the next number, and saves what it has added.
        const bool format = OneIn(2);
        const std::string key = format ? "NextSRFormatID" : "NextSRHeaderID";
        const std::string where = " WHERE application_id = 1 AND user_id = -1 AND key_name = '" + key + "'";
        const auto counter = session.Query("SELECT key_value FROM System_user_cfg" + where);
        if (counter.empty())
            return "exec \"" + std::string(kOthersEdits[0]) + "\"";
        const std::string number = std::to_string(std::stoi(counter.front()) + 1);
        return "exec \"UPDATE System_user_cfg SET key_value = '" + number + "'" + where + " INSERT INTO " +
               (format ? "Report_header_formats VALUES (" + number + ", 'Theirs " + number + "', 0, 0, 0, 0, 0, 0, 0"
                       : "Report_headers VALUES (" + number + ", 'THEIRS " + number + "'") +
               ", 2)\"";
    }

    // A statement that fails, a connection that is lost (idle, or with a statement), a server that refuses new ones.
    std::string Fault()
    {
        if (OneIn(3))
            return "cut " + std::string(OneIn(2) ? "08S01" : "01000") + " \"" + (OneIn(2) ? "" : OneOf(kStatements)) +
                   "\"";
        if (OneIn(4))
            return OneIn(2) ? "refuse 1" : "allow";
        const std::string number = std::to_string(++m_faults);
        // As a mistake of the statement's, and as a failure of any kind.
        const char *const states[] = {"", "HY000: "};
        return "fail 1 \"" + std::string(OneOf(kStatements)) + "\" \"" + OneOf(states) + "Fault " + number + "\"";
    }

    std::string Act(Session &session)
    {
        if (OneIn(12))
            return OthersEdit(session);
        if (OneIn(15))
            return Fault();
        if (OneIn(6))
        {
            m_tab = Below(3);
            return "tab " + std::to_string(m_tab);
        }
        const Seen &seen = session.Window();
        if (OneIn(10))
            return Choose("cmbPartition", seen.partitions);
        if (OneIn(25))
            return "click btnPrint";
        if (m_tab == 0)
            return OneIn(2) ? "toggle chkTagKnown" : "toggle chkTagMixed";
        return m_tab == 1 ? ActOnFormats(seen) : ActOnHeadings(seen);
    }

    // Each act as often as it stands here.
    std::string ActOnFormats(const Seen &seen)
    {
        const std::string acts[] = {"click btnAdd",
                                    "click btnDelete",
                                    Rename("lvwFormats"),
                                    Sort("lvwFormats"),
                                    Tick(),
                                    Tick(),
                                    Pick("lvwFormats", seen.records[kFormat]),
                                    Pick("lvwFormats", seen.records[kFormat])};
        return OneOf(acts);
    }

    std::string ActOnHeadings(const Seen &seen)
    {
        const std::string account = Choose("cmbAccList", seen.accounts), format = Choose("cmbFormats", seen.choices),
                          heading = Pick("lvwHeadings", seen.records[kHeading]),
                          type = seen.reportTypes.items.empty() ? account : Pick("lvwReportType", seen.reportTypes);
        const std::string acts[] = {"click btnAddHead",
                                    "click btnDeleteHead",
                                    "click btnAllAccounts",
                                    "click btnAllReports",
                                    Rename("lvwHeadings"),
                                    Sort("lvwHeadings"),
                                    account,
                                    account,
                                    type,
                                    type,
                                    format,
                                    format,
                                    format,
                                    heading,
                                    heading,
                                    heading};
        return OneOf(acts);
    }

    std::string Tick() { return "toggle SSCheck1(" + std::to_string(Below(6)) + ")"; }
    std::string Sort(const std::string &list) { return "column " + list + " " + std::to_string(1 + Below(2)); }
    std::string Choose(const std::string &combo, const scenario::ComboState &state)
    {
        return "choose " + combo + " " + std::to_string(Below(static_cast<int>(state.entries.size())));
    }
    std::string Pick(const std::string &list, const scenario::ListState &state)
    {
        return "pick " + list + " " + OneOf(state.items).key;
    }
    std::string Rename(const std::string &list)
    {
        return "rename " + list + " \"" +
               (OneIn(3) ? "Name " + std::to_string(Below(50)) : std::string(OneOf(kNames))) + "\"";
    }

    std::mt19937 m_random;
    int m_openings;
    int m_left = 0;
    int m_tab = 0;
    int m_faults = 0;
    bool m_hostSet = false;
};

} // namespace

Outcome PlayRandom(Site &site, std::uint32_t seed)
{
    Users users(seed);
    return Session(site, [&](Session &session) { return users.Next(session); }).Play();
}

} // namespace sessions
