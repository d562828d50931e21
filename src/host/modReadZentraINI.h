// The site INI file.
#pragma once

#include <string_view>

namespace host
{

// Fills gNetworkRootDir and the site's two tagging defaults from the INI file that the host named. Without a path
// nothing happens; without NetworkRootDir the user is told and the tagging defaults keep their values.
void ReadSiteIni();

// True for Y, YES, ENABLE, ENABLED, TRUE and ON in any case, with blanks around them; also, intentionally, for a text
// of such words as they follow each other in that list.
bool IsTruthWord(std::string_view text);

} // namespace host
