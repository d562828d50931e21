// Opening the editor: everything that is loaded until it is idle, and what it takes in memory.
#include "bare_odbc.h"
#include "editor_session.h"
#include "rows.h"

#include <malloc.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <memory>
#include <utility>

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
    site.WhileOpen(
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

// What the opening of a site sends.
const std::vector<std::string> &Queries(const std::string &name)
{
    static std::map<std::string, std::vector<std::string>> known;
    const auto [place, added] = known.try_emplace(name);
    if (added)
    {
        Site site(name, true);
        site.WhileOpen([](editor::frmHeadings &) {});
        place->second = site.Sent();
    }
    return place->second;
}

} // namespace

void AddOpeningRows()
{
    const std::pair<const char *, int> sizes[] = {{"10000", 15}, {"100000", 9}, {"1000000", 7}};
    for (const auto &[size, runs] : sizes)
    {
        const std::string name = std::string("settings-") + size;
        AddRow(
            "open the editor", size, {.ratio = 1.25}, [name] { return Site(name).Open(); },
            [name]
            {
                const std::vector<std::string> &queries = Queries(name);
                BareOdbc bare(SiteFile(name));
                return TimeBare([&] { bare.Fetch(queries); });
            },
            runs);
    }
}

void AddSizeRows()
{
    // Beyond the bare values: four 16-bit numbers and one of 32 bits.
    constexpr double kBareBytes = 12;
    AddBytesRow("memory a setting, beyond its values", "1000000", {.bytes = 64},
                [] { return BytesASetting() - kBareBytes; });
    AddBytesRow("size of the stripped DLL", "-", {.bytes = 1e6},
                []
                {
                    const char *const file = std::getenv("KV_BENCH_DLL");
                    return file ? static_cast<double>(std::filesystem::file_size(file)) : 0;
                });
}

} // namespace bench
