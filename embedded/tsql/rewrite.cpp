// Words and functions.
#include "rewrite.h"

#include "errors.h"
#include "text.h"

#include <algorithm>
#include <charconv>
#include <utility>

namespace tsql
{
namespace
{

constexpr std::pair<std::string_view, std::string_view> functions[] = {
    {"ABS", "abs"},           {"CHARINDEX", "ts_charindex"},
    {"COALESCE", "coalesce"}, {"COUNT", "count"},
    {"GETDATE", "ts_now"},    {"ISNULL", "ifnull"},
    {"LEFT", "ts_left"},      {"LEN", "ts_len"},
    {"LOWER", "ts_lower"},    {"LTRIM", "ltrim"},
    {"MAX", "max"},           {"MIN", "min"},
    {"NULLIF", "nullif"},     {"REPLACE", "ts_replace"},
    {"RIGHT", "ts_right"},    {"RTRIM", "rtrim"},
    {"STR", "ts_str"},        {"SUBSTRING", "ts_substring"},
    {"SUM", "sum"},           {"UPPER", "ts_upper"}};

const std::string omitted = "\b"; // the piece of a token that leaves nothing

// Words that begin a statement.
bool Begins(const Token &token)
{
    constexpr std::string_view words[] = {"SELECT", "INSERT", "UPDATE", "DELETE", "CREATE", "DROP",   "DECLARE",
                                          "SET",    "PRINT",  "IF",     "ELSE",   "BEGIN",  "COMMIT", "ROLLBACK"};
    return token.kind == TokenKind::Keyword &&
           std::ranges::any_of(words, [&](std::string_view word) { return token.Is(word); });
}

// A view of the server's own, of which the columns that tell the widths of tables are known.
constexpr std::string_view columnsView =
    "(SELECT m.name COLLATE ts AS TABLE_NAME, p.name COLLATE ts AS COLUMN_NAME, "
    "substr(p.type, 1, instr(p.type || '(', '(') - 1) COLLATE ts AS DATA_TYPE, "
    "CASE WHEN p.type LIKE '%char(%' THEN CAST(substr(p.type, instr(p.type, '(') + 1) AS INTEGER) "
    "WHEN p.type LIKE '%char' THEN -1 END AS CHARACTER_MAXIMUM_LENGTH "
    "FROM sqlite_schema AS m, pragma_table_info(m.name) AS p WHERE m.type = 'table' AND m.name <> 'kvembedded_users')";

} // namespace

std::string Quoted(std::string_view name, char quote)
{
    std::string quoted(1, quote);
    for (const char c : name)
        quoted.append(c == quote ? 2 : 1, c);
    return quoted += quote;
}

std::string Small(std::string_view word)
{
    std::string small(word);
    std::ranges::transform(small, small.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 32) : c; });
    return small;
}

// Statements need no mark between them: one ends where a word begins the next.
std::size_t StatementEnd(const std::vector<Token> &tokens, std::size_t first)
{
    bool rows = tokens[first].Is("INSERT"); // a SELECT or SET that belongs to the statement is still to come
    bool values = tokens[first].Is("UPDATE");
    int depth = 0;
    int cases = 0;
    for (std::size_t at = first + 1;; ++at)
    {
        const Token &token = tokens[at];
        const bool endsCase = cases > 0 && token.Is("END");
        depth += token.Is("(") ? 1 : token.Is(")") ? -1 : 0;
        cases += token.Is("CASE") ? 1 : endsCase ? -1 : 0;
        if (depth < 0 || (depth > 0 && token.kind == TokenKind::End))
            RefuseToken(tokens, at, true);
        if (depth > 0 || cases > 0 || endsCase)
            continue;
        const bool compound = tokens[at - 1].Is("UNION") || tokens[at - 1].Is("ALL");
        const bool own = (token.Is("SELECT") && (compound || std::exchange(rows, false))) ||
                         (token.Is("SET") && std::exchange(values, false));
        if (token.kind == TokenKind::End || token.Is(";") || token.Is("END") || (Begins(token) && !own))
            return at;
        rows = rows && !token.Is("VALUES");
    }
}

