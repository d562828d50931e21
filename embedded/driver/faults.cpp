// The list of failures: see faults.h.
#include "faults.h"

#include "escape.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <memory>
#include <thread>

#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace driver
{
namespace
{

// 0 for what is no number.
long long Number(std::string_view digits)
{
    long long number = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return number;
}

// Up to the separator, or all of it; takes that off, the separator as well.
std::string_view TakeField(std::string_view &text, char separator)
{
    const std::string_view field = text.substr(0, text.find(separator));
    text.remove_prefix(std::min(field.size() + 1, text.size()));
    return field;
}

// One line of the list that still has something to do. The counts stand where they are in the file's text.
struct Order : Fault
{
    std::string_view pass; // events that are let through first
    std::string_view count;
    FaultList::Event event = FaultList::Statement;
    std::string text;
};

Order ReadOrder(std::string_view line)
{
    static constexpr std::string_view times[] = {"before", "after", "row", "end", "delay", "idle"}; // of Fault::Time
    Order order;
    std::string_view fields[6];
    for (std::string_view &field : fields)
        field = TakeField(line, '\t');
    auto &[count, when, text, state, native, message] = fields;
    if (count.find('+') != std::string_view::npos)
        order.pass = TakeField(count, '+');
    order.count = count;
    if (Number(count) <= 0) // of comments and empty lines, too
        return order;
    order.cut = when.starts_with("cut-");
    when.remove_prefix(order.cut ? 4 : 0);
    const bool isCall = when.starts_with("call-");
    when.remove_prefix(isCall ? 5 : 0);
    const std::string_view name = TakeField(when, ':');
    const auto time = std::ranges::find(times, name);
    if (time == std::end(times))
        throw SqlError(0, "HY000", "The fault list has a line with an unknown time \"" + std::string(name) + "\"");
    order.time = static_cast<Fault::Time>(time - std::begin(times));
    order.number = Number(when);
    order.event = isCall ? FaultList::Call : order.time == Fault::Idle ? FaultList::Idling : FaultList::Statement;
    order.cut |= order.time == Fault::Idle;
    order.text = Unescape(text);
    if (!state.empty())
        order.record = SqlError(static_cast<int>(Number(native)), state, Unescape(TakeField(message, '\r')));
    return order;
}

// The file, locked against other processes for as long as this lives.
struct LockedList
{
    explicit LockedList(const std::string &path)
    {
        struct stat status;
        // an empty list, which is the usual one, is not opened: every call of ODBC asks
        if (!path.empty() && stat(path.c_str(), &status) == 0 && status.st_size > 0)
            file.reset(std::fopen(path.c_str(), "r+e"));
        if (file == nullptr)
            return;
        flock(fileno(file.get()), LOCK_EX);
        text.resize(static_cast<size_t>(status.st_size));
        text.resize(std::fread(text.data(), 1, text.size(), file.get()));
        for (std::string_view rest = text; !rest.empty();)
            if (Order order = ReadOrder(TakeField(rest, '\n')); Number(order.count) > 0)
                orders.push_back(std::move(order));
    }

    // A number keeps its width, so that the lines behind it keep their places.
    void Lower(std::string_view number) const
    {
        std::string digits = std::to_string(Number(number) - 1);
        digits.insert(0, number.size() - std::min(number.size(), digits.size()), '0');
        if (pwrite(fileno(file.get()), digits.data(), digits.size(), number.data() - text.data()) < 0)
            throw SqlError(0, "HY000", "The fault list cannot be written");
    }

    std::unique_ptr<std::FILE, int (*)(std::FILE *)> file{nullptr, std::fclose};
    std::string text;
    std::vector<Order> orders;
};

} // namespace

FaultList::FaultList(const std::string &path) : m_path(path)
{
    for (const Order &order : LockedList(path).orders)
        if (order.time == Fault::Idle)
            m_lastCut = std::max(m_lastCut, order.number);
}

std::optional<Fault> FaultList::Take(Event event, std::string_view text) const
{
    std::optional<Fault> fault;
    std::chrono::milliseconds delay{0};
    std::optional<LockedList> list(m_path);
    for (const Order &order : list->orders)
    {
        const bool isMeant = order.event == event && text.find(order.text) != std::string_view::npos;
        if (fault || !isMeant || (event == Idling && order.number <= m_lastCut))
            continue;
        const bool passes = Number(order.pass) > 0;
        list->Lower(passes ? order.pass : order.count);
        if (!passes && order.time == Fault::Delay)
            delay += std::chrono::milliseconds(order.number);
        else if (!passes)
            fault = order;
    }
    list.reset(); // nobody else waits
    std::this_thread::sleep_for(delay);
    return fault;
}

} // namespace driver
