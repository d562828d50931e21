// The rows of a statement, forward only, fetched in blocks.
#pragma once

#include "runtime/value.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace odbc
{

class RowReader;

// One column of the current row.
class rdoColumn
{
public:
    // The value as the database gives it: complete, whatever size the driver reports for the column.
    runtime::Value Value() const;

    bool IsNull() const;

    // The value as a 16- or 32-bit integer or a text; errors 94 for NULL, 6, 13. The same as converting Value(),
    // without the detour.
    std::int16_t Integer() const;
    std::int32_t Long() const;
    std::string Text() const;

    // True exactly when the value equals 1.
    bool IsOne() const;

private:
    friend class rdoResultset;
    rdoColumn(const RowReader &reader, int index) : m_reader(&reader), m_index(index) {}
    const RowReader *m_reader;
    int m_index;
};

// A result set is closed by Close, by its end of life, and by the next statement of its connection; reading a closed
// one is the error 91.
class rdoResultset
{
public:
    explicit rdoResultset(std::unique_ptr<RowReader> reader);
    ~rdoResultset();
    rdoResultset(const rdoResultset &) = delete;
    rdoResultset &operator=(const rdoResultset &) = delete;

    // True after the last row.
    bool AtEnd() const;

    // Goes to the next row. An error of the fetch, or of a later statement of the batch, is raised.
    void MoveNext();

    // A column by its place (from 0) or by its name, without regard to case. Error 40041 when there is none, 40009 when
    // there is no current row.
    rdoColumn rdoColumns(int index) const;
    rdoColumn rdoColumns(std::string_view name) const;

    // Ends the statement. Rows and results that were not read are dropped.
    void Close();

private:
    std::unique_ptr<RowReader> m_reader;
};

} // namespace odbc