// A word may be one that the server knows; an operator, a constant or the end is in the wrong place there too. At the
// end of the text the server names the last token that it has read.
void RefuseToken(const std::vector<Token> &tokens, std::size_t at, bool known)
{
    const Token &token = tokens[at];
    const char *const batch = tokens[0].text.data(); // what stands before the first token does not count
    const std::string line = std::to_string(std::count(batch, token.text.data(), '\n') + 1);
    if (token.kind == TokenKind::Unclosed)
        Raise(105, {token.text.substr(1)});
    if (token.kind == TokenKind::UnclosedComment)
        Raise(113);
    if (!known || token.IsName() || token.kind == TokenKind::Bad || token.kind == TokenKind::Reserved)
        Unsupported("Line " + line + ": '" + std::string(token.text) + "'");
    Raise(102, {tokens[token.kind == TokenKind::End && at > 0 ? at - 1 : at].text});
}

Rewriter::Rewriter(const std::vector<Token> &tokens, Place first, Place last, Catalog &catalog,
                   const Variables &variables)
    : m_tokens(tokens), m_first(first), m_last(last), m_catalog(catalog), m_variables(variables),
      m_pieces(tokens.size()), m_partner(tokens.size(), last), m_roles(tokens.size())
{
    std::vector<Place> open;
    for (Place at = first; at < last; ++at)
    {
        if (Is(at, "(") || Is(at, "CASE"))
            open.push_back(at);
        else if ((Is(at, ")") || Is(at, "END")) && !open.empty())
        {
            m_partner[at] = open.back();
            m_partner[open.back()] = at;
            open.pop_back();
        }
        if (tokens[at].IsName())
            if (const Table *table = catalog.Find(Unquoted(tokens[at])))
                m_tables.push_back(table);
    }
}

void Rewriter::Refuse(Place at) const
{
    RefuseToken(m_tokens, at, false);
}

bool Rewriter::IsCall(Place at) const
{
    return Is(at + 1, "(") && (m_tokens[at].IsName() || Is(at, "LEFT") || Is(at, "RIGHT"));
}

Rewriter::Place Rewriter::Find(Place at, std::initializer_list<std::string_view> words) const
{
    for (; at < m_last && !Is(at, ")") && !Is(at, "END"); ++at)
    {
        if (std::ranges::any_of(words, [&](std::string_view word) { return Is(at, word); }))
            break;
        if (Is(at, "(") || Is(at, "CASE"))
            at = m_partner[at];
    }
    return std::min(at, m_last);
}

Rewritten Rewriter::Rewrite()
{
    Rewritten result;
    Place at = m_first;
    if (Is(at, "INSERT"))
        at = InsertHeader();
    else if (Is(at, "DELETE"))
    {
        m_pieces[at++] = "DELETE FROM";
        Omit(at, at + (Is(at, "FROM") ? 1 : 0));
        const Place table = Source(at + (Is(at, "FROM") ? 1 : 0));
        m_sources.push_back(Small(Unquoted(m_tokens[table])));
        if (table + 1 < m_last && !Is(table + 1, "WHERE"))
            Refuse(table + 1);
    }
    else if (Is(at, "SET"))
    {
        m_pieces[at] = "SELECT";
        Omit(at + 1, at + 3);
    }
    else if (Is(at, "IF") || Is(at, "PRINT"))
    {
        m_pieces[at] = Is(at, "IF") ? "SELECT 1 WHERE" : "SELECT";
        ++at;
    }
    for (Place from = m_first; from < m_last; ++from)
        if (Is(from, "FROM") && !IsOmitted(from))
            Sources(from);
    for (; at < m_last; ++at)
        if (m_pieces[at].empty())
            Word(at);
    for (at = m_first; at < m_last; ++at)
    {
        if (Is(at, "+") || Is(at, "-") || Is(at, "*"))
            Arithmetic(at);
        else if (Is(at, "CASE"))
            if (const auto type = TypeOfCase(at); type && IsText(type->type))
                m_pieces[m_partner[at]] += " COLLATE ts";
    }
    if (Is(m_first, "UPDATE"))
        Update();
    else if (Is(m_first, "INSERT"))
        Insert(m_insert.table, m_insert.columns, m_insert.behind);
    for (at = m_first; at < m_last; ++at)
    {
        if (Is(at, "SELECT"))
            SelectList(at, result);
        else if (Is(at, "WHERE") || Is(at, "HAVING") || Is(at, "ON") || Is(at, "IF"))
            ConditionsBehind(at);
        else if (Is(at, "CASE") && Is(at + 1, "WHEN"))
            for (Place when = at + 1; Is(when, "WHEN"); when = Find(when + 1, {"WHEN"}))
                ConditionsBehind(when);
    }
    if (Is(m_first, "SET"))
        AssignTo(m_first + 1, m_first + 3, m_last, result);
    Leftovers();
    result.sql = Join() + result.limit;
    return result;
}

