// The handles that callers hold: see handles.h.
#include "handles.h"

#include "tsql/session.h"

#include <algorithm>
#include <cstdint>
#include <new>
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
    catch (const std::bad_alloc &)
    {
        return {MakeRecord("HY001", 0, "Memory allocation error")};
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

} // namespace driver
