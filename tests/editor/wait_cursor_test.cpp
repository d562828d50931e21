// The wait cursor over the acts that ask the database. A statement of each fails, and the box about it is looked at.
#include "session.h"

namespace
{

class Waiting : public Session
{
};

TEST_F(Waiting, OpeningSavingPrintingAndAnotherPartitionHaveTheWaitCursor)
{
    struct Case
    {
        const char *what, *statement;
        std::function<void()> act;
    };
    const Case cases[] = {
        {"opening", "FROM account_info", {}},
        {"change of partition", "FROM account_info", [&] { Form().cmbPartition.Choose(1); }},
        {"Print", "FROM Report_header_formats", [&] { Form().btnPrint.Click(); }},
        {"Save", "UPDATE Report_header_formats",
         [&]
         {
             PickTab(1);
             PickFormat("Key11-2");
             Form().SSCheck1[4]->Toggle();
             Form().btnSave.Click();
         }},
    };
    for (const Case &test : cases)
    {
        SCOPED_TRACE(test.what);
        int boxes = 0;
        desktop.whileBoxIsOpen = [&](const std::string &)
        {
            ++boxes;
            EXPECT_GT(desktop.waitCursors, 0);
        };
        desktop.WillAnswerOk(8);
        if (!test.act)
            Fail(1, test.statement, "broken", "42000");
        Open(
            [&]
            {
                EXPECT_EQ(0, desktop.waitCursors);
                if (!test.act)
                    return;
                Fail(1, test.statement, "broken", "42000");
                test.act();
            });
        EXPECT_GT(boxes, 0);
        EXPECT_EQ(0, desktop.waitCursors);
        desktop.ForgetAnswers();
        database.ClearFaults();
        Connect();
    }
}

} // namespace
