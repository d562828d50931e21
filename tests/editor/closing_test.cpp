// Saving, cancelling, closing, and windows that others take away.
#include "session.h"

#include "controls/recording_observer.h"
#include "host/modGlobalVariables.h"
#include "host/modMisc.h"
#include "model/globals.h"
#include "runtime/handler.h"

#include <algorithm>

using platform::Answer;
using support::Box;

namespace
{

const std::string kQuestion = "Are you sure you want to cancel all changes?";

class Closing : public Session
{
protected:
    Lines Sent()
    {
        Lines sent = Log();
        std::erase_if(sent, [](const std::string &text) { return text.rfind("SELECT", 0) == 0; });
        return sent;
    }
    bool Released() const { return !model::gFormats && !model::gHeadings && !model::gSettings; }
};

TEST_F(Closing, WithoutEditsSaveWritesNothing)
{
    Open([&] { EXPECT_TRUE(Form().btnSave.Click()); });
    EXPECT_EQ(Lines{}, Sent());
    EXPECT_EQ(Lines{}, desktop.boxes);
    EXPECT_TRUE(Released());
    EXPECT_FALSE(host::gConnected);
    EXPECT_FALSE(host::IsFormLoaded("frmHeadings"));
    EXPECT_EQ((FakeView::Calls{"create", "resize", "show", "run", "end", "destroy"}), calls);
}

TEST_F(Closing, WithoutEditsCancelKeepsConnectionAndRecords)
{
    Open([&] { EXPECT_TRUE(Form().btnCancel.Click()); });
    EXPECT_EQ(Lines{}, desktop.boxes);
    EXPECT_FALSE(Released());
    EXPECT_TRUE(host::gConnected);
    ASSERT_EQ(2u, desktop.placings.size());
    EXPECT_EQ(-2, desktop.placings[1].insertAfter) << "no longer on top";
}

TEST_F(Closing, WithEditsAsksAndYesLosesThem)
{
    desktop.WillAnswer({Answer::Yes});
    Open(
        [&]
        {
            EXPECT_TRUE(Form().chkTagKnown.Toggle());
            EXPECT_TRUE(Form().CloseByUser());
        });
    EXPECT_EQ((Lines{Box(36, "Cancel Changes", kQuestion, "Yes")}), desktop.boxes);
    EXPECT_EQ(Lines{}, Sent());
    EXPECT_TRUE(Released());
    EXPECT_FALSE(host::gConnected);
    EXPECT_EQ(1u, desktop.placings.size());
}

TEST_F(Closing, BoxesSetTheOptionsOfThePartition)
{
    desktop.WillAnswer({Answer::Yes});
    Open(
        [&]
        {
            EXPECT_TRUE(Form().chkTagKnown.Toggle());
            EXPECT_TRUE(model::gCurrentPartition->m_blnTagKnownHeadings);
            EXPECT_TRUE(Form().chkTagKnown.Toggle());
            EXPECT_FALSE(model::gCurrentPartition->m_blnTagKnownHeadings);
            EXPECT_TRUE(Form().m_blnChanged) << "an edit taken back is an edit";
            EXPECT_TRUE(Form().btnCancel.Click());
        });
}

TEST_F(Closing, AnOpenNameIsTakenOverBeforeTheSave)
{
    Open(
        [&]
        {
            PickTab(1);
            PickFormat("Key11-2");
            ASSERT_TRUE(Form().lvwFormats.BeginLabelEdit());
            const RecordingObserver typing(Form().lvwFormats, "Bolder");
            EXPECT_TRUE(Form().btnSave.Click());
        });
    EXPECT_EQ((Lines{"Bolder"}), Query("SELECT format_name FROM Report_header_formats WHERE format_id = 11"));
}

// By the button and by the close box: the name is told to be taken, and the window stays, with nothing saved.
TEST_F(Closing, ARefusedNameKeepsTheWindowOpen)
{
    Open(
        [&]
        {
            PickTab(1);
            PickFormat("Key11-2");
            EXPECT_TRUE(Form().SSCheck1[0]->Toggle());
            for (const bool button : {true, false})
            {
                ASSERT_TRUE(Form().lvwFormats.BeginLabelEdit());
                const RecordingObserver typing(Form().lvwFormats, "plain");
                desktop.WillAnswerOk();
                EXPECT_EQ(button, button ? Form().btnSave.Click() : Form().CloseByUser());
                EXPECT_TRUE(host::IsFormLoaded("frmHeadings"));
                EXPECT_EQ("Bold", Form().lvwFormats.SelectedItem().text);
                EXPECT_EQ(Lines{}, Sent());
            }
            EXPECT_TRUE(Form().btnSave.Click());
        });
    const std::string taken =
        Box(0, "Duplicate Name", "This format name is already being used. Please enter a unique name.");
    EXPECT_EQ((Lines{taken, taken}), desktop.boxes);
}

TEST_F(Closing, AnOpenNameIsAnEditWhenTheWindowIsClosed)
{
    desktop.WillAnswer({Answer::No});
    Open(
        [&]
        {
            PickTab(1);
            PickFormat("Key11-2");
            ASSERT_TRUE(Form().lvwFormats.BeginLabelEdit());
            const RecordingObserver typing(Form().lvwFormats, "Bolder");
            EXPECT_FALSE(Form().CloseByUser());
            EXPECT_EQ("Bolder", Form().lvwFormats.Item("Key11-2").text);
            EXPECT_TRUE(Form().btnSave.Click());
        });
    EXPECT_EQ((Lines{Box(36, "Cancel Changes", kQuestion, "No")}), desktop.boxes);
}

// Pressed while a handler let messages through, the close box took the window away under that handler.
TEST_F(Closing, ByTheCloseBoxWaitsForTheHandlerThatRuns)
{
    Open(
        [&]
        {
            PickTab(2);
            desktop.onEvents = [&]
            {
                EXPECT_FALSE(Form().CloseByUser());
                EXPECT_TRUE(host::IsFormLoaded("frmHeadings"));
            };
            PickHeading("Key21-2");
            desktop.onEvents = nullptr;
            EXPECT_FALSE(host::IsFormLoaded("frmHeadings"));
            EXPECT_EQ(21, Form().m_intHeadID);
        });
}

TEST_F(Closing, AWindowThatIsNotOpenDoesNotAnswer)
{
    desktop.onEvents = [&] { EXPECT_FALSE(Form().chkTagKnown.Toggle()) << "while it loads"; };
    Open(
        [&]
        {
            desktop.onEvents = nullptr;
            EXPECT_TRUE(Form().btnCancel.Click());
            EXPECT_FALSE(Form().btnSave.Click());
            EXPECT_FALSE(Form().chkTagKnown.Toggle());
            EXPECT_TRUE(Form().CloseByUser()) << "closed already";
        });
    EXPECT_EQ(1, std::count(calls.begin(), calls.end(), "end"));
}

TEST_F(Closing, AHostThatGoesAwayLosesTheEditsWithoutAQuestion)
{
    Open(
        [&]
        {
            EXPECT_TRUE(Form().chkTagKnown.Toggle());
            Form().HostDestroyed();
            EXPECT_FALSE(host::IsFormLoaded("frmHeadings"));
            Form().HostDestroyed();
        });
    EXPECT_EQ(Lines{}, desktop.boxes);
    EXPECT_TRUE(Released());
    EXPECT_TRUE(host::LoadedForms().empty());
    EXPECT_EQ((FakeView::Calls{"create", "resize", "show", "run", "end", "destroy"}), calls);
}

TEST_F(Closing, AWindowDestroyedUnderTheQuestionIsClosedOnce)
{
    desktop.WillAnswer({Answer::No});
    Open(
        [&]
        {
            EXPECT_TRUE(Form().chkTagKnown.Toggle());
            desktop.whileBoxIsOpen = [&](const std::string &) { Form().HostDestroyed(); };
            EXPECT_TRUE(Form().CloseByUser());
            desktop.whileBoxIsOpen = nullptr;
        });
    EXPECT_EQ(1, std::count(calls.begin(), calls.end(), "end"));
}

// While a handler has a box open, or lets messages through: it ends there, without another box and without a row of the
// log, though the connection has gone with the window.
TEST_F(Closing, AWindowDestroyedInAHandlerEndsItInSilence)
{
    struct Case
    {
        const char *name;
        int box; // the box that is open when it happens; 0: messages are let through
        std::function<void()> act;
    };
    const Case cases[] = {
        {"a deletion", 1, [&] { PickTab(1), PickFormat("Key11-2"), Form().btnDelete.Click(); }},
        {"a save", 1, [&] { Fail(9, "_", "broken", "42000"), Form().btnSave.Click(); }},
        {"the log", 2, [&] { Fail(9, "_", "broken", "42000"), Form().btnSave.Click(); }},
        {"the report", 1, [&] { Fail(9, "SELECT", "broken", "42000"), Form().btnPrint.Click(); }},
        {"a change of partition", 0, [&] { Form().cmbPartition.Choose(1); }},
        {"a look-up", 0, [&] { PickTab(2), PickHeading("Key21-2"); }},
    };
    for (const Case &c : cases)
    {
        SCOPED_TRACE(c.name);
        Connect();
        desktop.boxes.clear();
        int boxes = 0;
        Open(
            [&]
            {
                EXPECT_TRUE(Form().chkTagKnown.Toggle());
                desktop.WillAnswer(std::initializer_list<Answer>{Answer::Yes, Answer::Ok});
                desktop.whileBoxIsOpen = [&](const std::string &)
                {
                    if (++boxes == c.box)
                        Form().HostDestroyed();
                };
                desktop.onEvents = [&]
                {
                    if (c.box == 0)
                        Form().HostDestroyed();
                };
                c.act();
                EXPECT_EQ(boxes, c.box);
                EXPECT_FALSE(host::IsFormLoaded("frmHeadings"));
                EXPECT_FALSE(runtime::HandlerRunning());
            });
        desktop.whileBoxIsOpen = nullptr;
        desktop.onEvents = nullptr;
        desktop.ForgetAnswers();
        database.ClearFaults();
        EXPECT_EQ(Lines{}, Events());
        EXPECT_TRUE(Released());
        EXPECT_EQ(1, std::count(calls.begin(), calls.end(), "end"));
        EXPECT_TRUE(host::LoadedForms().empty());
    }
}

// What let the messages through went on without its window, which without edits nothing else stops.
TEST_F(Closing, AWindowDestroyedByALetThroughMessageEndsWhatRunsAtOnce)
{
    for (const bool opening : {true, false})
    {
        int destroyed = 0;
        const auto destroy = [&]
        {
            ++destroyed;
            Form().HostDestroyed();
        };
        if (opening)
            desktop.onEvents = destroy;
        Open(
            [&]
            {
                PickTab(2);
                desktop.onEvents = destroy;
                PickHeading("Key21-2");
            });
        desktop.onEvents = nullptr;
        EXPECT_EQ(1, destroyed) << opening;
        EXPECT_EQ(opening ? 0 : 1, std::count(calls.begin(), calls.end(), "show"));
    }
}

// Out of a message of the host, between two acts: that call waits for the window as well.
TEST_F(Closing, ShownAgainWhileOpenComesToTheFront)
{
    int runs = 0;
    Open(
        [&]
        {
            if (++runs == 1)
                Form().ShowModal();
            else
                EXPECT_TRUE(Form().btnCancel.Click());
        });
    EXPECT_EQ((FakeView::Calls{"create", "resize", "show", "run", "front", "run", "end", "destroy"}), calls);
}

TEST_F(Closing, WithoutAStageIsTold)
{
    editor::SetFormViewFactory({});
    editor::frmHeadings form;
    desktop.WillAnswerOk();
    form.ShowModal();
    EXPECT_EQ((Lines{support::ErrorBox(
                  "Error encountered while loading form: Object variable or With block variable not set")}),
              desktop.boxes);
    EXPECT_TRUE(host::LoadedForms().empty());
}

TEST_F(Closing, TheDefaultInstanceIsMadeAndReleasedByTheHostSide)
{
    editor::RegisterForms();
    editor::SetFormViewFactory(
        [&](editor::StagedForm &form)
        {
            return std::make_unique<FakeView>(calls,
                                              [&]
                                              {
                                                  host::ReleaseDefaultForm("frmHeadings");
                                                  EXPECT_TRUE(form.CloseByUser());
                                              });
        });
    host::Form &form = host::DefaultForm("frmHeadings");
    EXPECT_EQ("frmHeadings", form.Name());
    EXPECT_EQ(nullptr, form.Handle());
    EXPECT_EQ(0, form.Bounds().left + form.Bounds().top + form.Bounds().width + form.Bounds().height);
    form.ShowModal();
    EXPECT_EQ((FakeView::Calls{"create", "resize", "show", "run", "end", "destroy"}), calls);
}

} // namespace
