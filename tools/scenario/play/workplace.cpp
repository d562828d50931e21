// The folder that one play works in: see workplace.h.
#include "play/workplace.h"

#include "driver/escape.h"
#include "script/failure.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <fstream>
#include <random>

namespace scenario
{

namespace
{

namespace fs = std::filesystem;

const std::string kRefusal = "call-before";

std::string FromEnvironment(const char *name, const std::string &otherwise)
{
    const char *const value = std::getenv(name);
    return value && *value ? value : otherwise;
}

fs::path MakeTemporaryFolder()
{
    std::random_device random;
    fs::path folder;
    do
        folder = fs::temp_directory_path() / ("scenario-" + std::to_string(random()));
    while (!fs::create_directory(folder));
    return folder;
}

#ifdef _WIN32

void EnterFolder(const fs::path &) {}
void LeaveFolder() {}
void PointOdbcTo(const fs::path &) {}

#else

// "C:\..." of the component is "C:/..." below the current folder here.
void EnterFolder(const fs::path &folder)
{
    fs::current_path(folder);
}

void LeaveFolder()
{
    std::error_code ignored;
    fs::current_path("/", ignored);
}

void PointOdbcTo(const fs::path &folder)
{
    setenv("ODBCSYSINI", folder.c_str(), 1);
    setenv("ODBCINI", (folder / "odbc.ini").c_str(), 1);
    unsetenv("KVEMBEDDED_LOG");
}

#endif

void Write(const fs::path &path, const std::string &text)
{
    std::ofstream file(path, std::ios::binary);
    file << text;
    if (!file.flush())
        throw Refusal("cannot write " + path.string());
}

bool StartsWithState(const std::string &message)
{
    constexpr std::size_t kLength = 5;
    return message.size() > kLength + 1 && message.compare(kLength, 2, ": ") == 0 &&
           std::all_of(message.begin(), message.begin() + kLength,
                       [](unsigned char c) { return std::isdigit(c) || std::isupper(c); });
}

} // namespace

fs::path FromUnix(const std::string &path)
{
#ifdef _WIN32
    return path.starts_with("/") ? "Z:" + path : path;
#else
    return path;
#endif
}

std::string ToUnix(const fs::path &path)
{
    std::string text = path.generic_string();
    if (text.size() > 1 && text[1] == ':' && (text[0] | 0x20) == 'z')
        text.erase(0, 2);
    return text;
}

Workplace::Workplace(const std::string &database, bool embedded)
{
    const std::string given = embedded ? FromEnvironment("KV_SCENARIO_FOLDER", "") : "";
#ifdef _WIN32
    if (embedded && given.empty())
        throw Refusal("KV_SCENARIO_FOLDER does not name a folder for the embedded database");
#endif
    m_temporary = given.empty();
    m_folder = m_temporary ? MakeTemporaryFolder() : FromUnix(given);
    m_database = database.empty() ? Path("scenario.db") : FromUnix(fs::absolute(database).generic_string());
    for (const char *const name : {"scenario.db", "scenario.db-wal", "scenario.db-shm"}) // of the play before
        fs::remove(Path(name));
    EnterFolder(m_folder);
    if (!embedded)
        return;
    PointOdbcTo(m_folder);
    WriteOdbcFiles();
}

Workplace::~Workplace()
{
    LeaveFolder();
    std::error_code ignored;
    if (m_temporary)
        fs::remove_all(m_folder, ignored);
}

std::string Workplace::DatabaseName() const
{
    return m_database == Path("scenario.db") ? "scenario" : ToUnix(m_database);
}

void Workplace::WriteOdbcFiles() const
{
    Write(Path("statements"), "");
    Write(Path("faults"), "");
    Write(Path("odbcinst.ini"), "[SQL Server]\nDriver=" + FromEnvironment("KVEMBEDDED_DRIVER", SCENARIO_DRIVER) +
                                    "\nFolder=" + ToUnix(m_folder) + "\nOnlyServer=" + kServer + "\nStatementLog=" +
                                    ToUnix(Path("statements")) + "\nFaultList=" + ToUnix(Path("faults")) + "\n");
    Write(Path("odbc.ini"), std::string("[") + kDataSource + "]\nDriver=SQL Server\nServer=" + kServer +
                                "\nDatabase=" + DatabaseName() + "\n");
}

void Workplace::Fail(int count, const std::string &text, const std::string &message) const
{
    const bool hasState = StartsWithState(message);
    Order(std::to_string(count), "before", text, hasState ? message.substr(0, 5) : "42000",
          hasState ? message.substr(7) : message);
}

void Workplace::Cut(const std::string &state, const std::string &text)
{
    constexpr char kMessage[] = "Communication link failure";
    if (text.empty())
        Order("999999999", "idle:" + std::to_string(++m_idleCuts), text, state, kMessage);
    else
        Order("1", "cut-before", text, state, kMessage);
}

void Workplace::RefuseConnects(int count) const
{
    Order(std::to_string(count), kRefusal, "SQLDriverConnect", "08001", "SQL Server does not exist or access denied.");
}

// The driver may be writing its counts into the list: only those of the refusals are set to zero, in place.
void Workplace::AllowConnects() const
{
    std::fstream list(Path("faults"), std::ios::binary | std::ios::in | std::ios::out);
    std::string line;
    for (auto start = list.tellg(); std::getline(list, line); start = list.tellg())
    {
        const std::size_t count = line.find('\t');
        if (line.compare(count + 1, kRefusal.size(), kRefusal) != 0)
            continue;
        const auto next = list.tellg();
        list.seekp(start);
        list << std::string(count, '0');
        list.seekg(next);
    }
}

void Workplace::Order(const std::string &count, const std::string &when, const std::string &text,
                      const std::string &state, const std::string &message) const
{
    std::ofstream file(Path("faults"), std::ios::binary | std::ios::app);
    file << count << "\t" << when << "\t" << driver::Escape(text) << "\t" << state << "\t0\t" << driver::Escape(message)
         << "\n";
    if (!file.flush())
        throw Refusal("the fault list cannot be written");
}

} // namespace scenario
