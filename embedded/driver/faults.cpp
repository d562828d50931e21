// The list of failures: see faults.h.
#include "faults.h"

#include "escape.h"

#include <algorithm>
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

// A number of the list. It keeps its width when it is lowered, so that the lines behind it keep their places.
struct Counter
{
    size_t offset = 0;
    size_t width = 0;
    long value = 0;
};

// One line of the list that still has something to do.
struct Order : Fault
{
    Counter pass; // events that are let through first
    Counter count;
    bool isCall = false;
    std::string text;

    bool Means(FaultList::Event event, std::string_view what) const
    {
        if (time == Idle || event == FaultList::Idling)
            return time == Idle && event == FaultList::Idling;
        if (isCall != (event == FaultList::Call))
            return false;
        return isCall ? text.empty() || text == what : what.find(text) != std::string_view::npos;
    }
};

// Up to the separator, or all of it; takes that off, the separator as well.
std::string_view TakeField(std::string_view &text, char separator)
{
    const std::string_view field = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(field.size() + 1, text.size()));
    return field;
}

// The file, locked against other processes for as long as this lives.
class LockedList
{
public:
    explicit LockedList(const std::string &path)
    {
        // an empty list, which is the usual one, is not opened: every call of ODBC asks
        if (struct stat status; stat(path.c_str(), &status) == 0 && status.st_size > 0)
            m_file = open(path.c_str(), O_RDWR | O_CLOEXEC);
        if (m_file < 0)
            return;
        flock(m_file, LOCK_EX);
        char buffer[4096];
        for (ssize_t got; (got = read(m_file, buffer, sizeof buffer)) > 0;)
            m_text.append(buffer, static_cast<size_t>(got));
    }
    ~LockedList()
    {
        if (m_file >= 0)
            close(m_file);
    }
    LockedList(const LockedList &) = delete;
    LockedList &operator=(const LockedList &) = delete;

    std::vector<Order> Orders() const
    {
        std::vector<Order> orders;
        for (std::string_view rest = m_text; !rest.empty();)
            if (Order order = Read(TakeField(rest, '\n')); order.count.value > 0)
                orders.push_back(std::move(order));
        return orders;
    }

    void Lower(const Counter &counter) const
    {
        const std::string bare = std::to_string(counter.value - 1);
        const std::string digits = std::string(counter.width - std::min(counter.width, bare.size()), '0') + bare;
        if (pwrite(m_file, digits.data(), digits.size(), static_cast<off_t>(counter.offset)) < 0)
            throw DriverError("HY000", "The fault list cannot be written");
    }

private:
    Counter Number(std::string_view digits) const
    {
        return {static_cast<size_t>(digits.data() - m_text.data()), digits.size(),
                std::atol(std::string(digits).c_str())};
    }

    Order Read(std::string_view line) const
    {
        static constexpr std::string_view times[] = {"before", "after", "row",
                                                     "end",    "delay", "idle"}; // of Fault::Time
        Order order;
        std::string_view counts = TakeField(line, '\t');
        if (counts.find('+') != std::string_view::npos)
            order.pass = Number(TakeField(counts, '+'));
        order.count = Number(counts); // 0 of comments and empty lines
        if (order.count.value <= 0)
            return order;
        order.cut = line.starts_with("cut-");
        line.remove_prefix(order.cut ? 4 : 0);
        order.isCall = line.starts_with("call-");
        line.remove_prefix(order.isCall ? 5 : 0);
        std::string_view number = TakeField(line, '\t');
        const std::string_view when = TakeField(number, ':');
        const auto time = std::find(std::begin(times), std::end(times), when);
        if (time == std::end(times))
            throw DriverError("HY000", "The fault list has a line with an unknown time \"" + std::string(when) + "\"");
        order.time = static_cast<Fault::Time>(time - std::begin(times));
        order.number = Number(number).value;
        order.cut |= order.time == Fault::Idle;
        order.text = Unescape(TakeField(line, '\t'));
        const std::string state(TakeField(line, '\t'));
        const auto native = static_cast<int>(Number(TakeField(line, '\t')).value);
        if (state.empty())
            order.record = MakeRecord("08S01", 0, "Communication link failure");
        else
            order.record = {state, native, Unescape(TakeField(line, '\r'))};
        return order;
    }

    int m_file = -1;
    std::string m_text;
};

} // namespace

FaultList::FaultList(const std::string &path) : m_path(path)
{
    for (const Order &order : LockedList(path).Orders())
        if (order.time == Fault::Idle)
            m_lastCut = std::max(m_lastCut, order.number);
}

std::optional<Fault> FaultList::Take(Event event, std::string_view text) const
{
    std::optional<Fault> fault;
    std::chrono::milliseconds delay{0};
    {
        const LockedList list(m_path);
        for (const Order &order : list.Orders())
        {
            if (fault || !order.Means(event, text) || (event == Idling && order.number <= m_lastCut))
                continue;
            const bool passes = order.pass.value > 0;
            list.Lower(passes ? order.pass : order.count);
            if (!passes && order.time == Fault::Delay)
                delay += std::chrono::milliseconds(order.number);
            else if (!passes)
                fault = order;
        }
    }
    std::this_thread::sleep_for(delay);
    return fault;
}

} // namespace driver
