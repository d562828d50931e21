// The handles that callers hold: see handles.h.
#include "handles.h"

#include "tsql/session.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <unordered_map>

namespace driver
{
namespace
{

struct Table
{
    std::mutex lock;
    std::unordered_map<std::uintptr_t, std::shared_ptr<Handle>> objects;
    std::uintptr_t last = 0x1000;
};

// Never destroyed: a host may still free handles while the process ends.
Table &TheTable()
{
    static Table *const table = new Table;
    return *table;
}

} // namespace

DiagnosticRecord MakeRecord(std::string_view state, int native, std::string_view text)
{
    return {std::string(state), native, std::string("[KVHEADERS][Embedded Driver][SQL Server]").append(text)};
}

std::string Describe(const Records &records)
{
    const auto telling =
        std::find_if(records.begin(), records.end(), [](const auto &r) { return r.state.compare(0, 2, "01") != 0; });
    const DiagnosticRecord &record = telling == records.end() ? records.at(0) : *telling;
    return record.state + ": " + record.text;
}

Records RecordsOfCurrentException()
{
    try
    {
        throw;
    }
    catch (const DriverError &error)
    {
        return error.GetRecords();
    }
    catch (const tsql::SqlError &error)
    {
        return {MakeRecord(error.State(), error.Number(), error.what())};
    }
    catch (const std::exception &error)
    {
        return {MakeRecord("HY000", 0, error.what())};
    }
}

SQLHANDLE RegisterHandle(std::shared_ptr<Handle> object)
{
    Table &table = TheTable();
    const std::lock_guard hold(table.lock);
    table.last += 8;
    table.objects.emplace(table.last, std::move(object));
    return reinterpret_cast<SQLHANDLE>(table.last);
}

std::shared_ptr<Handle> FindHandle(SQLHANDLE handle)
{
    Table &table = TheTable();
    const std::lock_guard hold(table.lock);
    const auto found = table.objects.find(reinterpret_cast<std::uintptr_t>(handle));
    return found == table.objects.end() ? nullptr : found->second;
}

void RemoveHandle(SQLHANDLE handle)
{
    const std::shared_ptr<Handle> last = FindHandle(handle); // destroyed after the lock is given back
    Table &table = TheTable();
    const std::lock_guard hold(table.lock);
    table.objects.erase(reinterpret_cast<std::uintptr_t>(handle));
}

void RemoveHandlesUnder(const Handle &owner)
{
    Table &table = TheTable();
    std::vector<std::shared_ptr<Handle>> dropped; // destroyed after the lock is given back
    const std::lock_guard hold(table.lock);
    std::erase_if(table.objects,
                  [&](auto &entry)
                  {
                      const bool drop = entry.second.get() != &owner && entry.second->lock == owner.lock;
                      if (drop)
                          dropped.push_back(entry.second);
                      return drop;
                  });
}

std::string ToUtf8(const SQLWCHAR *text, SQLLEN length)
{
    if (length < 0 && length != SQL_NTS)
        throw DriverError("HY090", "Invalid string or buffer length");
    if (text == nullptr)
        return {};
    const auto *const units = reinterpret_cast<const char16_t *>(text);
    return runtime::FromUtf16(length == SQL_NTS ? std::u16string_view(units)
                                                : std::u16string_view(units, static_cast<size_t>(length)));
}

SQLLEN CopyOut(Handle &handle, std::string_view text, SQLPOINTER out, SQLLEN capacity)
{
    const std::u16string wide = runtime::ToUtf16(text);
    if (out != nullptr)
    {
        const size_t room = capacity > 0 ? static_cast<size_t>(capacity) : 0;
        const size_t count = room > 0 ? std::min(wide.size(), room - 1) : 0;
        std::memcpy(out, wide.c_str(), count * sizeof(SQLWCHAR)); // which need not be aligned
        if (room > 0)
            std::memset(static_cast<SQLWCHAR *>(out) + count, 0, sizeof(SQLWCHAR));
        if (count < wide.size())
            handle.Warn("01004", "String data, right truncation");
    }
    return static_cast<SQLLEN>(wide.size());
}

} // namespace driver