std::string Rewriter::Join() const
{
    std::string sql;
    for (Place at = m_first; at < m_last; ++at)
        if (!IsOmitted(at))
            sql.append(m_pieces[at]) += ' ';
    return sql;
}

// The words of one token, or of a function's whole call.
void Rewriter::Word(Place at)
{
    const Token &token = m_tokens[at];
    std::string &piece = m_pieces[at];
    switch (token.kind)
    {
    case TokenKind::Text:
    case TokenKind::NationalText:
        if (at > m_first && (Is(at - 1, "AS") || Is(at - 1, ")") || m_tokens[at - 1].IsName()))
            Refuse(at); // as a name
        piece = token.kind == TokenKind::Text ? InCodePage(Unquoted(token)) : Unquoted(token);
        piece = Quoted(piece, '\'') + " COLLATE ts";
        break;
    case TokenKind::Variable:
        piece = Small(token.text);
        if (!m_variables.contains(piece))
            Raise(137, {token.text});
        if (const Type type = m_variables.at(piece).type; !IsInteger(type))
            piece += type == Type::DateTime ? " COLLATE ts_moment" : " COLLATE ts";
        break;
    case TokenKind::Integer:
        if (std::int64_t value;
            std::from_chars(token.text.data(), token.text.data() + token.text.size(), value).ec != std::errc())
            Refuse(at);
        piece = token.text;
        break;
    case TokenKind::Name:
    case TokenKind::QuotedName:
        Name(at);
        break;
    case TokenKind::Keyword:
    case TokenKind::Operator:
        if (IsCall(at))
            Function(at);
        else if (token.Is("/") || token.Is("%") || token.Is("!<") || token.Is("!>") ||
                 (token.Is("TOP") && at != m_first + 1 && at != m_first + 2) || token.Is("INTO") ||
                 (token.Is("IS") && !Is(at + 1, "NULL") && !Is(at + 2, "NULL")))
            Refuse(at);
        else
            piece = token.text;
        break;
    default:
        RefuseToken(m_tokens, at, false);
    }
}

// dbo.name, name(...) and any other name. What SQLite calls the number of a row is no column.
void Rewriter::Name(Place at)
{
    const std::string name = Unquoted(m_tokens[at]);
    if (IsCall(at))
        return Function(at);
    if (SameWord(name, "dbo") && Is(at + 1, "."))
        Omit(at, at + 2);
    else if (SameWord(name, "INFORMATION_SCHEMA") && Is(at + 1, ".") && SameWord(m_tokens[at + 2].text, "COLUMNS"))
    {
        Omit(at, at + 2);
        m_pieces[at + 2] = columnsView;
    }
    else if ((SameWord(name, "rowid") || SameWord(name, "oid") || SameWord(name, "_rowid_")) && !TypeOfColumn(at))
        Raise(207, {name});
    else
        m_pieces[at] = Quoted(name);
}

