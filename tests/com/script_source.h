// The scripts of the folder scripts/.
#pragma once

#include <string>

namespace com_test
{

// What a script says when all its checks have been reached and are fulfilled.
constexpr char kEnd[] = "end of the script, 0 failed\n";

bool IsVbScript(const std::string &name);

// One file of the folder.
std::string ReadScript(const std::string &name);

// A script as a whole: with the checks before it.
std::string SourceOf(const std::string &name);

} // namespace com_test
