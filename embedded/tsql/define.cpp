// CREATE and DROP of tables and indexes.
#include "rewrite.h"

#include "errors.h"

namespace tsql
{

std::string Rewriter::Define()
{
    return Is(m_first, "DROP") ? Drop() : Is(m_first + 1, "TABLE") ? CreateTable() : CreateIndex();
}

void Rewriter::Declare(Variables &variables)
{
    Place at = m_first;
    do
    {
        const Token &name = m_tokens[++at];
        if (name.kind != TokenKind::Variable)
            RefuseToken(m_tokens, at, true);
        at += Is(++at, "AS") ? 1 : 0;
        if (!variables.try_emplace(Small(name.text), ReadType(at)).second)
            Raise(134, {name.text});
    } while (Is(at, ","));
    End(at);
}

std::string Rewriter::CreateTable()
{
    Place at = m_first;
    Expect(at, "CREATE");
    Expect(at, "TABLE");
    const std::string table = TakeName(at);
    if (m_catalog.Find(table))
        Raise(2714, {table});
    Expect(at, "(");
    do
    {
        if (Key(at))
            ColumnList(at);
        else
            CreateColumn(at);
    } while (Accept(at, ","));
    Expect(at, ")");
    return End(at);
}

// PRIMARY KEY or UNIQUE; how the server lays it down makes no difference here.
bool Rewriter::Key(Place &at)
{
    const bool primary = Accept(at, "PRIMARY");
    if (primary)
        Expect(at, "KEY");
    else if (!Accept(at, "UNIQUE"))
        return false;
    if (Is(at, "CLUSTERED") || Is(at, "NONCLUSTERED"))
        Omit(at, at + 1), ++at;
    return true;
}

// (column [ASC | DESC], ...)
void Rewriter::ColumnList(Place &at)
{
    Expect(at, "(");
    do
    {
        TakeName(at);
        if (!Accept(at, "ASC"))
            Accept(at, "DESC");
    } while (Accept(at, ","));
    Expect(at, ")");
}

// Lengths and ranges become checks, since SQLite keeps what does not fit.
void Rewriter::CreateColumn(Place &at)
{
    const std::string name = Quoted(TakeName(at));
    const Place first = at;
    const ValueType type = ReadType(at);
    Omit(first, at);
    std::string &piece = m_pieces[first];
    piece = NameOf(type.type);
    if (type.size > 0)
        piece += "(" + std::to_string(type.size) + ")";
    if (IsText(type.type) || type.type == Type::DateTime)
        piece += IsText(type.type) ? " COLLATE ts" : " text COLLATE ts_moment"; // "text": digits stay as they are
    piece += " CHECK (ts_fits(" + std::to_string(static_cast<int>(type.type)) + "," + std::to_string(type.size) + "," +
             name + "))";
    for (;;)
    {
        if (Accept(at, "NOT"))
            Expect(at, "NULL");
        else if (!Accept(at, "NULL") && !Key(at))
            return;
    }
}

// The name of an index belongs to its table; in SQLite it belongs to the file.
std::string Rewriter::CreateIndex()
{
    Place at = m_first;
    Expect(at, "CREATE");
    Accept(at, "UNIQUE");
    if (Is(at, "CLUSTERED") || Is(at, "NONCLUSTERED"))
        Omit(at, at + 1), ++at;
    Expect(at, "INDEX");
    const Place name = at;
    const std::string index = TakeName(at);
    Expect(at, "ON");
    const std::string table = TakeName(at);
    if (!m_catalog.Find(table))
        Raise(208, {table});
    m_pieces[name] = Quoted(table + "." + index);
    ColumnList(at);
    return End(at);
}

// DROP TABLE name, DROP INDEX table.name
std::string Rewriter::Drop()
{
    Place at = m_first;
    Expect(at, "DROP");
    const bool index = Accept(at, "INDEX");
    if (!index)
        Expect(at, "TABLE");
    const std::string table = TakeName(at);
    if (!index && !m_catalog.Find(table))
        Raise(3701, {"table", table});
    if (index)
    {
        Expect(at, ".");
        const std::string name = TakeName(at);
        Omit(at - 3, at);
        m_pieces[at - 1] = Quoted(table + "." + name);
    }
    return End(at);
}

// The statement is read; nothing may follow.
std::string Rewriter::End(Place at) const
{
    if (at != m_last)
        Refuse(at);
    return Join();
}

} // namespace tsql
