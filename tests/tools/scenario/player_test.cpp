// Playing a script on a stage that does what the test says.
#include "play/player.h"

#include "play/options.h"
#include "script/failure.h"

#include <gtest/gtest.h>

#include <sstream>

namespace
{

using namespace scenario;

// A window with a list, a combo box and a button; every act is noted. Clicks do what the test has put in.
class FakeStage final : public Stage
{
public:
    std::string acts;
    bool open = false;
    std::function<void()> whenShown = [this] { open = true; };
    std::function<void()> whenClicked = [] {};

    void SetProperty(const std::string &name, const PropertyValue &value) override
    {
        const auto *const text = std::get_if<std::string>(&value);
        acts += "[" + name + (text ? "=" + *text : std::string()) + "]";
    }
    void SetMachineRegistry(const std::string &key, const std::string &name, const std::string &value) override
    {
        acts += "[" + key + "|" + name + "|" + value + "]";
    }
    void Show() override { whenShown(); }
    bool WindowIsOpen() override { return open; }
    void ShowTab(int tab) override { acts += "[tab " + std::to_string(tab) + "]"; }
    void Choose(const std::string &combo, int position) override
    {
        acts += "[" + combo + " " + std::to_string(position) + "]";
    }
    void Pick(const std::string &list, int position) override
    {
        acts += "[" + list + " " + std::to_string(position) + "]";
    }
    void ClickColumn(const std::string &list, int column) override
    {
        acts += "[" + list + " column " + std::to_string(column) + "]";
    }
    void Rename(const std::string &list, const std::string &text) override { acts += "[" + list + "=" + text + "]"; }
    void EscapeEdit(const std::string &list) override { acts += "[" + list + " escape]"; }
    void Toggle(const std::string &box) override { acts += "[" + box + "]"; }
    void Click(const std::string &button) override
    {
        if (button == "btnDelete")
            throw Refusal("btnDelete is disabled");
        whenClicked();
    }
    void Close() override { open = false; }
    ControlState Read(const std::string &name) override
    {
        if (name == "lvwFormats")
            return ListState{true, false, false, 0, false, {{"Key1-3", "Bold", ""}, {"Key2-3", "Key1-3", ""}}, 0};
        if (name == "cmbFormats")
            return ComboState{true, {{"Bold", 0}, {"1", 1}}, -1};
        throw Refusal("there is no control " + name);
    }
};

class ScenarioPlayer : public testing::Test
{
protected:
    // Plays a script; returns the transcript, and behind it the failure.
    std::string Play(const std::string &text)
    {
        Options options;
        options.dataSource = "nowhere";
        m_source.emplace(options);
        m_script = ParseScript("s", text);
        std::ostringstream out;
        player.emplace(m_script, *m_source, out, true);
        try
        {
            player->Play(stage);
        }
        catch (const Failure &failure)
        {
            out << failure.what() << "\n";
        }
        return out.str();
    }

