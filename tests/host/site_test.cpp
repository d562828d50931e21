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

struct WordCase
{
    const char *text;
    bool expected;
};

class TruthWords : public testing::TestWithParam<WordCase>
{
};

TEST_P(TruthWords, AreRecognised)
{
    EXPECT_EQ(host::IsTruthWord(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Words, TruthWords,
                         testing::Values(WordCase{"y", true}, WordCase{" Yes ", true}, WordCase{"enable", true},
                                         WordCase{"enabled", true}, WordCase{"TRUE", true}, WordCase{"on", true},
                                         WordCase{"TRUE ON", true}, WordCase{"enable enabled", true},
                                         WordCase{"N", false}, WordCase{"1", false}, WordCase{"YE", false},
                                         WordCase{"ON TRUE", false}, WordCase{"", false}, WordCase{"  ", false},
                                         WordCase{"yes\t", false}));

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

TEST_F(SiteIni, WithoutRootThePersonIsTold)
{
    m_desktop.WillAnswerOk();
    Read("[EditDesktop]\nTagMixedCaseHeadings=N\nTagKnownHeadings=N\n");
    ExpectMissingRootMessage();
}

TEST_F(SiteIni, RootOfBlanksCountsAsMissing)
{
    m_desktop.WillAnswerOk();
    Read("[System]\nNetworkRootDir=\"    \"\n[EditDesktop]\nTagKnownHeadings=N\n");
    ExpectMissingRootMessage();
}

TEST_F(SiteIni, MissingFileIsAMissingRoot)
{
    m_desktop.WillAnswerOk();
    m_config->SetZentra_INIFile(m_folder.Path("none.ini"));
    host::ReadSiteIni();
    ExpectMissingRootMessage();
}

TEST_F(SiteIni, AFolderInPlaceOfTheFileIsAMissingRoot)
{
    m_desktop.WillAnswerOk();
    m_config->SetZentra_INIFile(m_folder.Path());
    host::ReadSiteIni();
    ExpectMissingRootMessage();
}

TEST_F(SiteIni, TenMegabytesOfBytesAreAMissingRoot)
{
    std::string garbage(10'000'000, '\0');
    unsigned state = 4711;
    for (char &c : garbage)
    {
        state = state * 1103515245u + 12345u;
        c = static_cast<char>(state >> 16);
    }
    m_desktop.WillAnswerOk();
    Read(garbage);
    ExpectMissingRootMessage();
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

TEST(Registry, ReadsPlainStringsOnly)
{
    support::TestRegistry registry;
    registry.Set(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\Strings", "Name", "C:\\ROOT\\");
    EXPECT_EQ(host::ReadRegistryString(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\Strings", "Name"), "C:\\ROOT\\");
    EXPECT_EQ(host::ReadRegistryString(RegistryRoot::CurrentUser, "software\\kvtest\\STRINGS", "NAME"), "C:\\ROOT\\");
    EXPECT_EQ(host::ReadRegistryString(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\Strings", "Other"), "");
    EXPECT_EQ(host::ReadRegistryString(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\None", "Name"), "");
    EXPECT_EQ(host::ReadRegistryString(RegistryRoot::LocalMachine, "SOFTWARE\\KvTest\\Strings", "Name"), "");
}

TEST(Registry, AValueOfAnotherTypeIsEmpty)
{
    support::TestRegistry registry;
    registry.Set(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\Types", "Expand", "%windir%", 2);
    registry.Set(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\Types", "Multi", "a", 7);
    EXPECT_EQ(host::ReadRegistryString(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\Types", "Expand"), "");
    EXPECT_EQ(host::ReadRegistryString(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\Types", "Multi"), "");
}

TEST(Registry, AnEmptyOrLongValueIsEmpty)
{
    support::TestRegistry registry;
    registry.Set(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\Sizes", "Empty", "");
    registry.Set(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\Sizes", "Fits", std::string(255, 'f'));
    registry.Set(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\Sizes", "Long", std::string(256, 'l'));
    EXPECT_EQ(host::ReadRegistryString(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\Sizes", "Empty"), "");
    EXPECT_EQ(host::ReadRegistryString(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\Sizes", "Fits"),
              std::string(255, 'f'));
    EXPECT_EQ(host::ReadRegistryString(RegistryRoot::CurrentUser, "SOFTWARE\\KvTest\\Sizes", "Long"), "");
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
