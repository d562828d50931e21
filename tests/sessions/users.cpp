// What the users of a random session do next.
#include "session.h"

#include <memory>
#include <string_view>

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
        if (session.WindowIsOpen())
            return Answered(m_left-- > 0 && !session.Partial() ? Act(session) : Leave(session));
        if (!m_hostSet)
        {
            m_hostSet = true;
            return Step{"host PartitionID " + std::to_string(1 + Below(3)), {}, false};
        }
        if (OneIn(6))
            return OthersEdit(session);
        if (m_openings-- == 0)
            return std::nullopt;
        m_tab = 0;
        m_left = 4 + Below(20);
        return Step{"show", {}, false};
    }

private:
    int Below(int limit) { return static_cast<int>(m_random() % static_cast<unsigned>(limit)); }
    bool OneIn(int chances) { return Below(chances) == 0; }
    template <class List>
    auto &OneOf(const List &list)
    {
        return list[static_cast<std::size_t>(Below(static_cast<int>(std::size(list))))];
    }

    // To the question that the step may bring up.
    Step Answered(Step step)
    {
        step.answers.push_back(OneIn(4) ? "No" : "Yes");
        return step;
    }

    static Step Line(const std::string &line) { return {line, {}, false}; }

    Step Leave(Session &session)
    {
        if (session.Partial())
            return Line("close");
        return Line(OneIn(3) ? OneIn(2) ? "close" : "click btnCancel" : "click btnSave");
    }

    Step OthersEdit(Session &session)
    {
        if (!OneIn(3))
            return Line("exec \"" + std::string(OneOf(kOthersEdits)) + "\"");
        // Another editor takes the next number, and saves what it has added.
        const bool format = OneIn(2);
        const std::string key = format ? "NextSRFormatID" : "NextSRHeaderID";
        const std::string where = " WHERE application_id = 1 AND user_id = -1 AND key_name = '" + key + "'";
        const auto counter = session.Query("SELECT key_value FROM System_user_cfg" + where);
        if (counter.empty())
            return Line("exec \"" + std::string(kOthersEdits[0]) + "\"");
        const std::string number = std::to_string(std::stoi(counter.front()) + 1);
        return Line("exec \"UPDATE System_user_cfg SET key_value = '" + number + "'" + where +
                    (format ? " INSERT INTO Report_header_formats (format_id, format_name, insert_empty_line_before, "
                              "insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, "
                              "flag1) VALUES (" +
                                  number + ", 'Theirs " + number + "', 0, 0, 0, 0, 0, 0, 0, 2)\""
                            : " INSERT INTO Report_headers (heading_id, heading, flag1) VALUES (" + number +
                                  ", 'THEIRS " + number + "', 2)\""));
    }

    // A statement that fails, a connection that is lost (idle, or with a statement), a server that refuses new ones.
    Step Fault()
    {
        if (OneIn(3))
            return Line("cut " + std::string(OneIn(2) ? "08S01" : "01000") + " \"" +
                        (OneIn(2) ? "" : OneOf(kStatements)) + "\"");
        if (OneIn(4))
            return Line(OneIn(2) ? "refuse 1" : "allow");
        const std::string number = std::to_string(++m_faults);
        // As a mistake of the statement's, and as a failure of any kind.
        const char *const states[] = {"", "HY000: "};
        return Line("fail 1 \"" + std::string(OneOf(kStatements)) + "\" \"" + OneOf(states) + "Fault " + number + "\"");
    }

    Step Act(Session &session)
    {
        if (OneIn(12))
            return OthersEdit(session);
        if (OneIn(15))
            return Fault();
        if (OneIn(6))
        {
            m_tab = Below(3);
            return Line("tab " + std::to_string(m_tab));
        }
        const Seen &seen = session.Window();
        if (OneIn(10))
            return Choose("cmbPartition", seen.partitions);
        if (OneIn(25))
            return Line("click btnPrint");
        switch (m_tab)
        {
        case 0:
            return Line(OneIn(2) ? "toggle chkTagKnown" : "toggle chkTagMixed");
        case 1:
            return ActOnFormats(seen);
        default:
            return ActOnHeadings(seen);
        }
    }

    Step ActOnFormats(const Seen &seen)
    {
        switch (Below(8))
        {
        case 0:
            return Line("click btnAdd");
        case 1:
            return Line("click btnDelete");
        case 2:
            return Rename("lvwFormats");
        case 3:
            return Line("column lvwFormats " + std::to_string(1 + Below(2)));
        case 4:
        case 5:
            return Line("toggle SSCheck1(" + std::to_string(Below(6)) + ")");
        default:
            return Pick("lvwFormats", seen.formats);
        }
    }

    Step ActOnHeadings(const Seen &seen)
    {
        switch (Below(16))
        {
        case 0:
            return Line("click btnAddHead");
        case 1:
            return Line("click btnDeleteHead");
        case 2:
            return Rename("lvwHeadings");
        case 3:
            return Line("click btnAllAccounts");
        case 4:
            return Line("click btnAllReports");
        case 5:
            return Line("column lvwHeadings " + std::to_string(1 + Below(2)));
        case 6:
        case 7:
            return Choose("cmbAccList", seen.accounts);
        case 8:
        case 9:
            return seen.reportTypes.items.empty() ? Choose("cmbAccList", seen.accounts)
                                                  : Pick("lvwReportType", seen.reportTypes);
        case 10:
        case 11:
        case 12:
            return Choose("cmbFormats", seen.choices);
        default:
            return Pick("lvwHeadings", seen.headings);
        }
    }

    Step Choose(const std::string &combo, const scenario::ComboState &state)
    {
        return Line("choose " + combo + " " + std::to_string(Below(static_cast<int>(state.entries.size()))));
    }
    Step Pick(const std::string &list, const scenario::ListState &state)
    {
        return Line("pick " + list + " " + OneOf(state.items).key);
    }
    Step Rename(const std::string &list)
    {
        return Line("rename " + list + " \"" +
                    (OneIn(3) ? "Name " + std::to_string(Below(50)) : std::string(OneOf(kNames))) + "\"");
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
