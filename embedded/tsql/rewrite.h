// Rewrites a statement to SQLite's language, token by token: a token stays as it is unless it must not, and what SQLite
// does not know or would take differently is refused.
#pragma once

#include "catalog.h"
#include "token.h"

#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tsql
{

using Variables = std::map<std::string, ValueType>; // by name in small letters

// A statement in SQLite's language.
struct Rewritten
{
    std::string sql;
    std::string limit;                  // of TOP, at its end
    std::vector<Column> columns;        // of a SELECT; the name "*" stands for all columns of its tables
    std::vector<std::string> variables; // that a SELECT sets; none otherwise
};

class Rewriter
{
public:
    // For the tokens from `first` to before `last`.
    Rewriter(const std::vector<Token> &tokens, std::size_t first, std::size_t last, Catalog &catalog,
             const Variables &variables);

    // SELECT, INSERT, UPDATE, DELETE, and a condition or value behind IF, SET or PRINT. Throws SqlError.
    Rewritten Rewrite();
    std::string Define();               // CREATE, DROP
    void Declare(Variables &variables); // DECLARE @name type, ...

private:
    using Place = std::size_t;     // of a token
    enum class Role : std::uint8_t // of a token that has been dealt with
    {
        None,
        Source, // a table, its other name, or a column that is written
        Order,
        Condition // a word of a condition in a place for one
    };

    // rewrite.cpp
    void Word(Place at);
    void Name(Place at);
    void Function(Place at);
    void Conversion(Place at);
    Place InsertHeader();
    std::string Join() const;

    // select.cpp
    void SelectList(Place select, Rewritten &result);
    void Item(Place first, Place end, Rewritten &result);
    Place Top(Place select, Place top, Rewritten &result);
    void Together(Place select, const std::vector<Column> &columns, Rewritten &result);
    void AssignTo(Place variable, Place value, Place end, Rewritten &result);
    static std::string ConvertTo(const ValueType &type);
    void Single(Place select, Place end);

    // define.cpp
    std::string CreateTable();
    std::string CreateIndex();
    std::string Drop();
    bool Key(Place &at);
    void ColumnList(Place &at);
    void CreateColumn(Place &at);
    std::string End(Place at) const;

    // strict.cpp
    void Sources(Place from);
    Place Source(Place at);
    static bool Repeats(std::vector<std::string> names);
    void Ordering(Place select, const std::vector<Column> &columns, bool distinct);
    void Leftovers();
    bool IsColumn(std::string_view name) const;
    Place Open(Place at) const;
    void Update();
    void Assign(const ValueType &column, Place value, Place end);
    const TableColumn &ColumnOf(const std::string &table, Place name);
    void Insert(const std::string &table, const std::vector<Place> &names, Place behind);

    // check.cpp: the types of values, and what only the server would refuse
    std::optional<ValueType> TypeFrom(Place first) const;
    std::optional<ValueType> TypeUpTo(Place last) const;
    std::optional<ValueType> TypeOfValue(Place first, Place end) const;
    std::optional<ValueType> TypeOfCase(Place at) const;
    std::optional<ValueType> Common(const std::optional<ValueType> &one, const std::optional<ValueType> &other,
                                    Place at) const;
    Place OperandEnd(Place first) const;
    void Calculation(Place sign);
    std::optional<ValueType> TypeOfFunction(Place name) const;
    std::optional<ValueType> TypeOfColumn(Place name) const;
    bool IsSign(Place at) const;
    void Arithmetic(Place at);
    void Compare(Place left, Place right);
    void Conditions(Place first, Place end);
    void Condition(Place first, Place end);
    void ConditionsBehind(Place word);
    bool Grouping(Place select, Place listEnd, const std::vector<Column> &columns) const;
    void Arguments(Place name) const;
    bool IsWide(Place at) const;
    std::vector<std::string> Groups(Place group) const;
    std::string Written(Place first, Place last) const;
    bool IsAlias(Place at) const;

    bool Is(Place at, std::string_view word) const { return at < m_last && m_tokens[at].Is(word); }
    bool IsCall(Place at) const;
    bool IsSubquery(Place open) const { return Is(open, "(") && Is(open + 1, "SELECT"); }
    // The first place from `at` on, outside of brackets and CASE, that holds one of the words or closes what is open.
    Place Find(Place at, std::initializer_list<std::string_view> words) const;
    ValueType ReadType(Place &at, int size = 1) const; // goes behind it; `size`: of texts without one
    std::string TakeName(Place &at);                   // of a table, without its owner
    bool Accept(Place &at, std::string_view word);     // goes over it and keeps it
    void Expect(Place &at, std::string_view word);
    void Omit(Place first, Place end);
    bool IsOmitted(Place at) const;
    [[noreturn]] void Refuse(Place at) const;

    const std::vector<Token> &m_tokens;
    const Place m_first;
    const Place m_last;
    Catalog &m_catalog;
    const Variables &m_variables;
    std::vector<std::string> m_pieces; // one a token
    std::vector<Place> m_partner;      // of brackets and of CASE and END
    std::vector<Role> m_roles;
    std::vector<const Table *> m_tables; // that the statement names
    std::vector<std::string> m_sources;  // what its tables are called, in small letters
    std::vector<Place> m_derived;        // the brackets of queries that stand for a table
    struct
    {
        std::string table;
        std::vector<Place> columns;
        Place behind = 0; // the header
    } m_insert;
    std::vector<std::optional<ValueType>> m_list;                   // the types of the select list that is read
    std::vector<ValueType> m_targets;                               // of INSERT ... SELECT
    std::map<Place, std::vector<std::optional<ValueType>>> m_lists; // the types of a query, by Open
    bool m_view = false;                                            // a view of the server's own is read
};

std::string Quoted(std::string_view name, char quote = '"');
std::string Small(std::string_view word);                                         // ASCII letters made small
bool IsAny(std::string_view word, std::initializer_list<std::string_view> words); // without regard to case

// The statement that begins at `first`: where it ends.
std::size_t StatementEnd(const std::vector<Token> &tokens, std::size_t first);

// Raises what is wrong with a token: an unclosed text, a syntax error, or something that is not supported here.
[[noreturn]] void RefuseToken(const std::vector<Token> &tokens, std::size_t at, bool known);

} // namespace tsql
