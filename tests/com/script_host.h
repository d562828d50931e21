// Runs a script inside the test program, by the system's own script engines, so that the program can look at what the
// script has left behind.
#pragma once

#include <windows.h>

#include <string>

namespace com_test
{

// Runs a text of the language "VBScript" or "JScript" with a `WScript` that knows Echo and Quit. Gives the echoed
// lines, and a line "ERROR ..." for an error that the script did not catch. All of the script is gone on return.
std::string RunScriptHere(const wchar_t *language, const std::wstring &text);

// What a script says when all its checks have been reached and are fulfilled.
constexpr char kEnd[] = "end of the script, 0 failed\n";

bool IsVbScript(const std::string &name);

// One file of the folder.
std::string ReadScript(const std::string &name);

// A script as a whole: with the checks before it.
std::string SourceOf(const std::string &name);

} // namespace com_test
