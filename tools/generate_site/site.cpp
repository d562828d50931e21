// A made-up site of any size: see site.h.
#include "site.h"

#include "inserts.h"

#include <array>
#include <numeric>
#include <random>
#include <stdexcept>
#include <vector>

namespace generate_site
{
namespace
{

constexpr int LargestId = 32767;
constexpr int ChildrenPerPartition = 6;

std::string Text(std::string_view text)
{
    return "'" + std::string(text) + "'";
}

template <class... Values>
std::string Join(const Values &...values)
{
    std::string out;
    const auto add = [&](const auto &value)
    {
        out += out.empty() ? "" : ", ";
        if constexpr (std::is_arithmetic_v<std::decay_t<decltype(value)>>)
            out += std::to_string(value);
        else
            out += value;
    };
    (add(values), ...);
    return out;
}

// The words of headings; every number gives another text.
std::string HeadingText(int number)
{
    static constexpr std::array places = {"LEFT",   "RIGHT",   "UPPER",    "LOWER",  "ANTERIOR", "POSTERIOR",
                                          "MEDIAL", "LATERAL", "PROXIMAL", "DISTAL", "INITIAL",  "FINAL"};
    static constexpr std::array organs = {"LUNG",  "KIDNEY", "VENTRICLE", "ATRIUM", "KNEE",   "SHOULDER", "BREAST",
                                          "LIVER", "ORBIT",  "BRAIN",     "SPINE",  "PELVIS", "THYROID",  "COLON"};
    static constexpr std::array kinds = {"FINDINGS",   "HISTORY",   "TECHNIQUE", "IMPRESSION", "MEASUREMENTS",
                                         "COMPARISON", "PROCEDURE", "DIAGNOSIS", "SPECIMEN",   "RECOMMENDATION"};
    const int placeCount = static_cast<int>(places.size());
    const int organCount = static_cast<int>(organs.size());
    const int kindCount = static_cast<int>(kinds.size());
    int rest = number;
    std::string text = places[rest % placeCount];
    rest /= placeCount;
    text += std::string(" ") + organs[rest % organCount];
    rest /= organCount;
    text += std::string(" ") + kinds[rest % kindCount];
    rest /= kindCount;
    return rest == 0 ? text : text + " " + std::to_string(rest + 1);
}

class Writer
{
public:
    Writer(const Size &size, Sink &sink) : m_size(size), m_sink(sink), m_random(size.seed) {}

    void WriteAll()
    {
        Partitions();
        Formats();
        Headings();
        Accounts();
        ReportTypes();
        Settings();
        Options();
    }

private:
    // uniform_int_distribution differs between libraries
    int Random(int below) { return static_cast<int>(m_random() % static_cast<unsigned>(below)); }
    int Flag() { return Random(2); }
    int PartitionOf(int number) const { return 1 + number % m_size.partitions; }
    Inserts Into(std::string_view tableAndColumns) { return {m_sink, tableAndColumns, m_size.rowsPerInsert}; }

    void Partitions()
    {
        Inserts rows = Into("System_partitions (partition_id, partition_name, lineage, delete_date)");
        std::vector<std::string> lineages(static_cast<std::size_t>(m_size.partitions) + 1);
        for (int id = 1; id <= m_size.partitions; ++id)
        {
            const int parent = (id - 2) / ChildrenPerPartition + 1;
            std::string &lineage = lineages[static_cast<std::size_t>(id)];
            lineage = id == 1 ? "/" : lineages[static_cast<std::size_t>(parent)] + std::to_string(parent) + "/";
            const bool hasChildren = (id - 1) * ChildrenPerPartition + 2 <= m_size.partitions;
            const bool isDeleted = !hasChildren && id > 1 && Random(50) == 0;
            rows.Row(Join(id, Text("Partition " + std::to_string(id)), Text(lineage),
                          std::string(isDeleted ? "'2003-01-31T00:00:00'" : "NULL")));
        }
        rows.End();
    }

    void Formats()
    {
        Inserts rows =
            Into("Report_header_formats (format_id, format_name, insert_empty_line_before, "
                 "insert_carriage_return_after, insert_colon, bold, underline, indent, system_format, flag1)");
        static constexpr std::array system = {"Default", "Own Line", "Run In", "Plain Text", "Title", "Subheading"};
        for (int id = 0; id < m_size.formats; ++id)
        {
            const bool isSystem = id < static_cast<int>(system.size());
            const std::string name = isSystem ? system[static_cast<std::size_t>(id)] : "Format " + std::to_string(id);
            rows.Row(Join(id, Text(name), Flag(), Flag(), Flag(), Flag(), Flag(), Flag(), isSystem ? 1 : 0,
                          isSystem ? 1 : PartitionOf(id)));
        }
        rows.End();
    }

    void Headings()
    {
        Inserts rows = Into("Report_headers (heading_id, heading, flag1)");
        rows.Row(Join(0, Text("<Default>"), 1));
        for (int id = 1; id < m_size.headings; ++id)
            rows.Row(Join(id, Text(HeadingText(id)), PartitionOf(id)));
        rows.End();
    }

