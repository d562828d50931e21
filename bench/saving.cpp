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
constexpr char kSite[] = "lists-10000";

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
    Site site(kSite);
    double seconds = 0;
    site.WhileOpen(
        [&](editor::frmHeadings &)
        {
            ChangeHeadings();
            seconds = Time([] { store::SaveAll(); });
        });
    return seconds;
}

// What the save pass sends.
std::vector<std::string> Statements()
{
    std::vector<std::string> statements;
    Site site(kSite, true);
    site.WhileOpen(
        [&](editor::frmHeadings &)
        {
            ChangeHeadings();
            site.Sent();
            store::SaveAll();
            statements = site.Sent();
        });
    return statements;
}

double SendBare()
{
    static const std::vector<std::string> statements = Statements();
    Site site(kSite);
    BareOdbc bare(site.File());
    return TimeBare([&] { bare.Execute(statements); });
}

} // namespace

void AddSavingRows()
{
    AddRow("save changed records", "5000", {.ratio = 1.05}, Save, SendBare, 7);
}

} // namespace bench
