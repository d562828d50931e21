// The window on screens of other resolutions: this program once more, with the system told of another one.
#include "support/child.h"
#include "window/scale.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace window_tests
{
namespace
{

constexpr const char *kWanted = "KV_DOTS_PER_INCH";

// What the system takes for the resolution when a program starts; given back at the end.
class SystemResolution
{
public:
    explicit SystemResolution(DWORD dots)
    {
        DWORD value = 0, size = sizeof value;
        if (RegGetValueW(HKEY_CURRENT_USER, kPath, kName, RRF_RT_REG_DWORD, nullptr, &value, &size) == ERROR_SUCCESS)
            m_before = value;
        Set(dots);
    }
    ~SystemResolution() { m_before ? Set(*m_before) : void(RegDeleteKeyValueW(HKEY_CURRENT_USER, kPath, kName)); }
    SystemResolution(const SystemResolution &) = delete;
    SystemResolution &operator=(const SystemResolution &) = delete;

private:
    static void Set(DWORD dots) { RegSetKeyValueW(HKEY_CURRENT_USER, kPath, kName, REG_DWORD, &dots, sizeof dots); }

    static constexpr const wchar_t *kPath = L"Control Panel\\Desktop";
    static constexpr const wchar_t *kName = L"LogPixels";
    std::optional<DWORD> m_before;
};

// A program that does not say that it knows resolutions is told of 96 dots, also by Wine from version 10 on.
[[maybe_unused]] const bool s_aware = std::getenv(kWanted) && SetProcessDPIAware();

TEST(DISABLED_Resolution, IsTheOneThatWasSet)
{
    EXPECT_EQ(window::Scale::OfScreen().X(1440), std::atoi(std::getenv(kWanted)));
    EXPECT_EQ(window::Scale::OfScreen().Y(1440), std::atoi(std::getenv(kWanted)));
}

class Resolution : public testing::TestWithParam<int>
{
};

TEST_P(Resolution, TheWindowIsAsTheTableSaysAndHeadersAnswer)
{
    const SystemResolution system(static_cast<DWORD>(GetParam()));
    SetEnvironmentVariableA(kWanted, std::to_string(GetParam()).c_str());
    EXPECT_EQ(support::RunTestsInChild(L"DISABLED_Resolution.*:Layout.*:Lists.AClickOnAHeader*:Lists.ShowRows*"), 0u)
        << "what has failed stands above";
}

// At the last one the window is larger than the screen.
INSTANTIATE_TEST_SUITE_P(Dots, Resolution, testing::Values(120, 144, 192, 288), testing::PrintToStringParamName());

} // namespace
} // namespace window_tests
