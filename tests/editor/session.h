// The editor on an embedded database: the fixture of tests that open the window.
#pragma once

#include "fake_view.h"
#include "host/clsConfig.h"
#include "host/forms.h"
#include "support/database_fixture.h"
#include "support/editor_form.h"

#include <functional>
#include <memory>
#include <string>

// A site of four partitions (2 below 1, 3 below 2, and 5, deleted, below 2) with a few records each; the host's
// partition is 2.
class Session : public support::DatabaseTest
{
protected:
    using Lines = support::Lines;

    static constexpr const char *kSite = R"(
INSERT INTO System_partitions VALUES (1, 'Top', '/', NULL)
INSERT INTO System_partitions VALUES (2, 'Clinic', '/1/', NULL)
INSERT INTO System_partitions VALUES (3, 'Ward', '/1/2/', NULL)
INSERT INTO System_partitions VALUES (5, 'Gone', '/1/2/', '2003-01-01T00:00:00')
INSERT INTO Report_header_formats VALUES (0, 'Default', 0, 0, 0, 0, 0, 0, 1, 1)
INSERT INTO Report_header_formats VALUES (10, 'Plain', 0, 0, 1, 0, 0, 0, 0, 2)
INSERT INTO Report_header_formats VALUES (11, 'Bold', 0, 0, 0, 1, 0, 0, 0, 2)
INSERT INTO Report_header_formats VALUES (12, 'Small', 0, 0, 0, 0, 0, 0, 0, 3)
INSERT INTO Report_headers VALUES (0, '<Default>', 1)
INSERT INTO Report_headers VALUES (20, 'HISTORY', 2)
INSERT INTO Report_headers VALUES (21, 'PLAN', 2)
INSERT INTO Report_headers VALUES (22, 'WARD', 3)
INSERT INTO account_info VALUES (-1, 'All', '0', 0)
INSERT INTO account_info VALUES (7, ' Seven ', '0', 2)
INSERT INTO account_info VALUES (8, NULL, '0', 2)
INSERT INTO account_info VALUES (9, 'Nine', '1', 2)
INSERT INTO reports_cfg VALUES (4, 'Notes', 7, '0')
INSERT INTO reports_cfg VALUES (5, NULL, 7, '0')
INSERT INTO Report_header_settings VALUES (20, 7, 0, 11, 0)
INSERT INTO Report_header_settings VALUES (21, 7, 4, 10, 0)
INSERT INTO Report_header_settings VALUES (0, -1, 0, 10, 2)
)";

    Session()
    {
        runtime::MakeRef<host::clsConfig>()->SetPartitionID(2);
        database.Run(kSite);
    }
    ~Session() override
    {
        editor::SetFormViewFactory({});
        host::LoadedForms().clear();
    }

    // Opens the window and does this while it is open; afterwards the host goes away with it, if it is still there.
    void Open(const std::function<void()> &whileOpen = {})
    {
        calls.clear();
        m_form = std::make_unique<support::EditorForm>();
        editor::SetFormViewFactory([this, whileOpen](editor::StagedForm &)
                                   { return std::make_unique<FakeView>(calls, whileOpen); });
        Form().ShowModal();
    }
    support::EditorForm &Form() { return *m_form; }

    void PickTab(int tab) { EXPECT_TRUE(Form().SSTab1.ClickTab(tab)); }
    void PickHeading(const std::string &key)
    {
        EXPECT_TRUE(Form().lvwHeadings.Select(Form().lvwHeadings.Position(key))) << key;
    }
    void PickFormat(const std::string &key)
    {
        EXPECT_TRUE(Form().lvwFormats.Select(Form().lvwFormats.Position(key))) << key;
    }
    // The texts of a list, "*" before the selected one.
    static Lines Texts(const editor::controls::ListView &list)
    {
        Lines texts;
        for (int i = 1; i <= list.Count(); ++i)
            texts.push_back((i == list.SelectedPosition() ? "*" : "") + list.Item(i).text);
        return texts;
    }
    static Lines Texts(const editor::controls::ComboBox &combo)
    {
        Lines texts;
        for (int i = 0; i < combo.ListCount(); ++i)
            texts.push_back((i == combo.ListIndex() ? "*" : "") + combo.List(i));
        return texts;
    }

    FakeView::Calls calls;

private:
    std::unique_ptr<support::EditorForm> m_form;
};
