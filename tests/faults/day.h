// A day of an administrator at the editor, with something that fails at one place of it.
#pragma once

#include "editor/session.h"
#include "support/registry.h"

#include <functional>
#include <memory>
#include <string>

namespace faults
{

// What fails. As it stands: nothing.
class Fault
{
public:
    virtual ~Fault() = default;
    // Before the day begins.
    virtual void Order(support::TestDatabase &) {}
    // The component begins to work, or has come back.
    virtual void Acting(bool) {}
    virtual bool Fired(const support::TestDatabase &) const { return false; }
    // What failed works again.
    virtual void Repair(support::TestDatabase &) {}
    // How many connections may be left open: one that cannot be closed is.
    virtual std::size_t LeavesOpen() const { return 0; }
    // Whether a user's act may end at the fault without a word.
    virtual bool MayBeSilent() const { return false; }
    // How many statements may fail of it, with HY000 or 08S01.
    virtual std::size_t MostFailures() const { return support::TestDatabase::kForGood; }
    // Whether the user must be told of it, or must not notice it; neither unless overridden.
    virtual bool MustBeTold() const { return false; }
    virtual bool MustBeSilent() const { return false; }
};

// What a day has come to.
struct Outcome
{
    bool fired = false;     // the fault has happened
    support::Lines shown;   // what the window showed after each act
    support::Lines boxes;   // errors that were told
    bool saveTold = false;  // some of them by the first Save
    support::Lines initial; // the rows of all tables but the log
    support::Lines saved;   // the same behind the first Save
    support::Lines final;   // and behind the second one, which follows where the first has told an error
};

// The administrator opens the editor, looks around, makes an edit of every kind, prints, saves and opens it again. They
// look at what each act has come to, and repeat one that has failed; in the end somebody repairs what fails for good.
class Day final : public Session
{
public:
    // `undisturbed`: what the window shows on a day without faults. The administrator knows it, and so finds an act out
    // that has failed without a word.
    explicit Day(Fault &fault, const support::Lines &undisturbed = {});
    void TestBody() override {}

    // What holds of every day is checked here.
    Outcome Play();

private:
    void SeeAnew();
    void Open(const std::string &what, const std::function<void()> &work);
    void Work();
    void Browse();
    void EditFormats();
    void EditHeadings();
    void ChooseFormat(const std::string &format);
    void Print();
    void Save();
    void ExpectThatSuccessesStay();

    // Lets the component work. What it raises stops at the border to the host, or to the system.
    void Do(const std::function<void()> &act);
    // Repeats an act until no error was told and the window shows what it was for.
    void Until(
        const std::string &what, const std::function<void()> &act,
        const std::function<bool()> &done = [] { return true; });
    void TurnTo(int tab);
    void Pick(editor::controls::ListView &list, const std::string &text);
    void Choose(editor::controls::ComboBox &combo, int position);
    void Rename(editor::controls::ListView &list, const std::string &name);
    void Add(editor::controls::ListView &list, editor::controls::Button &button, const std::string &name);
    void Delete(editor::controls::ListView &list, editor::controls::Button &button, const std::string &name);
    support::Lines Told() const; // the boxes that were no question
    std::string Look();

    Fault &m_fault;
    support::Lines m_undisturbed;
    support::TestRegistry m_registry;
    editor::frmHeadings *m_window = nullptr;
    Outcome m_outcome;
};

// Plays a day for each place, from the first on in steps of `stride` (of KV_STRIDE when that is set), until the fault
// no longer happens, and compares each with a day on which nothing fails. `make` gives the fault at a place, from 1.
void CountDown(int stride, const std::function<std::unique_ptr<Fault>(int place)> &make);

} // namespace faults
