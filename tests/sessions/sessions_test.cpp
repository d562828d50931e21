// Random sessions against a model of what the editor claims, on all processors: 2,000, 40,000 where KV_LONG is set, or
// KV_SESSIONS of them, from the seed KV_SEED on.
#include "session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <thread>

#include <sys/wait.h>
#include <unistd.h>

namespace sessions
{

namespace
{

// Plays every `stride`-th seed from `first` to before `end`, up to the first mismatch, which is printed shortened.
bool AllAsClaimed(unsigned first, unsigned end, unsigned stride)
{
    Site site;
    std::size_t steps = 0, sessions = 0;
    for (unsigned seed = first; seed < end; seed += stride, ++sessions)
    {
        const Outcome outcome = PlayRandom(site, seed);
        steps += outcome.played.size();
        if (outcome.mismatch.empty())
            continue;
        const Outcome shortest = Shorten(site, outcome);
        std::cout << "seed " << seed << ": " << outcome.mismatch << "\nshortened to " << shortest.played.size()
                  << " steps: " << shortest.mismatch << "\n"
                  << ToScenario(shortest.played) << std::endl;
        return false;
    }
    std::cout << sessions << " sessions, " << steps << " steps" << std::endl;
    return true;
}

// The component has one set of globals: a process for each processor.
TEST(Sessions, KeepWhatWasChosenAndLeaveTheRest)
{
    const unsigned count = FromEnvironment("KV_SESSIONS", std::getenv("KV_LONG") ? 40000 : 2000),
                   first = FromEnvironment("KV_SEED", 1);
    const unsigned players = std::clamp(std::thread::hardware_concurrency(), 1U, count);
    for (unsigned player = 0; player < players; ++player)
        if (const pid_t child = fork(); child == 0)
            std::exit(AllAsClaimed(first + player, first + count, players) ? 0 : 1); // leaks are looked for
        else
            ASSERT_GT(child, 0);
    for (unsigned player = 0; player < players; ++player)
    {
        int status = -1;
        wait(&status);
        EXPECT_EQ(0, status) << "a session failed: see above";
    }
}

} // namespace

} // namespace sessions
