// Random sessions against a model of what the editor claims. KV_SESSIONS plays more of them, KV_SEED from another one
// on.
#include "session.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

namespace sessions
{

namespace
{

unsigned FromEnvironment(const char *name, unsigned otherwise)
{
    const char *const value = std::getenv(name);
    return value ? static_cast<unsigned>(std::strtoul(value, nullptr, 10)) : otherwise;
}

TEST(Sessions, KeepWhatWasChosenAndLeaveTheRest)
{
    Site site;
    const unsigned count = FromEnvironment("KV_SESSIONS", 300), first = FromEnvironment("KV_SEED", 1);
    std::size_t steps = 0;
    for (unsigned seed = first; seed < first + count; ++seed)
    {
        const Outcome outcome = PlayRandom(site, seed);
        steps += outcome.played.size();
        if (outcome.mismatch.empty())
            continue;
        const Outcome shortest = Shorten(site, outcome);
        ADD_FAILURE() << "seed " << seed << ": " << outcome.mismatch << "\nshortened to " << shortest.played.size()
                      << " steps: " << shortest.mismatch << "\n"
                      << ToScenario(shortest.played);
        return;
    }
    std::cout << count << " sessions from seed " << first << " on: " << steps << " steps\n";
}

} // namespace

} // namespace sessions
