// The configuration object's properties, the list of loaded windows, and the window kept on top.
#include "host/clsConfig.h"
#include "host/forms.h"
#include "host/modGlobalVariables.h"
#include "host/modMisc.h"
#include "support/fake_desktop.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using runtime::MakeRef;

// A window that is nothing but its name and place.
class NamedForm : public host::Form
{
public:
    explicit NamedForm(std::string name) : m_name(std::move(name)) {}
    std::string Name() const override { return m_name; }
    platform::WindowHandle Handle() const override { return handle; }
    host::Rectangle Bounds() const override { return place; }
    void ShowModal() override {}

    platform::WindowHandle handle = nullptr;
    host::Rectangle place;

private:
    std::string m_name;
};

TEST(Config, StartsWithNoPartitionAndNoConnection)
{
    host::gPartitionID = 5;
    host::gConnected = true;
    const auto config = MakeRef<host::clsConfig>();
    EXPECT_EQ(config->PartitionID(), -1);
    EXPECT_FALSE(host::gConnected);
    EXPECT_EQ(host::gConfig, config);
    host::gConfig = nullptr;
}

TEST(Config, EveryPropertyIsKept)
{
    const auto config = MakeRef<host::clsConfig>();
    config->SetUser_ID(-7);
    config->SetPartitionID(100000);
    config->SetDebugMode(3);
    config->SetLogFile("C:\\log.txt");
    config->SetSqlServerName("server");
    config->SetPassword("  secret ");
    config->SetSqlUserName("user");
    config->SetSqlDbName("database");
    config->SetSQLDSN("source");
    config->SetSqlTimeout(15);
    config->SetZentra_INIFile("C:\\ZENTRA.INI");
    EXPECT_EQ(config->User_ID(), -7);
    EXPECT_EQ(config->PartitionID(), 100000);
    EXPECT_EQ(config->DebugMode(), 3);
    EXPECT_EQ(config->LogFile(), "C:\\log.txt");
    EXPECT_EQ(config->SqlServerName(), "server");
    EXPECT_EQ(config->Password(), "  secret ") << "no setter trims";
    EXPECT_EQ(config->SqlUserName(), "user");
    EXPECT_EQ(config->SqlDbName(), "database");
    EXPECT_EQ(config->SQLDSN(), "source");
    EXPECT_EQ(config->SqlTimeout(), 15);
    EXPECT_EQ(config->Zentra_INIFile(), "C:\\ZENTRA.INI");
    EXPECT_EQ(host::gUserID, -7);
    EXPECT_EQ(host::gPartitionID, 100000);
    EXPECT_EQ(host::gSqlTimeout, 15);
    host::gConfig = nullptr;
}

TEST(Config, ASecondInstanceSharesTheValues)
{
    const auto first = MakeRef<host::clsConfig>();
    first->SetSqlDbName("one");
    first->SetPartitionID(3);
    const auto second = MakeRef<host::clsConfig>();
    EXPECT_EQ(second->SqlDbName(), "one");
    EXPECT_EQ(first->PartitionID(), -1) << "the second instance reset it";
    second->SetSqlDbName("two");
    EXPECT_EQ(first->SqlDbName(), "two");
    EXPECT_EQ(host::gConfig, second);
    host::gConfig = nullptr;
}

TEST(Config, VersionIsThreeNumbers)
{
    const auto config = MakeRef<host::clsConfig>();
    EXPECT_EQ(config->Version(), std::to_string(KVHEADERS_VERSION_MAJOR) + "." +
                                     std::to_string(KVHEADERS_VERSION_MINOR) + "." +
                                     std::to_string(KVHEADERS_VERSION_PATCH));
    host::gConfig = nullptr;
}

class LoadedWindows : public testing::Test
{
protected:
    void TearDown() override { host::LoadedForms().clear(); }
};

TEST_F(LoadedWindows, AnEmptyListYieldsFalse)
{
    EXPECT_FALSE(host::IsFormLoaded("frmHeadings"));
}

TEST_F(LoadedWindows, NamesAreComparedWithoutRegardToCase)
{
    NamedForm other("frmOther");
    NamedForm form("frmHeadings");
    host::LoadedForms() = {&other, &form};
    EXPECT_TRUE(host::IsFormLoaded("FRMHEADINGS"));
    EXPECT_TRUE(host::IsFormLoaded("frmheadings"));
    EXPECT_TRUE(host::IsFormLoaded("frmOther"));
    EXPECT_FALSE(host::IsFormLoaded("frmHeading"));
}

TEST(DefaultForms, AreMadeOnceAndReleased)
{
    int made = 0;
    host::SetFormFactory("frmTest",
                         [&made]
                         {
                             ++made;
                             return std::make_unique<NamedForm>("frmTest");
                         });
    host::Form &first = host::DefaultForm("frmTest");
    EXPECT_EQ(&host::DefaultForm("frmTest"), &first);
    EXPECT_EQ(made, 1);
    host::ReleaseDefaultForm("frmTest");
    host::DefaultForm("frmTest");
    EXPECT_EQ(made, 2);
    host::ReleaseDefaultForm("frmTest");
    host::SetFormFactory("frmTest", nullptr);
    EXPECT_THROW(host::DefaultForm("frmTest"), runtime::Error);
    EXPECT_THROW(host::DefaultForm("frmNobody"), runtime::Error);
}

TEST(KeepOnTop, ConvertsTwipsRoundingHalvesToEven)
{
    support::FakeDesktop desktop;
    desktop.twipsPerPixelX = 10;
    desktop.twipsPerPixelY = 20;
    NamedForm form("frmHeadings");
    int window = 0;
    form.handle = &window;
    form.place = {25, 30, 10735, 6110};
    host::KeepOnTop(form, true);
    host::KeepOnTop(form, false);
    ASSERT_EQ(desktop.placings.size(), 2u);
    const auto &top = desktop.placings[0];
    EXPECT_EQ(top.window, &window);
    EXPECT_EQ(top.insertAfter, -1);
    EXPECT_EQ(top.left, 2);     // 2.5
    EXPECT_EQ(top.top, 2);      // 1.5
    EXPECT_EQ(top.width, 1074); // 1073.5
    EXPECT_EQ(top.height, 306); // 305.5
    EXPECT_EQ(desktop.placings[1].insertAfter, -2);
}

TEST(KeepOnTop, IgnoresErrors)
{
    support::FakeDesktop desktop;
    NamedForm form("frmHeadings");
    form.place = {1e9, 0, 0, 0}; // overflows
    host::KeepOnTop(form, true);
    EXPECT_TRUE(desktop.placings.empty());
    EXPECT_TRUE(desktop.boxes.empty());
}

} // namespace
