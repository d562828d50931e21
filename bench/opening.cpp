// Opening the editor: everything that is loaded until it is idle, and what it takes in memory.
#include "bare_odbc.h"
#include "editor_session.h"
#include "rows.h"

#include <malloc.h>

#include <memory>

namespace bench
{

namespace
{

std::size_t HeapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// What the settings alone take, in the collection and with the index by heading: values and all.
double BytesASetting()
{
    Site site("settings-1000000");
    double bytes = 0;
    site.Open(
        [&](editor::frmHeadings &form)
        {
            form.ShowSetting(-1, 0, 0);
            const auto count = static_cast<double>(model::gSettings->ColSettingInfo->Count());
            const std::size_t with = HeapInUse();
            model::gSettings = runtime::MakeRef<model::colSettings>();
            bytes = static_cast<double>(with - HeapInUse()) / count;
        });
    return bytes;
}

} // namespace

void AddOpeningRows()
{
    for (const char *const size : {"10000", "100000", "1000000"})
    {
        const std::string name = std::string("settings-") + size;
        AddRow(
            "open the editor", size, {.ratio = 1.25},
            [name]
            {
                Site site(name);
                return site.Open();
            },
            [name]
            {
                Site site(name, true);
                site.Open();
                const std::vector<std::string> queries = site.Sent();
                BareOdbc bare(site.File());
                return Time([&] { bare.Fetch(queries); });
            },
            3);
    }
    // Beyond the bare values: four 16-bit numbers and one of 32 bits.
    constexpr double kBareBytes = 12;
    AddBytesRow("memory a setting, beyond its values", "1000000", {.bytes = 64},
                [] { return BytesASetting() - kBareBytes; });
}

} // namespace bench
