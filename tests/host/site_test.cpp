// The site INI file, truth words, registry look-ups, and the question whether a data source is registered.
#include "host/General_Registry.h"
#include "host/clsConfig.h"
#include "host/modGlobalVariables.h"
#include "host/modReadZentraINI.h"
#include "runtime/ref.h"
#include "support/fake_desktop.h"
#include "support/registry.h"
#include "support/test_folder.h"

#include <gtest/gtest.h>

#include <string>

namespace
{

using platform::RegistryRoot;

TEST(TruthWords, AreRecognised)
{
    for (const char *text : {"y", " Yes ", "enable", "enabled", "TRUE", "on", "TRUE ON", "enable enabled"})
        EXPECT_TRUE(host::IsTruthWord(text)) << text;
    for (const char *text : {"N", "1", "YE", "ON TRUE", "", "  ", "yes\t"})
        EXPECT_FALSE(host::IsTruthWord(text)) << text;
}

class SiteIni : public testing::Test
{
protected:
    SiteIni()
    {
        host::gNetworkRootDir = "before";
        host::gIniTagKnownHeadings = true;
        host::gIniTagMixedCaseHeadings = true;
    }

    ~SiteIni() override
    {
        host::gConfig = nullptr;
        host::gNetworkRootDir.clear();
        host::gIniTagKnownHeadings = false;
        host::gIniTagMixedCaseHeadings = false;
        host::gZentraINIFile.clear();
    }

    void Read(const std::string &content)
    {
        support::WriteFile(m_folder.Path("ZENTRA.INI"), content);
        m_config->SetZentra_INIFile(m_folder.Path("ZENTRA.INI"));
        host::ReadSiteIni();
    }

    void ExpectMissingRootMessage()
    {
        ASSERT_EQ(m_desktop.boxes.size(), 1u);
        EXPECT_EQ(m_desktop.boxes[0],
                  support::Box(16, "KVHEADERS",
                               "Error - NetworkRootDir was not specified in the ZENTRA.INI Configuration file."));
        m_desktop.boxes.clear();
        EXPECT_EQ(host::gNetworkRootDir, "");
        EXPECT_TRUE(host::gIniTagKnownHeadings) << "keeps its value";
        EXPECT_TRUE(host::gIniTagMixedCaseHeadings) << "keeps its value";
    }

