// Saving, cancelling, closing, and windows that others take away.
#include "session.h"

#include "host/modGlobalVariables.h"
#include "model/globals.h"

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
    EXPECT_FALSE(Form().Loaded());
    EXPECT_EQ((FakeView::Calls{"create", "resize", "show", "run", "end", "destroy"}), calls);
}

TEST_F(Closing, SaveWritesTheEditsAndAsksNothing)
{
    Open(
        [&]
        {
            PickTab(1);
            PickFormat("Key11-2");
            EXPECT_TRUE(Form().SSCheck1[4]->Toggle());
            EXPECT_TRUE(Form().btnSave.Click());
        });
    EXPECT_EQ(Lines{}, desktop.boxes);
    EXPECT_EQ((Lines{"Bold | 1 | 1"}),
              Query("SELECT format_name, bold, underline FROM Report_header_formats WHERE format_id = 11"));
    EXPECT_TRUE(Released());
    EXPECT_FALSE(host::gConnected);
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
            EXPECT_TRUE(Form().CloseByPerson());
        });
    EXPECT_EQ((Lines{Box(36, "Cancel Changes", kQuestion, "Yes")}), desktop.boxes);
    EXPECT_EQ(Lines{}, Sent());
    EXPECT_TRUE(Released());
    EXPECT_FALSE(host::gConnected);
    EXPECT_EQ(1u, desktop.placings.size());
}

TEST_F(Closing, WithEditsAsksAndNoKeepsThemButNotOnTop)
{
    desktop.WillAnswer({Answer::No});
    Open(
        [&]
        {
            EXPECT_TRUE(Form().chkTagMixed.Toggle());
            EXPECT_TRUE(Form().btnCancel.Click());
            EXPECT_TRUE(Form().Loaded());
            EXPECT_TRUE(Form().m_blnChanged);
            EXPECT_TRUE(model::gCurrentPartition->m_blnAllowMixedCaseHeadings);
            ASSERT_EQ(2u, desktop.placings.size());
            EXPECT_EQ(-2, desktop.placings[1].insertAfter);
            EXPECT_EQ(1u, host::LoadedForms().size());
            desktop.WillAnswer({Answer::No});
            EXPECT_FALSE(Form().CloseByPerson());
            EXPECT_TRUE(Form().btnSave.Click());
        });
    EXPECT_EQ((Lines{Box(36, "Cancel Changes", kQuestion, "No"), Box(36, "Cancel Changes", kQuestion, "No")}),
              desktop.boxes);
    EXPECT_EQ((Lines{"True"}), Query("SELECT key_value FROM System_user_cfg WHERE key_name = 'TagMixedCaseHeadings' "
                                     "AND partition_id = 2"));
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

TEST_F(Closing, ADeletedHeadingAloneDoesNotAsk)
{
    desktop.WillAnswer({Answer::Yes});
    Open(
        [&]
        {
            PickTab(2);
            PickHeading("Key21-2");
            EXPECT_TRUE(Form().btnDeleteHead.Click());
            EXPECT_TRUE(Form().btnCancel.Click());
        });
    EXPECT_EQ(1u, desktop.boxes.size());
}

// A native edit that still holds a typed text.
struct Typing final : editor::controls::Face
{
    explicit Typing(editor::controls::Control &control) : m_control(control) { control.SetFace(this); }
    ~Typing() override { m_control.SetFace(nullptr); }
    void Changed(editor::controls::Aspect, int) override {}
    std::optional<std::string> TypedLabel() override { return "Bolder"; }

private:
    editor::controls::Control &m_control;
};

TEST_F(Closing, AnOpenNameIsTakenOverBeforeTheSave)
{
    Open(
        [&]
        {
            PickTab(1);
            PickFormat("Key11-2");
            ASSERT_TRUE(Form().lvwFormats.BeginLabelEdit());
            const Typing typing(Form().lvwFormats);
            EXPECT_TRUE(Form().btnSave.Click());
        });
    EXPECT_EQ((Lines{"Bolder"}), Query("SELECT format_name FROM Report_header_formats WHERE format_id = 11"));
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
            const Typing typing(Form().lvwFormats);
            EXPECT_FALSE(Form().CloseByPerson());
            EXPECT_EQ("Bolder", Form().lvwFormats.Item("Key11-2").text);
            EXPECT_TRUE(Form().btnSave.Click());
        });
    EXPECT_EQ((Lines{Box(36, "Cancel Changes", kQuestion, "No")}), desktop.boxes);
}

TEST_F(Closing, AClosedWindowDoesNotAnswer)
{
    Open(
        [&]
        {
            EXPECT_TRUE(Form().btnCancel.Click());
            EXPECT_FALSE(Form().btnSave.Click());
            EXPECT_FALSE(Form().chkTagKnown.Toggle());
            EXPECT_TRUE(Form().CloseByPerson()) << "closed already";
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
            EXPECT_FALSE(Form().Loaded());
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
            EXPECT_TRUE(Form().CloseByPerson());
            desktop.whileBoxIsOpen = nullptr;
        });
    EXPECT_EQ(1, std::count(calls.begin(), calls.end(), "end"));
}

TEST_F(Closing, AWindowDestroyedUnderADeletionLeavesNoTrace)
{
    desktop.WillAnswer({Answer::Yes});
    Open(
        [&]
        {
            PickTab(1);
            PickFormat("Key11-2");
            Form().m_blnChanged = true;
            desktop.whileBoxIsOpen = [&](const std::string &) { Form().HostDestroyed(); };
            EXPECT_TRUE(Form().btnDelete.Click());
            desktop.whileBoxIsOpen = nullptr;
        });
    EXPECT_TRUE(host::LoadedForms().empty());
}

TEST_F(Closing, ShownAgainWhileOpenComesToTheFront)
{
    Open(
        [&]
        {
            Form().ShowModal();
            EXPECT_TRUE(Form().btnCancel.Click());
        });
    EXPECT_EQ((FakeView::Calls{"create", "resize", "show", "run", "front", "end", "destroy"}), calls);
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
                                                  EXPECT_TRUE(form.CloseByPerson());
                                              });
        });
    host::Form &form = host::DefaultForm("frmHeadings");
    EXPECT_EQ("frmHeadings", form.Name());
    EXPECT_EQ(nullptr, form.Handle());
    form.ShowModal();
    EXPECT_EQ((FakeView::Calls{"create", "resize", "show", "run", "end", "destroy"}), calls);
}

TEST_F(Closing, ASecondWindowStartsEmpty)
{
    Open(
        [&]
        {
            EXPECT_TRUE(Form().cmbPartition.Choose(1));
            EXPECT_TRUE(Form().btnCancel.Click());
        });
    Open(
        [&]
        {
            EXPECT_EQ("Clinic", model::gCurrentPartition->m_strPartitionName);
            EXPECT_EQ((Lines{"*Clinic", "Ward"}), Texts(Form().cmbPartition));
        });
}

} // namespace
