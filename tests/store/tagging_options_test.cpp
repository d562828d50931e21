// Saving the tagging options, on a database.
#include "store/modDataActivity.h"
#include "store/statements.h"
#include "support/database_fixture.h"

#include "records.h"

#include <gtest/gtest.h>

#include <string>

using namespace store;
using support::ErrorBox;
using support::Lines;

namespace
{

constexpr bool kKnown = false;
constexpr bool kMixedCase = true;

class TaggingOptions : public support::DatabaseTest
{
protected:
    TaggingOptions() { records::Start(); }
    Lines Options()
    {
        return Query("SELECT user_id, application_id, key_name, key_value, partition_id FROM System_user_cfg "
                     "ORDER BY partition_id, key_name");
    }
};

TEST_F(TaggingOptions, AnInsertThatFailsCountsAsARowAllTheSame)
{
    model::clsPartition &partition = records::Partition(3);
    Fail(1, "INSERT INTO system_user_cfg", "it's full", "42000");
    desktop.WillAnswerOk();
    SaveTaggingOption(3, kKnown);
    EXPECT_TRUE(partition.m_blnKnownFound);
    EXPECT_EQ(Lines{ErrorBox("Error encountered while accessing data: 42000: it's full")}, desktop.boxes);
    EXPECT_EQ(Lines{"21009 | Error encountered while accessing data: 42000: it's full"}, Events());

    SaveTaggingOption(3, kKnown);
    EXPECT_EQ(sql::UpdateTaggingOption(3, kKnown, false), Log().back());
    EXPECT_EQ(Lines{}, Options());
}

TEST_F(TaggingOptions, AnUpdateThatFailsIsShownAndLogged)
{
    records::Partition(3).m_blnMixFound = true;
    Fail(1, "UPDATE system_user_cfg", "gone");
    desktop.WillAnswerOk();
    SaveTaggingOption(3, kMixedCase);
    EXPECT_EQ(Lines{ErrorBox("Error encountered while accessing data: HY000: gone")}, desktop.boxes);
    EXPECT_EQ(Lines{"21009 | Error encountered while accessing data: HY000: gone"}, Events());
}

TEST_F(TaggingOptions, OfAPartitionThatIsNotLoadedAreAnError)
{
    desktop.WillAnswerOk();
    SaveTaggingOption(4, kKnown);
    EXPECT_EQ(Lines{ErrorBox("Error encountered while accessing data: Invalid procedure call or argument")},
              desktop.boxes);
    EXPECT_EQ(1u, Log().size());
    EXPECT_EQ(Lines{}, Options());
}

TEST_F(TaggingOptions, WithoutAnyPartitionsAreAnError)
{
    model::gPartitions = nullptr;
    desktop.WillAnswerOk();
    SaveTaggingOption(4, kKnown);
    EXPECT_EQ(Lines{ErrorBox("Error encountered while accessing data: "
                             "Object variable or With block variable not set")},
              desktop.boxes);
}

TEST_F(TaggingOptions, OfAPartitionWithANegativeIdAreFoundByItsKey)
{
    records::Partition(-1);
    SaveTaggingOption(-1, kKnown);
    EXPECT_EQ(Lines{"-1 | 1 | TagKnownHeadings | False | -1"}, Options());
}

} // namespace
