// Reading the site INI file and its truth words.
#include "host/modReadZentraINI.h"

#include "host/clsConfig.h"
#include "host/modGlobalVariables.h"
#include "platform/desktop.h"
#include "platform/profile.h"
#include "runtime/text.h"

#include <string>

namespace host
{

namespace
{

std::string ReadKey(const std::string &section, const std::string &key)
{
    const std::string value = platform::ReadProfileString(section, key, gConfig->Zentra_INIFile());
    return std::string(runtime::Trim(value));
}

} // namespace

bool IsTruthWord(std::string_view text)
{
    // The blanks around each word belong to the list: a text of adjacent words counts too, intentionally.
    constexpr std::string_view kWords = " Y YES ENABLE ENABLED TRUE ON ";
    const std::string word = " " + runtime::UpperCase(runtime::Trim(text)) + " ";
    return kWords.find(word) != std::string_view::npos;
}

void ReadSiteIni()
{
    if (!gConfig || gConfig->Zentra_INIFile().empty())
        return;
    gNetworkRootDir = ReadKey("System", "NetworkRootDir");
    if (gNetworkRootDir.empty())
    {
        platform::MsgBox("Error - NetworkRootDir was not specified in the ZENTRA.INI Configuration file.",
                         platform::kCritical);
        return;
    }
    gIniTagMixedCaseHeadings = IsTruthWord(ReadKey("EditDesktop", "TagMixedCaseHeadings"));
    gIniTagKnownHeadings = IsTruthWord(ReadKey("EditDesktop", "TagKnownHeadings"));
}

} // namespace host
