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
    SystemResolution()
    {
        RegOpenKeyExW(HKEY_CURRENT_USER, L"Control Panel\\Desktop", 0, KEY_READ | KEY_WRITE, &m_key);
        DWORD value = 0, size = sizeof value;
        if (RegQueryValueExW(m_key, kValue, nullptr, nullptr, reinterpret_cast<BYTE *>(&value), &size) == ERROR_SUCCESS)
            m_before = value;
    }
    ~SystemResolution()
    {
        if (m_before)
            Set(*m_before);
        else
            RegDeleteValueW(m_key, kValue);
        RegCloseKey(m_key);
    }
    SystemResolution(const SystemResolution &) = delete;
    SystemResolution &operator=(const SystemResolution &) = delete;

    void Set(DWORD dots) const
    {
        RegSetValueExW(m_key, kValue, 0, REG_DWORD, reinterpret_cast<const BYTE *>(&dots), sizeof dots);
    }

private:
    static constexpr const wchar_t *kValue = L"LogPixels";
    HKEY m_key = nullptr;
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
    const SystemResolution system;
    system.Set(static_cast<DWORD>(GetParam()));
    SetEnvironmentVariableA(kWanted, std::to_string(GetParam()).c_str());
    EXPECT_EQ(support::RunTestsInChild(L"DISABLED_Resolution.*:Layout.*:Lists.AClickOnAHeader*:Lists.ShowRows*"), 0u)
        << "what has failed stands above";
}

// At the last one the window is larger than the screen.
INSTANTIATE_TEST_SUITE_P(Dots, Resolution, testing::Values(120, 144, 192, 288), testing::PrintToStringParamName());

} // namespace
} // namespace window_tests
