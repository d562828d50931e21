// The log of statements and the list of faults: see watching.h.
#include "watching.h"

#include "escape.h"
#include "text.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <iterator>
#include <thread>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace driver
{
namespace
{

// The file, locked against other processes for as long as this lives.
class LockedFile
{
public:
    explicit LockedFile(const std::string &path) : m_file(open(path.c_str(), O_RDWR | O_CLOEXEC))
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
struct Order
{
    Counter pass; // events that are let through first
    Counter count;
    bool isCall = false;
    std::string_view when; // without "cut-" and "call-"
    long long number = 0;  // behind ":"
    std::string text;
    Fault fault;
};

// Takes the front off when it is this one.
bool TakeOff(std::string_view &text, std::string_view front)
{
    const bool found = text.substr(0, front.size()) == front;
    text.remove_prefix(found ? front.size() : 0);
    return found;
}

// Up to the separator, or all of it; takes that off, the separator as well.
std::string_view TakeField(std::string_view &text, char separator)
{
    const std::string_view field = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(field.size() + 1, text.size()));
    return field;
}

Counter CounterAt(std::string_view digits, const std::string &list)
{
    return {static_cast<size_t>(digits.data() - list.data()), digits.size(), std::atol(std::string(digits).c_str())};
}

Order ReadOrder(std::string_view line, const std::string &list)
{
    Order order;
    std::string_view counts = TakeField(line, '\t');
    if (counts.find('+') != std::string_view::npos)
        order.pass = CounterAt(TakeField(counts, '+'), list);
    order.count = CounterAt(counts, list); // 0 of comments and empty lines
    if (order.count.value <= 0)
        return order;
    std::string_view when = TakeField(line, '\t');
    order.fault.cut = TakeOff(when, "cut-");
    order.isCall = TakeOff(when, "call-");
    order.when = TakeField(when, ':');
    order.number = std::atoll(std::string(when).c_str());
    order.text = Unescape(TakeField(line, '\t'));
    const std::string state(TakeField(line, '\t'));
    const std::string native(TakeField(line, '\t'));
    if (state.empty())
        order.fault.record = MakeRecord("08S01", 0, "Communication link failure");
    else
        order.fault.record = {state, std::atoi(native.c_str()), Unescape(TakeField(line, '\r'))};
    order.fault.row = order.number;
    order.fault.time = order.when == "row"     ? Fault::AtRow
                       : order.when == "after" ? Fault::After
                       : order.when == "end"   ? Fault::AtEnd
                                               : Fault::Before;
    order.fault.cut |= order.when == "idle";
    static constexpr std::string_view known[] = {"before", "after", "row", "end", "delay", "idle"};
    if (std::find(std::begin(known), std::end(known), order.when) == std::end(known))
        throw DriverError("HY000",
                          "The fault list has a line with an unknown time \"" + std::string(order.when) + "\"");
    return order;
}

std::vector<Order> ReadOrders(const std::string &list)
{
    std::vector<Order> orders;
    for (std::string_view rest = list; !rest.empty();)
        if (Order order = ReadOrder(TakeField(rest, '\n'), list); order.count.value > 0)
            orders.push_back(std::move(order));
    return orders;
}

bool Means(const Order &order, FaultList::Event event, std::string_view text)
{
    if (order.when == "idle" || order.isCall != (event == FaultList::Call))
        return false;
    return order.isCall ? order.text.empty() || order.text == text : text.find(order.text) != std::string_view::npos;
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

std::optional<Fault> FaultList::Take(Event event, std::string_view text) const
{
    if (m_path.empty())
        return std::nullopt;
    std::optional<Fault> fault;
    std::chrono::milliseconds delay{0};
    {
        const LockedFile file(m_path);
        const std::string list = file.Read();
        for (const Order &order : ReadOrders(list))
        {
            if (!Means(order, event, text))
                continue;
            const bool passes = order.pass.value > 0;
            (passes ? order.pass : order.count).Lower(file);
            if (passes)
                continue;
            if (order.when != "delay")
            {
                fault = order.fault;
                break;
            }
            delay += std::chrono::milliseconds(order.number);
        }
    }
    std::this_thread::sleep_for(delay);
    return fault;
}

long long FaultList::LastCut() const
{
    const std::string list = m_path.empty() ? "" : LockedFile(m_path).Read();
    long long last = 0;
    for (const Order &order : ReadOrders(list))
        if (order.when == "idle")
            last = std::max(last, order.number);
    return last;
}

std::optional<Fault> FaultList::TakeCut(long long seen) const
{
    if (m_path.empty())
        return std::nullopt;
    const LockedFile file(m_path);
    const std::string list = file.Read();
    for (const Order &order : ReadOrders(list))
        if (order.when == "idle" && order.number > seen)
        {
            order.count.Lower(file);
            return order.fault;
        }
    return std::nullopt;
}

} // namespace driver
