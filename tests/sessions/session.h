// One session of a host and its users: random commands of the scenario language on the headless stage, each checked
// against the model as soon as it has been carried out.
#pragma once

#include "model.h"
#include "play/local_root.h"
#include "play/source.h"
#include "play/stage.h"
#include "play/statements.h"
#include "script/script.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace sessions
{

// A command, and the answers to the message boxes that it brings up.
struct Step
{
    std::string line;
    std::deque<std::string> answers;
    bool open = false; // the window, behind it
};
using Script = std::vector<Step>;

struct Outcome
{
    std::string mismatch; // empty: all was as claimed
    Script played;
};

// The embedded database that all sessions of this program are played on; one a process.
class Site
{
public:
    Site();

    // The rows of site.data, no faults, empty logs, and the component disconnected.
    void Reset();

    scenario::Source &Source() { return m_source; }
    std::vector<std::string> Query(const std::string &sql) { return m_source.Connection().Query(sql); }
    const sessions::World &World() const { return *m_world; }

private:
    scenario::Source m_source;
    scenario::LocalRoot m_localRoot;
    std::string m_rows; // the batch that brings them back
    std::optional<sessions::World> m_world;
};

// Tells the component of the database, of a user and of the root directory.
void SetUpHost(scenario::Stage &stage, const scenario::Source &source);

// A number from the environment.
unsigned FromEnvironment(const char *name, unsigned otherwise);

// Plays a session of this seed.
Outcome PlayRandom(Site &site, std::uint32_t seed);
// Plays it again and again, without every step that a mismatch does not need.
Outcome Shorten(Site &site, const Outcome &outcome);

// A scenario to be played by tools/scenario, on either stage. `whileOpen` stands behind each step that leaves the
// window open.
std::string ToScenario(const Script &script, const std::string &whileOpen = {});

// Takes back what the component keeps beyond a window: the connection and the records.
void ForgetComponent();

// What a window shows.
struct Seen
{
    static Seen Look(scenario::Stage &stage);
    std::map<int, std::string> Names(Table table) const;
    // The format of an entry of cmbFormats, or -1.
    int FormatAt(int position) const;

    int partition = 0;
    scenario::ListState records[2], reportTypes; // records by Table
    scenario::ComboState partitions, accounts, choices;
    int selected[2] = {-1, -1}; // the format and the heading
    int account = kAllAccounts;
    int reportType = 0;
    bool options[2] = {};
};

class Session final : public scenario::Audience
{
public:
    // The next step, from what has been played; nothing ends the session.
    using Next = std::function<std::optional<Step>(Session &)>;

    Session(Site &site, Next next);
    ~Session() override;
    Outcome Play();

    bool WindowIsOpen() const { return m_open && m_open(); }
    // The open window after the last step.
    const Seen &Window() const { return m_seen; }
    // The window has opened with an error: what it holds is not known.
    bool Partial() const { return m_partial; }
    std::vector<std::string> Query(const std::string &sql) { return m_site.Query(sql); }

    // --- Audience
    std::string AnswerBox(const scenario::ShownBox &box) override;
    void ReportOpened(const std::string &path) override;
    void ShowFormReturned(int) override {}
    void PlayWhile(const std::function<bool()> &open) override;

private:
    void PlayOne(const Step &step);
    void CarryOut(const scenario::Command &command);
    void Opened();
    void Check(const scenario::Command &command, const Seen &before);
    void CheckToggle(const std::string &box, const Seen &before, const Seen &now);
    void CheckChoice(const std::string &combo, const Seen &before, const Seen &now);
    void CheckClick(const std::string &button, const Seen &before, const Seen &now);
    void CheckAdded(Table table, const Seen &before, const Seen &now);
    void CheckRename(const scenario::Command &command, const Seen &before);
    void CheckEnd(const std::string &button);
    void CheckFormatShown(const Seen &now);
    void CheckLists(const Seen &now);
    void CheckTold(bool ofLoad);
    void ExpectLog();
    void CheckLog();
    void Claim(bool holds, const std::string &claim)
    {
        if (!holds && m_mismatch.empty())
            m_mismatch = claim;
    }
    Rows Database();
    bool Box(const std::string &text) const;
    // Whether a record of partitions that are meant has the name.
    bool Taken(Table table, const std::string &name, const std::function<bool(int partition)> &meant) const;

    Site &m_site;
    Next m_next;
    std::unique_ptr<scenario::Stage> m_stage;
    std::function<bool()> m_open; // of the window, while there is one
    scenario::StatementTail m_statements;
    std::optional<Model> m_model;
    std::set<Key> m_used; // records ever seen
    Rows m_found;         // the database as it was last left by a Save or by others
    Seen m_seen;
    int m_hostPartition = 0;
    int m_tab = 0;
    bool m_partial = false;
    bool m_cut = false; // a cut was ordered
    std::vector<scenario::ShownBox> m_boxes;
    std::vector<std::string> m_log; // the rows that the event log must have
    Script m_played;
    std::size_t m_current = 0;
    std::deque<std::string> m_answers; // of a script that is played again
    std::string m_mismatch;
};

} // namespace sessions