void Rewriter::Function(Place at)
{
    const std::string_view name = m_tokens[at].text;
    const auto known = std::ranges::find_if(functions, [&](const auto &one) { return SameWord(one.first, name); });
    const Place close = m_partner[at + 1];
    if (SameWord(name, "CAST") || SameWord(name, "CONVERT"))
        Conversion(at);
    else if (known == std::end(functions))
        Refuse(at);
    else
        m_pieces[at] = known->second;
    const bool single = known != std::end(functions) && (known->second == "max" || known->second == "min");
    if (single && Is(Find(at + 2, {","}), ",")) // of several values SQLite gives the largest
        Refuse(at);
    const auto type = TypeOfFunction(at);
    Arguments(at);
    m_pieces[close] = ")";
    if (type && !IsInteger(type->type))
        m_pieces[close] = type->type == Type::DateTime ? ") COLLATE ts_moment" : ") COLLATE ts";
    if (known == std::end(functions))
        return;
    if (const Place second = Find(at + 2, {","}); known->first == "ISNULL" && Is(second, ",") && type)
    {
        Common(type, TypeOfValue(second + 1, close), at);
        m_pieces[second] = "," + ConvertTo(*type);
        m_pieces[close].insert(0, ")");
    }
    if ((known->first == "SUM" || known->first == "ABS") && type)
    {
        m_pieces[at].insert(0, "ts_range(" + std::to_string(static_cast<int>(type->type)) + ",");
        m_pieces[close] += ")";
    }
}

// CAST(value AS type), CONVERT(type, value) and, of a moment, CONVERT(type, value, style)
void Rewriter::Conversion(Place at)
{
    const bool cast = SameWord(m_tokens[at].text, "CAST");
    const Place close = m_partner[at + 1];
    const Place as = cast ? Find(at + 2, {"AS"}) : at + 1;
    Place behind = as + 1;
    const ValueType type = ReadType(behind, 30);
    const Place value = cast ? at + 2 : behind + 1;
    const bool styled = !cast && Is(Find(value, {","}), ",");
    const auto from = TypeFrom(value);
    const bool moment = from && from->type == Type::DateTime;
    if ((cast ? behind != close : !Is(behind, ",")) || moment != styled)
        Refuse(at);
    m_pieces[at] = ConvertTo(type);
    Omit(at + 1, at + 2);
    Omit(cast ? as : at + 2, cast ? close : value);
}

bool Rewriter::Accept(Place &at, std::string_view word)
{
    const bool there = Is(at, word);
    if (there)
        m_pieces[at++] = word;
    return there;
}

void Rewriter::Expect(Place &at, std::string_view word)
{
    if (!Accept(at, word))
        RefuseToken(m_tokens, at, true);
}

void Rewriter::Omit(Place first, Place end)
{
    std::fill(m_pieces.begin() + static_cast<std::ptrdiff_t>(first),
              m_pieces.begin() + static_cast<std::ptrdiff_t>(end), omitted);
}

bool Rewriter::IsOmitted(Place at) const
{
    return m_pieces[at] == omitted;
}

std::string Rewriter::TakeName(Place &at)
{
    if (Is(at + 1, ".") && SameWord(Unquoted(m_tokens[at]), "dbo"))
    {
        Omit(at, at + 2);
        at += 2;
    }
    if (at >= m_last || !m_tokens[at].IsName())
        RefuseToken(m_tokens, at, true);
    std::string name = Unquoted(m_tokens[at]);
    m_pieces[at++] = Quoted(name);
    return name;
}

ValueType Rewriter::ReadType(Place &at, int size) const
{
    const Place name = at++;
    const int absent = size;
    size = -1;
    if (Is(at, "("))
    {
        const std::string_view digits = m_tokens[at + 1].text;
        const bool max = SameWord(digits, "max");
        std::from_chars(digits.data(), digits.data() + digits.size(), size);
        if ((!max && size < 1) || !Is(at + 2, ")"))
            Refuse(name);
        size = max ? 0 : size;
        at += 3;
    }
    std::optional<ValueType> type = FindType(m_tokens[name].text, size);
    if (type && size < 0 && IsText(type->type))
        type->size = absent;
    // Short texts would have to be filled up with blanks.
    if (!type || ((type->type == Type::Char || type->type == Type::NChar) && type->size != 1))
        Refuse(name);
    return *type;
}

} // namespace tsql
