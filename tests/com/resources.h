// What this process holds of the system, for tests that look for leaks.
#pragma once

#include <cstddef>
#include <string>

namespace com_test
{

struct Resources
{
    unsigned gdi = 0;       // pens, brushes, bitmaps, fonts ...
    unsigned user = 0;      // windows, menus, icons and cursors
    unsigned kernel = 0;    // handles of files, events, threads, registry keys ...
    std::size_t heap = 0;   // bytes that are allocated in the heaps of the process
    std::size_t memory = 0; // bytes of memory in use, the Unix side included under Wine
};

// The counts of now. Wine's own two functions for them answer 0; there the handles themselves are counted.
Resources CountResources();

std::string Told(const Resources &resources);

} // namespace com_test
