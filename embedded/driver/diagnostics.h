// What a failed call leaves behind for SQLGetDiagRec: the error thrown inside the driver and the records of a handle.
#pragma once

#include "odbc.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace driver
{

struct DiagnosticRecord
{
    std::string state; // SQLSTATE, five characters
    int native = 0;    // the server's error number, 0 when the driver itself complains
    std::string text;  // UTF-8, complete with its prefix
};

// The prefix of every message, in the manner "[vendor][driver][server]". The same for all, so that texts are constant.
inline constexpr std::string_view MessagePrefix = "[KVHEADERS][Embedded Driver][SQL Server]";

DiagnosticRecord MakeRecord(std::string_view state, int native, std::string_view text);

// A failure with its records, the first being the telling one in most cases.
class DriverError : public std::runtime_error
{
public:
    DriverError(std::string_view state, std::string_view text, int native = 0);
    explicit DriverError(std::vector<DiagnosticRecord> records);

    const std::vector<DiagnosticRecord> &Records() const noexcept { return m_records; }

private:
    std::vector<DiagnosticRecord> m_records;
};

// The records of one handle, those of its last call only.
class Diagnostics
{
public:
    void Clear();
    void Add(DiagnosticRecord record) { m_records.push_back(std::move(record)); }
    void Warn(std::string_view state, std::string_view text) { Add(MakeRecord(state, 0, text)); }
    void SetReturnCode(SQLRETURN code) { m_returnCode = code; }
    SQLRETURN ReturnCode() const { return m_returnCode; }
    const std::vector<DiagnosticRecord> &Records() const { return m_records; }

private:
    std::vector<DiagnosticRecord> m_records;
    SQLRETURN m_returnCode = SQL_SUCCESS;
};

// "STATE: text" of the first record whose state is not a warning, else of the first one; as a client would show it.
std::string Describe(const std::vector<DiagnosticRecord> &records);

} // namespace driver
