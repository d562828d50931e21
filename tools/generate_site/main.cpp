// generate_site: writes the rows of a made-up site as T-SQL to standard output, for sqlbatch to load behind tables.sql.
#include "site.h"

#include <charconv>
#include <cstdio>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace
{

constexpr const char *Usage =
    R"(usage: generate_site [--settings N] [--headings N] [--formats N] [--partitions N] [--accounts N]
                     [--report-types N] [--seed N] [--rows-per-insert N]
Writes INSERT statements for the tables of tables.sql: 10,000 settings over 20,000 headings, 5,000 formats,
200 partitions and 2,000 accounts with 40 report types each, unless told otherwise. The same numbers give the same text.
  sqlbatch --quiet --database site.db --create tables.sql && generate_site | sqlbatch --quiet --database site.db -
)";

class Output : public generate_site::Sink
{
public:
    void Write(const std::string &text) override
    {
        if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
            throw std::runtime_error("standard output cannot be written");
    }
};

int Misuse(const char *reason)
{
    std::fprintf(stderr, "generate_site: %s\n%s", reason, Usage);
    return 2;
}

// Sets what an option names. False: there is no such option.
bool Set(generate_site::Size &size, std::string_view name, long long number)
{
    using generate_site::Size;
    static constexpr std::pair<std::string_view, int Size::*> kNumbers[] = {
        {"--headings", &Size::headings},        {"--formats", &Size::formats},
        {"--partitions", &Size::partitions},    {"--accounts", &Size::accounts},
        {"--report-types", &Size::reportTypes}, {"--rows-per-insert", &Size::rowsPerInsert}};
    for (const auto &[option, field] : kNumbers)
        if (option == name)
        {
            size.*field = static_cast<int>(number);
            return true;
        }
    if (name == "--settings")
        size.settings = number;
    else if (name == "--seed")
        size.seed = static_cast<unsigned>(number);
    else
        return false;
    return true;
}

int Write(const generate_site::Size &size)
{
    try
    {
        Output output;
        generate_site::WriteSite(size, output);
        return std::fflush(stdout) == 0 ? 0 : 1;
    }
    catch (const std::invalid_argument &error)
    {
        return Misuse(error.what());
    }
    catch (const std::exception &error)
    {
        std::fprintf(stderr, "generate_site: %s\n", error.what());
        return 1;
    }
}

} // namespace

int main(int count, char **values)
{
    generate_site::Size size;
    for (int i = 1; i < count; i += 2)
    {
        const std::string_view name = values[i];
        if (name == "--help")
        {
            std::fputs(Usage, stdout);
            return 0;
        }
        if (i + 1 == count)
            return Misuse("an option needs a value");
        const std::string_view text = values[i + 1];
        long long number = 0;
        const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
        if (error != std::errc() || end != text.data() + text.size() || number < 0 || number > 1000000000)
            return Misuse("a value is not a number");
        if (!Set(size, name, number))
            return Misuse("unknown option");
    }
    return Write(size);
}
