// The log of statements and the list of faults: see watching.h.
#include "watching.h"

#include "escape.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <iterator>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace driver
{

namespace
{

// An empty list, which is the usual one, is not opened: every call of ODBC asks.
bool IsEmpty(const std::string &path)
{
    struct stat status;
    return stat(path.c_str(), &status) != 0 || status.st_size == 0;
}

// The file, locked against other processes for as long as this lives.
class LockedFile
{
public:
    explicit LockedFile(const std::string &path) : m_file(IsEmpty(path) ? -1 : open(path.c_str(), O_RDWR | O_CLOEXEC))
    {
        if (m_file >= 0)
            flock(m_file, LOCK_EX);
    }
    ~LockedFile()
    {
        if (m_file >= 0)
            close(m_file);
    }
    LockedFile(const LockedFile &) = delete;
    LockedFile &operator=(const LockedFile &) = delete;

    std::string Read() const
    {
        std::string text;
        char buffer[4096];
        for (ssize_t got; m_file >= 0 && (got = read(m_file, buffer, sizeof buffer)) > 0;)
            text.append(buffer, static_cast<size_t>(got));
        return text;
    }

    void Write(size_t offset, const std::string &text) const
    {
        if (pwrite(m_file, text.data(), text.size(), static_cast<off_t>(offset)) != static_cast<ssize_t>(text.size()))
            throw DriverError("HY000", "The fault list cannot be written");
    }

private:
    int m_file;
};

// A number of the list, lowered where it stands: it keeps its width, so that the lines behind it keep their places.
struct Counter
{
    size_t offset = 0;
    size_t width = 0;
    long value = 0;

    void Lower(const LockedFile &file) const
    {
        std::string digits = std::to_string(value - 1);
        digits.insert(0, width - std::min(width, digits.size()), '0');
        file.Write(offset, digits);
    }
};

// One line of the list that still has something to do.
struct Order : Fault
{
    Counter pass; // events that are let through first
    Counter count;
    bool isCall = false;
    std::string text;
};

// Takes the front off when it is this one.
bool TakeOff(std::string_view &text, std::string_view front)
{
    const bool found = text.substr(0, front.size()) == front;
    text.remove_prefix(found ? front.size() : 0);
    return found;
}

// Up to the separator, or all of it; takes that off, the separator as well.
std::string TakeField(std::string_view &text, char separator)
{
    const std::string field(text.substr(0, text.find(separator)));
    text.remove_prefix(std::min(field.size() + 1, text.size()));
    return field;
}

Counter TakeCounter(std::string_view &text, char separator, const std::string &list)
{
    const auto offset = static_cast<size_t>(text.data() - list.data());
    const std::string digits = TakeField(text, separator);
    return {offset, digits.size(), std::atol(digits.c_str())};
}

Order ReadOrder(std::string_view line, const std::string &list)
{
    static constexpr std::string_view times[] = {"before", "after", "row", "end", "delay", "idle"}; // of Fault::Time
    Order order;
    if (line.substr(0, line.find('\t')).find('+') != std::string_view::npos)
        order.pass = TakeCounter(line, '+', list);
    order.count = TakeCounter(line, '\t', list); // 0 of comments and empty lines
    if (order.count.value <= 0)
        return order;
    order.cut = TakeOff(line, "cut-");
    order.isCall = TakeOff(line, "call-");
    const std::string when = TakeField(line, '\t');
    const auto time = std::find(std::begin(times), std::end(times), when.substr(0, when.find(':')));
    if (time == std::end(times))
        throw DriverError("HY000", "The fault list has a line with an unknown time \"" + when + "\"");
    order.time = static_cast<Fault::Time>(time - std::begin(times));
    order.number = std::atoll(when.c_str() + std::min(time->size() + 1, when.size()));
    order.cut |= order.time == Fault::Idle;
    order.text = Unescape(TakeField(line, '\t'));
    const std::string state = TakeField(line, '\t');
    const std::string native = TakeField(line, '\t');
    if (state.empty())
        order.record = MakeRecord("08S01", 0, "Communication link failure");
    else
        order.record = {state, std::atoi(native.c_str()), Unescape(TakeField(line, '\r'))};
    return order;
}

std::vector<Order> ReadOrders(const LockedFile &file)
{
    const std::string list = file.Read();
    std::vector<Order> orders;
    for (size_t start = 0, end = 0; start < list.size(); start = end + 1)
    {
        end = std::min(list.find('\n', start), list.size());
        if (Order order = ReadOrder(std::string_view(list).substr(start, end - start), list); order.count.value > 0)
            orders.push_back(std::move(order));
    }
    return orders;
}

bool Means(const Order &order, bool isCall, std::string_view text)
{
    if (order.isCall != isCall || order.time == Fault::Idle)
        return false;
    return isCall ? order.text.empty() || order.text == text : text.find(order.text) != std::string_view::npos;
}

} // namespace

StatementLog::StatementLog(const std::string &path, std::string_view application)
{
    if (path.empty())
        return;
    static std::atomic<int> connections{0};
    m_file = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    m_prefix =
        "\t" + std::to_string(getpid()) + "." + std::to_string(++connections) + "\t" + Escape(application) + "\t";
}

StatementLog::~StatementLog()
{
    if (m_file >= 0)
        close(m_file);
}

void StatementLog::Write(std::string_view kind, std::string_view text)
{
    if (m_file < 0)
        return;
    const std::string line = std::string(kind) + m_prefix + Escape(text) + "\n";
    // a log that cannot be written (full disk) must not fail the statement
    [[maybe_unused]] const ssize_t written = write(m_file, line.data(), line.size());
}

std::optional<Fault> FaultList::Take(bool isCall, std::string_view text) const
{
    if (m_path.empty())
        return std::nullopt;
    std::optional<Fault> fault;
    std::chrono::milliseconds delay{0};
    {
        const LockedFile file(m_path);
        for (const Order &order : ReadOrders(file))
        {
            if (fault || !Means(order, isCall, text))
                continue;
            const bool passes = order.pass.value > 0;
            (passes ? order.pass : order.count).Lower(file);
            if (!passes && order.time == Fault::Delay)
                delay += std::chrono::milliseconds(order.number);
            else if (!passes)
                fault = order;
        }
    }
    std::this_thread::sleep_for(delay);
    return fault;
}

long long FaultList::LastCut() const
{
    long long last = 0;
    if (!m_path.empty())
        for (const Order &order : ReadOrders(LockedFile(m_path)))
            if (order.time == Fault::Idle)
                last = std::max(last, order.number);
    return last;
}

std::optional<Fault> FaultList::TakeCut(long long seen) const
{
    if (m_path.empty())
        return std::nullopt;
    const LockedFile file(m_path);
    for (const Order &order : ReadOrders(file))
        if (order.time == Fault::Idle && order.number > seen)
        {
            order.count.Lower(file);
            return order;
        }
    return std::nullopt;
}

} // namespace driver
