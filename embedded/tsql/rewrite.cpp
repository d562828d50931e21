// Rewriting a batch: its statements, what is written for them, and the tables they name.
#include "rewrite.h"

#include "errors.h"
#include "text.h"

#include <sqlite3.h>

#include <algorithm>
#include <charconv>

namespace tsql
{

Rewriter::Rewriter(Catalog &catalog, std::string_view batch)
    : m_catalog(catalog), m_text(batch), m_tokens(Tokens(batch))
{
    m_pieces.reserve(m_tokens.size());
    for (const Token &token : m_tokens)
        m_pieces.push_back({token.text});
    for (;;)
    {
        while (Accept(";"))
            ;
        if (Current().kind == TokenKind::End)
            break;
        Statement();
    }
}

void Rewriter::Again(Step &step)
{
    for (std::size_t at = step.first; at < m_tokens.size(); ++at)
        m_pieces[at] = {m_tokens[at].text};
    m_at = step.first;
    m_again = true;
    Step again = Simple();
    again.target = step.target;
    again.failed = step.failed;
    step = std::move(again);
}

bool Rewriter::Accept(std::string_view word)
{
    const bool there = Is(word);
    m_at += there ? 1 : 0;
    return there;
}

void Rewriter::Expect(std::string_view word)
{
    if (!Accept(word))
        Refuse();
}

std::size_t Rewriter::TakeName()
{
    const Token &token = Current();
    if (!token.IsName())
        Refuse();
    const std::string_view name = token.text;
    if (name.find("]]") != name.npos || sqlite3_keyword_check(name.data(), static_cast<int>(name.size())) != 0)
        m_pieces[m_at] = {"", Quoted(Unquoted(token))};
    return m_at++;
}

int Rewriter::ReadNumber()
{
    int number = 0;
    const std::string_view digits = Current().text;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (Current().kind != TokenKind::Integer || read.ec != std::errc())
        Refuse();
    ++m_at;
    return number;
}

std::string Rewriter::LineOf(std::size_t at) const
{
    const char *const end = m_tokens[at].text.data();
    return std::to_string(std::count(m_text.data(), end, '\n') + 1);
}

// A word or a mark that this does not know may be one that the server knows; any other token is in the wrong place
// there too. At the end of the text the server names the last token that it has read.
void Rewriter::Refuse(std::size_t at) const
{
    const Token &token = m_tokens[at];
    if (token.kind == TokenKind::Unclosed)
        Raise(105, {LineOf(at), token.text.substr(1)});
    if (token.kind == TokenKind::UnclosedComment)
        Raise(113, {LineOf(at)});
    const bool known = token.kind == TokenKind::Operator || (token.kind == TokenKind::Keyword && m_inValue);
    if (!known && token.kind != TokenKind::Integer && token.kind != TokenKind::End)
        Unsupported("Line " + LineOf(at) + ": '" + std::string(token.text) + "'");
    Raise(102, {LineOf(at), m_tokens[token.kind == TokenKind::End && at > 0 ? at - 1 : at].text});
}

void Rewriter::Later(const SqlError &error)
{
    if (!m_later)
        m_later = error;
}

void Rewriter::Blank(std::size_t first, std::size_t last)
{
    for (std::size_t at = first; at < last; ++at)
        m_pieces[at] = {};
}

void Rewriter::Wrap(const Operand &operand, const std::string &before, const std::string &after)
{
    m_pieces[operand.first].before.insert(0, before);
    m_pieces[operand.last].after += after;
}

void Rewriter::Convert(Operand &operand, const ValueType &type, Conversion how, int style)
{
    if (!operand.untyped && (!FitsAsItIs(operand.type, type) || style != 0))
        Wrap(operand, "ts_convert(",
             "," + std::to_string(Pack(operand.type)) + "," + std::to_string(Pack(type)) + "," +
                 std::to_string(static_cast<int>(how)) + (style != 0 ? "," + std::to_string(style) : "") + ")");
    operand.type = type;
}

// The tokens from `first` to before `end` as they are written now.
std::string Rewriter::Written(std::size_t first, std::size_t end) const
{
    std::string sql;
    sql.reserve((end - first) * 8);
    for (std::size_t at = first; at < end; ++at)
    {
        const Piece &piece = m_pieces[at];
        if (piece.text.empty() && piece.before.empty() && piece.after.empty())
            continue;
        sql.append(piece.before).append(piece.text).append(piece.after) += ' ';
    }
    return sql;
}

void Rewriter::Statement()
{
    if (Is("IF"))
        return If();
    const bool block = Is("BEGIN") && !m_tokens[m_at + 1].Is("TRAN") && !m_tokens[m_at + 1].Is("TRANSACTION");
    if (!block)
    {
        steps.push_back(Simple());
        steps.back().failed = steps.size();
        return;
    }
    if (++m_depth > 60)
        Refuse();
    ++m_at;
    while (!Accept("END"))
        if (!Accept(";"))
            Statement();
    --m_depth;
}

void Rewriter::If()
{
    const std::size_t branch = steps.size();
    steps.push_back(Simple());
    Statement();
    if (Is(";") && m_tokens[m_at + 1].Is("ELSE"))
        ++m_at;
    steps[branch].target = steps.size();
    if (Accept("ELSE"))
    {
        const std::size_t jump = steps.size();
        steps.push_back({.action = Action::Jump});
        steps[branch].target = steps.size();
        Statement();
        steps[jump].target = steps.size();
    }
    steps[branch].failed = steps.size(); // a condition that fails skips both
}

Step Rewriter::Simple()
{
    m_start = m_at;
    m_columns.clear();
    m_used.clear();
    m_later.reset();
    m_inAggregate = false;
    m_aggregates = m_subqueries = m_depth = m_query = m_queries = 0;
    Step step{.first = m_at, .version = m_catalog.Version()};
    Do(step);
    if (step.sql.empty())
        step.sql = Written(step.first, m_at);
    step.error = m_later;
    return step;
}

void Rewriter::Do(Step &step)
{
    if (Is("SELECT"))
        return Select(step);
    if (Is("INSERT"))
        return Insert(step);
    if (Is("UPDATE"))
        return Update(step);
    if (Is("DELETE"))
        return Delete(step);
    if (Is("CREATE"))
        return m_tokens[m_at + 1].Is("TABLE") ? CreateTable(step) : CreateIndex(step);
    if (Is("DROP"))
        return Drop(step);
    if (Accept("DECLARE"))
        return Declare(step);
    if (Accept("SET"))
        return Set(step);
    if (Is("BEGIN") || Is("COMMIT") || Is("ROLLBACK"))
        return Transaction(step);
    const bool branch = Accept("IF");
    if (!branch)
        Expect("PRINT");
    step.action = branch ? Action::Branch : Action::Print;
    const std::size_t first = m_at;
    if (branch)
        Condition();
    else
    {
        Operand text = ReadValue();
        Convert(text, {Type::NVarChar}, Conversion::Cast);
    }
    step.sql = (branch ? "SELECT 1 WHERE " : "SELECT ") + Written(first, m_at);
}

void Rewriter::Transaction(Step &step)
{
    step.sql = Is("BEGIN") ? "BEGIN IMMEDIATE" : Is("COMMIT") ? "COMMIT" : "ROLLBACK";
    ++m_at;
    if (!Accept("TRAN"))
        Accept("TRANSACTION");
}

void Rewriter::Select(Step &step)
{
    Query query = ReadQuery(true);
    step.action = query.variables.empty() ? Action::Rows : Action::Assign;
    if (!query.variables.empty() && query.variables.size() != query.items.size())
        Unsupported("Line " + LineOf(query.first) + ": SELECT of values beside variables");
    step.variables = std::move(query.variables);
    for (Item &item : query.items)
    {
        const ValueType &type = item.value.type;
        if (item.star && step.star >= 0)
            Unsupported("Line " + LineOf(query.first) + ": several * in one list");
        step.star = item.star ? static_cast<int>(step.columns.size()) : step.star;
        step.columns.push_back({std::move(item.name), type.type, ShownSize(type), type.scale});
    }
}

// Declares for the rest of the batch; the values given at once are set when it runs.
void Rewriter::Declare(Step &step)
{
    step.action = Action::Nothing;
    do
    {
        const std::size_t at = m_at;
        if (Current().kind != TokenKind::Variable)
            Refuse();
        ++m_at;
        Accept("AS");
        const ValueType type = ReadType(1);
        const auto known = std::find_if(variables.begin(), variables.end(),
                                        [&](const Variable &variable)
                                        { return tsql::Compare(variable.name, m_tokens[at].text) == 0; });
        if (known != variables.end() && !m_again)
            Raise(134, {m_tokens[at].text});
        if (!m_again)
            variables.push_back({std::string(m_tokens[at].text), type});
        if (Accept("="))
            Assign(step, std::string(m_tokens[at].text));
    } while (Accept(","));
}

void Rewriter::Assign(Step &step, const std::string &variable)
{
    const std::size_t first = m_at;
    Operand value = ReadValue();
    Convert(value, Find(variable).type, Conversion::Cast);
    step.action = Action::Set;
    step.sql += (step.sql.empty() ? "SELECT " : ", ") + Written(first, m_at);
    step.variables.push_back(variable);
}

void Rewriter::Set(Step &step)
{
    if (const Token &first = Current(); first.kind == TokenKind::Variable)
    {
        ++m_at;
        Expect("=");
        return Assign(step, std::string(first.text));
    }
    const std::string option = Unquoted(m_tokens[TakeName()]);
    const bool on = Accept("ON");
    if (!on)
        Expect("OFF");
    // What names how this works anyway may be switched on.
    constexpr std::string_view options[] = {"ANSI_NULLS", "ANSI_PADDING", "ANSI_WARNINGS", "CONCAT_NULL_YIELDS_NULL",
                                            "QUOTED_IDENTIFIER"};
    const bool noCount = SameWord(option, "NOCOUNT");
    if (!noCount && (!on || std::none_of(std::begin(options), std::end(options),
                                         [&](std::string_view known) { return SameWord(known, option); })))
        Refuse(m_at - 2);
    step.action = !noCount ? Action::Nothing : on ? Action::NoCountOn : Action::NoCountOff;
}

Variable &Rewriter::Find(std::string_view name)
{
    const auto found = std::find_if(variables.begin(), variables.end(),
                                    [&](const Variable &variable) { return tsql::Compare(variable.name, name) == 0; });
    if (found == variables.end())
        Raise(137, {name});
    return *found;
}

ValueType Rewriter::ReadType(int defaultSize)
{
    const std::size_t at = TakeName();
    int size = -1;
    int scale = -1;
    if (Accept("("))
    {
        size = SameWord(Current().text, "max") ? (++m_at, 0) : ReadNumber();
        if (Accept(","))
            scale = ReadNumber();
        Expect(")");
    }
    ValueType type;
    if (!MakeType(m_tokens[at].text, size, scale, defaultSize, type))
        Refuse(at);
    return type;
}

// [[database.]owner.]table: there is one database and one owner, only the last part counts.
std::string Rewriter::TableName()
{
    std::size_t at = TakeName();
    while (Accept("."))
        if (!Is(".")) // db..table
        {
            const std::size_t next = TakeName();
            Blank(at, next);
            at = next;
        }
    return Unquoted(m_tokens[at]);
}

const Table *Rewriter::AddTable(const std::string &name, const std::string &alias)
{
    const Table *const table = m_catalog.Find(name);
    if (!table)
        Later(MakeError(208, {name}));
    for (std::size_t i = 0; table && i < table->columns.size(); ++i)
        m_columns.push_back({alias, table->columns[i].name, table->columns[i].type, m_query});
    return table;
}

// The column of a table that the name at `at` says; of a table that is not there, any.
const TableColumn *Rewriter::Target(const Table *table, std::size_t at)
{
    static const TableColumn any{"", {Type::VarChar}};
    const std::string name = Unquoted(m_tokens[at]);
    const int place = table ? table->Find(name) : -1;
    if (table && place < 0)
        Later(MakeError(207, {name}));
    return place < 0 ? &any : &table->columns[static_cast<std::size_t>(place)];
}

} // namespace tsql