    FakeStage stage;
    std::optional<Player> player;

private:
    Script m_script;
    std::optional<Source> m_source;
};

TEST_F(ScenarioPlayer, SetsTheDatabaseBeforeAllElse)
{
    EXPECT_EQ(Play("host PartitionID 3\nregistry K N V"), "> host PartitionID 3\n> registry K N V\n");
    EXPECT_EQ(stage.acts, "[SOFTWARE\\ODBC\\ODBC.INI\\nowhere|DATABASE|nowhere][SOFTWARE\\ODBC\\ODBC.INI\\ODBC Data "
                          "Sources|nowhere|SQL Server][SQLDSN=nowhere][SqlUserName=sa;Trusted_Connection=Yes][Password="
                          "][PartitionID][K|N|V]");
}

TEST_F(ScenarioPlayer, FindsItemsByKeyAndByText)
{
    Play("show\npick lvwFormats Key1-3\npick lvwFormats \"Key1-3\"\nchoose cmbFormats 1\nchoose cmbFormats \"Bold\"");
    EXPECT_TRUE(stage.acts.ends_with("[lvwFormats 0][lvwFormats 1][cmbFormats 1][cmbFormats 0]")) << stage.acts;
}

TEST_F(ScenarioPlayer, PrintsBoxesWithTheirAnswers)
{
    stage.whenClicked = [this]
    {
        EXPECT_EQ(player->AnswerBox({36, "A \"title\"", "one\r\ntwo"}), "Yes");
        EXPECT_EQ(player->AnswerBox({48, "Error", "three"}), "OK");
    };
    EXPECT_EQ(Play("answer Yes OK\nshow\nclick btnSave"), "> answer Yes OK\n> show\n> click btnSave\n"
                                                          "box 36 \"A \\\"title\\\"\" \"one\\r\\ntwo\" -> Yes\n"
                                                          "box 48 \"Error\" \"three\" -> OK\n");
}

TEST_F(ScenarioPlayer, PlaysOnInsideAStageThatDoesNotComeBack)
{
    stage.whenShown = [this]
    {
        stage.open = true;
        player->PlayWhile([this] { return stage.open; });
        player->ShowFormReturned(0);
    };
    EXPECT_EQ(Play("show\ntab 1\nclose\nhost User_ID 1"), "> show\n> tab 1\n> close\nreturned 0\n> host User_ID 1\n");
}

TEST_F(ScenarioPlayer, FailsWithFileLineAndReason)
{
    const struct
    {
        const char *script;
        const char *failure;
    } cases[] = {
        {"\ntab 0", "s:2: no window is open\n"},
        {"show\nshow", "s:2: the window is open already\n"},
        {"show\nclick btnDelete\ntab 1", "s:2: btnDelete is disabled\n"},
        {"show\npick lvwFormats Bold", "s:2: lvwFormats has no item Bold\n"},
        {"show\npick cmbFormats Bold", "s:2: cmbFormats is not a list\n"},
        {"show\nchoose cmbFormats 2", "s:2: cmbFormats has no entry 2\n"},
        {"show\nchoose lvwFormats 0", "s:2: lvwFormats is not a drop-down list\n"},
        {"show\ndump lvwNothing", "s:2: there is no control lvwNothing\n"},
        {"host Version 2", "s:1: the host cannot set Version\n"},
        {"answer OK\nanswer Yes No", "s:1: no message box has asked for: OK Yes No\n"},
        {"fail 1 a b", "s:1: only the embedded database fails on demand\n"},
    };
    for (const auto &c : cases)
    {
        stage.open = false;
        const std::string transcript = Play(c.script);
        EXPECT_TRUE(transcript.ends_with(std::string("\n") + c.failure)) << c.script << "\n" << transcript;
    }
}

TEST_F(ScenarioPlayer, FailsForABoxWithoutAnAnswerThatFits)
{
    stage.whenClicked = [this]
    {
        EXPECT_EQ(player->AnswerBox({36, "T", "sure?"}), "No");
        EXPECT_EQ(player->AnswerBox({48, "Error", "more"}), "OK");
    };
    EXPECT_EQ(Play("show\nclick btnSave\ntab 1"), "> show\n> click btnSave\nbox 36 \"T\" \"sure?\" -> ?\n"
                                                  "s:2: a message box without an answer: sure?\n");
    stage.open = false;
    EXPECT_EQ(Play("answer OK\nshow\nclick btnSave"),
              "> answer OK\n> show\n> click btnSave\nbox 36 \"T\" \"sure?\" -> ?\n"
              "s:3: the message box has no button OK: sure?\n");
}

#ifndef _WIN32 // a death test plays the program's other tests again there
// As the event log asks while it cannot be written.
TEST_F(ScenarioPlayer, EndsTheProgramWhenTheBoxesDoNotEnd)
{
    stage.whenClicked = [this]
    {
        for (;;)
            player->AnswerBox({48, "Error", "again"});
    };
    EXPECT_EXIT(Play("answer OK\nshow\nclick btnSave"), testing::ExitedWithCode(1),
                "s:3: a message box without an answer: again");
}
#endif

} // namespace
