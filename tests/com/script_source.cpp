// The scripts of the folder scripts/.
#include "script_source.h"

#include "support/test_folder.h"

#include <gtest/gtest.h>

namespace com_test
{

bool IsVbScript(const std::string &name)
{
    return name.ends_with(".vbs");
}

std::string ReadScript(const std::string &name)
{
    const std::string text = support::ReadFile(support::SourcePath("tests/com/scripts/" + name));
    EXPECT_FALSE(text.empty()) << name;
    return text;
}

std::string SourceOf(const std::string &name)
{
    return IsVbScript(name) ? ReadScript("checks.vbs") + ReadScript(name) : ReadScript(name);
}

} // namespace com_test
