// INSERT statements with many rows each.
#pragma once

#include "site.h"

#include <string_view>

namespace generate_site
{

// Rows of one table. Every `rowsPerInsert` rows become one statement and one batch; the destructor writes none: call
// End.
class Inserts
{
public:
    Inserts(Sink &sink, std::string_view tableAndColumns, int rowsPerInsert)
        : m_sink(sink), m_head("INSERT INTO " + std::string(tableAndColumns) + " VALUES\n"), m_most(rowsPerInsert)
    {
    }

    void Row(const std::string &values)
    {
        m_text += (m_rows == 0 ? m_head + "(" : ",\n(") + values + ")";
        if (++m_rows == m_most)
            End();
    }

    void End()
    {
        if (m_rows > 0)
            m_sink.Write(m_text + "\nGO\n");
        m_text.clear();
        m_rows = 0;
    }

private:
    Sink &m_sink;
    std::string m_head;
    std::string m_text;
    int m_most;
    int m_rows = 0;
};

} // namespace generate_site
