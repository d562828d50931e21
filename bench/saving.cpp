// Saving 5,000 changed records, beside the same statements sent bare.
#include "bare_odbc.h"
#include "editor_session.h"
#include "rows.h"
#include "store/modDataActivity.h"

namespace bench
{

namespace
{

constexpr std::int64_t kRecords = 5000;

void ChangeHeadings()
{
    std::int64_t left = kRecords;
    auto &partitions = *model::gPartitions->m_colPartitions;
    for (std::int64_t p = 1; p <= static_cast<std::int64_t>(partitions.Count()); ++p)
    {
        auto &headings = *partitions.Item(p)->m_objcolHeadings->ColHeadingInfo;
        for (std::int64_t h = 1; h <= static_cast<std::int64_t>(headings.Count()) && left > 0; ++h, --left)
            headings.Item(h)->HasChanged = true;
    }
}

double Save()
{
    Site site("lists");
    double seconds = 0;
    site.Open(
        [&](editor::frmHeadings &)
        {
            ChangeHeadings();
            seconds = Time([] { store::SaveAll(); });
        });
    return seconds;
}

double SendBare()
{
    std::vector<std::string> statements;
    {
        Site site("lists", true);
        site.Open(
            [&](editor::frmHeadings &)
            {
                ChangeHeadings();
                site.Sent();
                store::SaveAll();
                statements = site.Sent();
            });
    }
    Site site("lists");
    BareOdbc bare(site.File());
    return Time([&] { bare.Execute(statements); });
}

} // namespace

void AddSavingRows()
{
    AddRow("save changed records", "5000", {.ratio = 1.05}, Save, SendBare);
}

} // namespace bench