    void Accounts()
    {
        Inserts rows = Into("account_info (hosp_acct_id, hosp_acct_name, is_deleted, partition_id)");
        rows.Row(Join(-1, Text("All Accounts"), Text("0"), 0));
        for (int id = 1; id <= m_size.accounts; ++id)
            rows.Row(
                Join(id, Text("Account " + std::to_string(id)), Text(Random(100) == 0 ? "1" : "0"), PartitionOf(id)));
        rows.End();
    }

    void ReportTypes()
    {
        Inserts rows = Into("reports_cfg (report_type_nbr, report_name, hosp_acct_id, is_deleted)");
        rows.Row(Join(0, Text("Report Default"), -1, Text("0")));
        for (int account = 1; account <= m_size.accounts; ++account)
            for (int type = 0; type <= m_size.reportTypes; ++type)
                rows.Row(Join(type, Text(type == 0 ? "Report Default" : "Report Type " + std::to_string(type)), account,
                              Text(type > 0 && Random(100) == 0 ? "1" : "0")));
        rows.End();
    }

    // One in ten is for all accounts of a partition. Each half walks all its combinations with a stride that shares no
    // divisor with their number, so that none comes twice and all headings get some.
    void Settings()
    {
        const std::int64_t accountRows = std::int64_t{m_size.accounts} * (m_size.reportTypes + 1) * m_size.headings;
        const std::int64_t partitionRows = std::int64_t{m_size.partitions} * m_size.headings;
        const std::int64_t forAll = std::min(m_size.settings / 10, partitionRows);
        if (m_size.settings - forAll > accountRows)
            throw std::invalid_argument("there are not that many combinations of heading, account and report type");
        Inserts rows = Into("Report_header_settings (heading_id, hosp_acct_id, report_type_nbr, format_id, flag1)");
        Walk(forAll, partitionRows,
             [&](std::int64_t place)
             {
                 const auto heading = static_cast<int>(place % m_size.headings);
                 const auto partition = static_cast<int>(place / m_size.headings) + 1;
                 rows.Row(Join(heading, -1, 0, FormatOf(partition), partition));
             });
        Walk(m_size.settings - forAll, accountRows,
             [&](std::int64_t place)
             {
                 const auto heading = static_cast<int>(place % m_size.headings);
                 const auto rest = static_cast<int>(place / m_size.headings);
                 const int account = 1 + rest % m_size.accounts;
                 rows.Row(Join(heading, account, rest / m_size.accounts, FormatOf(PartitionOf(account)), 0));
             });
        rows.End();
    }

    template <class Each>
    static void Walk(std::int64_t count, std::int64_t places, Each &&each)
    {
        std::int64_t stride = places * 5 / 8 + 1;
        while (std::gcd(stride, places) != 1)
            ++stride;
        std::int64_t place = 0;
        for (std::int64_t i = 0; i < count; ++i, place = (place + stride) % places)
            each(place);
    }

    // One of the formats a partition owns, else one of the system's.
    int FormatOf(int partition)
    {
        const int own = m_size.formats < partition ? 0 : (m_size.formats - partition) / m_size.partitions + 1;
        const int chosen = own > 0 ? partition - 1 + m_size.partitions * Random(own) : 0;
        return chosen < 6 ? Random(std::min(6, m_size.formats)) : chosen;
    }

    void Options()
    {
        Inserts rows = Into("System_user_cfg (user_id, application_id, key_name, key_value, partition_id)");
        rows.Row(Join(-1, 1, Text("NextSRFormatID"), Text(std::to_string(m_size.formats - 1)), std::string("NULL")));
        rows.Row(Join(-1, 1, Text("NextSRHeaderID"), Text(std::to_string(m_size.headings - 1)), std::string("NULL")));
        for (int id = 1; id <= m_size.partitions; id += 2)
        {
            rows.Row(Join(-1, 1, Text("TagKnownHeadings"), Text(Flag() ? "True" : "False"), id));
            rows.Row(Join(-1, 1, Text("TagMixedCaseHeadings"), Text(Flag() ? "True" : "False"), id));
        }
        rows.End();
    }

    Size m_size;
    Sink &m_sink;
    std::mt19937 m_random;
};

} // namespace

void WriteSite(const Size &size, Sink &sink)
{
    const auto require = [](bool condition, const char *what)
    {
        if (!condition)
            throw std::invalid_argument(what);
    };
    require(size.headings >= 1 && size.headings <= LargestId + 1, "headings must be 1 to 32768");
    require(size.formats >= 1 && size.formats <= LargestId + 1, "formats must be 1 to 32768");
    require(size.accounts >= 1 && size.accounts <= LargestId, "accounts must be 1 to 32767");
    require(size.reportTypes >= 0 && size.reportTypes <= LargestId, "report types must be 0 to 32767");
    require(size.partitions >= 1, "there must be a partition");
    require(size.settings >= 0, "settings must not be below 0");
    require(size.rowsPerInsert >= 1 && size.rowsPerInsert <= 1000, "an INSERT takes 1 to 1000 rows");
    Writer(size, sink).WriteAll();
}

} // namespace generate_site