    support::FakeDesktop m_desktop;
    support::TestFolder m_folder;
    runtime::Ref<host::clsConfig> m_config = runtime::MakeRef<host::clsConfig>();
};

TEST_F(SiteIni, GivesRootAndDefaults)
{
    Read("[System]\nNetworkRootDir= \\\\srv\\root \n[EditDesktop]\nTagMixedCaseHeadings=N\nTagKnownHeadings= yes \n");
    EXPECT_EQ(host::gNetworkRootDir, "\\\\srv\\root");
    EXPECT_FALSE(host::gIniTagMixedCaseHeadings);
    EXPECT_TRUE(host::gIniTagKnownHeadings);
    EXPECT_TRUE(m_desktop.boxes.empty());
}

TEST_F(SiteIni, AbsentTaggingKeysAreFalse)
{
    Read("[System]\nNetworkRootDir=x\n");
    EXPECT_FALSE(host::gIniTagMixedCaseHeadings);
    EXPECT_FALSE(host::gIniTagKnownHeadings);
}

TEST_F(SiteIni, WithoutAPathNothingHappens)
{
    m_config->SetZentra_INIFile("");
    host::ReadSiteIni();
    EXPECT_EQ(host::gNetworkRootDir, "before");
    EXPECT_TRUE(host::gIniTagKnownHeadings);
    EXPECT_TRUE(m_desktop.boxes.empty());
}

TEST_F(SiteIni, WithoutRootTheUserIsTold)
{
    for (const char *content : {"[EditDesktop]\nTagMixedCaseHeadings=N\nTagKnownHeadings=N\n",
                                "[System]\nNetworkRootDir=\"    \"\n[EditDesktop]\nTagKnownHeadings=N\n"})
    {
        m_desktop.WillAnswerOk();
        Read(content);
        ExpectMissingRootMessage();
    }
}

TEST_F(SiteIni, WithoutAFileTheUserIsToldToo)
{
    for (const std::string &path : {m_folder.Path("none.ini"), m_folder.Path()})
    {
        m_desktop.WillAnswerOk();
        m_config->SetZentra_INIFile(path);
        host::ReadSiteIni();
        ExpectMissingRootMessage();
    }
}

TEST_F(SiteIni, LongRootIsCutAt127Characters)
{
    Read("[System]\nNetworkRootDir=" + std::string(200, 'r') + "\n");
    EXPECT_EQ(host::gNetworkRootDir, std::string(127, 'r'));
}

TEST_F(SiteIni, ThePathIsTheOneOfTheInstanceInUse)
{
    const auto second = runtime::MakeRef<host::clsConfig>();
    support::WriteFile(m_folder.Path("other.ini"), "[System]\nNetworkRootDir=other\n");
    second->SetZentra_INIFile(m_folder.Path("other.ini"));
    host::ReadSiteIni();
    EXPECT_EQ(host::gNetworkRootDir, "other");
}

TEST(Registry, ReadsPlainStringsOfUpTo255Characters)
{
    using enum RegistryRoot;
    support::TestRegistry registry;
    const std::string key = "SOFTWARE\\KvTest\\Strings";
    registry.Set(CurrentUser, key, "Name", "C:\\ROOT\\");
    registry.Set(CurrentUser, key, "Expand", "%windir%", 2);
    registry.Set(CurrentUser, key, "Multi", "a", 7);
    registry.Set(CurrentUser, key, "Empty", "");
    registry.Set(CurrentUser, key, "Fits", std::string(255, 'f'));
    registry.Set(CurrentUser, key, "Long", std::string(256, 'l'));
    EXPECT_EQ(host::ReadRegistryString(CurrentUser, key, "Name"), "C:\\ROOT\\");
    EXPECT_EQ(host::ReadRegistryString(CurrentUser, "software\\kvtest\\STRINGS", "NAME"), "C:\\ROOT\\");
    EXPECT_EQ(host::ReadRegistryString(CurrentUser, key, "Fits"), std::string(255, 'f'));
    for (const char *name : {"Other", "Expand", "Multi", "Empty", "Long"})
        EXPECT_EQ(host::ReadRegistryString(CurrentUser, key, name), "") << name;
    EXPECT_EQ(host::ReadRegistryString(CurrentUser, "SOFTWARE\\KvTest\\None", "Name"), "");
    EXPECT_EQ(host::ReadRegistryString(LocalMachine, key, "Name"), "");
}

TEST(DataSource, IsRegisteredForTheMachineOrElseTheUser)
{
    support::TestRegistry registry;
    EXPECT_FALSE(host::IsDataSourceRegistered(""));
    EXPECT_FALSE(host::IsDataSourceRegistered("KvTestSource"));
    registry.Set(RegistryRoot::CurrentUser, "SOFTWARE\\ODBC\\ODBC.INI\\KvTestSource", "DATABASE", "site");
    EXPECT_TRUE(host::IsDataSourceRegistered("KvTestSource")) << "for the user alone";
    registry.Set(RegistryRoot::LocalMachine, "SOFTWARE\\ODBC\\ODBC.INI\\KvTestMachine", "DATABASE", "site");
    EXPECT_TRUE(host::IsDataSourceRegistered("KvTestMachine")) << "for the machine alone";
    registry.Set(RegistryRoot::LocalMachine, "SOFTWARE\\ODBC\\ODBC.INI\\KvTestEmpty", "DATABASE", "");
    EXPECT_FALSE(host::IsDataSourceRegistered("KvTestEmpty"));
    registry.Set(RegistryRoot::LocalMachine, "SOFTWARE\\ODBC\\ODBC.INI\\KvTestOther", "Driver", "x");
    EXPECT_FALSE(host::IsDataSourceRegistered("KvTestOther"));
}

} // namespace
