// What the random sessions on the real window share: the registered component, and how many are played.
#pragma once

#include "sessions/session.h"
#include "windowed/stage.h"

#include <gtest/gtest.h>

namespace sessions
{

class RealWindow : public testing::Test
{
protected:
    static void SetUpTestSuite() { Call("DllRegisterServer"); }
    static void TearDownTestSuite() { Call("DllUnregisterServer"); }

    // The seeds to play: from KV_SEED on, KV_SESSIONS of them or as many as the test has time for.
    static unsigned First() { return FromEnvironment("KV_SEED", 1); }
    static unsigned Count(unsigned otherwise) { return FromEnvironment("KV_SESSIONS", otherwise); }

private:
    // An entry point of the DLL beside this program.
    static void Call(const char *name)
    {
        const HMODULE component = LoadLibraryW(L"KVHEADERS.dll");
        ASSERT_NE(component, nullptr);
        const auto entry =
            reinterpret_cast<HRESULT(WINAPI *)()>(reinterpret_cast<void *>(GetProcAddress(component, name)));
        EXPECT_EQ(entry(), S_OK) << name;
        FreeLibrary(component);
    }
};

} // namespace sessions
