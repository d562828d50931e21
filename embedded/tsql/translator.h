// Reads a batch by recursive descent and writes each statement in SQLite's language while it reads: no tree lies
// between. Every rule gives the text and the type of what it has read, and writes out the conversions that follow from
// the types.
//
// A batch is read twice. Check reads all of it for its syntax alone, before anything runs: names mean nothing then and
// every value is an empty fragment; it notes in the tokens where statements and lists end. Next reads a statement when
// its turn comes, so that a batch can make a table and use it and variables are plain values. With the ends known it
// reads FROM before the select list and thus knows the columns when it meets them.
#pragma once

#include "catalog.h"
#include "token.h"

#include <algorithm>
#include <string>
#include <vector>

namespace tsql
{

// An expression in SQLite's language that needs no parentheses around it.
struct Fragment
{
    std::string sql; // of a literal it is made from `value` when it is needed
    ValueType type;
    Value value;            // of a literal
    bool literal = false;   // a constant or a variable
    bool untyped = false;   // the word NULL
    bool column = false;    // a bare column: it carries the collation itself
    bool condition = false; // true or false, no value
    bool joined = false;    // texts joined, in parentheses
    int terms = 0;          // of a sum of integers, a call of ts_sum
    std::size_t at = 0;     // the token that makes it a condition
};

struct Variable
{
    std::string_view name;
    ValueType type;
    Value value;
};

// What the session knows and statements ask for.
struct SessionValues
{
    std::vector<Variable> variables;
    std::int64_t rowCount = 0; // @@ROWCOUNT
    int error = 0;             // @@ERROR
    int transactions = 0;      // @@TRANCOUNT
};

// What is to be done with the text of a translated statement.
enum class Action : std::uint8_t
{
    End,    // the batch is over
    Rows,   // give its rows
    Assign, // SELECT @a = ...: put each row into the variables
    Set,    // SET, DECLARE: the same, without a result
    Write,  // INSERT, DELETE: run it and count rows
    Update, // the same
    Define, // run it; it may be several statements
    Print,
    Branch, // IF: it has a row when the condition holds
    NoCount,
    Nothing,
    Begin,
    Commit,
    Rollback
};

struct Translation
{
    Action action = Action::Nothing;
    std::string sql{};
    std::vector<Value> parameters{};
    std::vector<Column> columns{};
    std::vector<int> variables{}; // those the columns are assigned to
    const char *verb = "";        // of Write
    bool on = false;              // of NoCount
};

class Translator
{
public:
    Translator(Catalog &catalog, SessionValues &session) : m_catalog(catalog), m_session(session) {}

    // Takes a batch and declares its variables. Raises 102 and its kin; nothing of the batch is kept then.
    void Check(std::string_view batch);
    void Drop();

    // The next statement that is to run.
    Translation Next();

    // The UPDATE that Next gave last, as several statements: its rows are deleted and inserted anew.
    Translation UpdateByRewriting();

    // Goes behind the statement that Next gave or failed at: with `branch` from the condition of an IF to its ELSE.
    void Skip(bool branch);

private:
    struct Source // of a FROM clause
    {
        std::string name; // the alias
        std::string id;   // what it is called in SQLite's language
        std::vector<std::string> names;
        std::vector<ValueType> types;
        const Table *table = nullptr; // null for a derived table, whose columns are c1, c2 ...

        Fragment ColumnAt(std::size_t i) const;
    };
    struct Scope
    {
        Scope *parent = nullptr;
        std::vector<Source> sources;
        std::vector<std::string> groups; // what is grouped by
        std::string ungrouped;           // a column met outside of what is grouped by
        bool grouped = false;
        bool aggregatesAllowed = false;
        bool inAggregate = false;

        bool IsGroup(const std::string &sql) const { return std::count(groups.begin(), groups.end(), sql) > 0; }
    };
    struct SelectParts // one SELECT of a union
    {
        Scope scope;
        bool distinct = false;
        std::vector<Fragment> columns;
        std::vector<std::string> names;
        std::vector<int> variables;
        std::string tail; // FROM ... HAVING
        std::string limit;
    };
    struct Query
    {
        std::vector<SelectParts> selects;
        std::vector<const char *> unions; // what stands between them
        std::string orderBy;
        std::vector<ValueType> types;
        std::string sql;
    };
    struct Definition; // of a table

    // Gives a place its old value back at the end of a block.
    template <typename T>
    struct Kept
    {
        T &place;
        T old = place;
        ~Kept() { place = old; }
    };

    [[nodiscard]] Kept<int> Deeper(); // counts how deep the rules call each other, for the block that keeps it
    [[nodiscard]] Kept<Scope *> Entered(Scope *scope);

    // Tokens
    const Token &Current() const { return m_tokens[m_at]; }
    bool Is(Word word) const { return Current().word == word; }
    bool IsName() const { return Current().IsName(); }
    const Token &Take();
    bool Accept(Word word);
    const Token &Expect(Word word);
    std::string TakeName();
    bool AtBlock() const;
    void Inspect() const;
    std::string LineOf(std::size_t at) const;
    [[noreturn]] void SyntaxError(std::size_t at, int number = 102) const;
    [[noreturn]] void SyntaxError() const { SyntaxError(m_at); }

    // Statements
    void CheckStatement();
    void CheckList(Word end);
    Translation Statement();
    Translation Declare();
    Translation Set();
    Translation SelectValue(Action action, const ValueType &type);
    Translation SelectStatement();
    Translation Insert();
    Translation Update();
    Translation Delete();
    Translation CreateTable();
    Translation CreateIndex();
    Translation DropTables();
    Translation DropIndex();
    void SkipTransactionName();
    ValueType TypeName(int defaultSize);
    std::string TableName();
    const Table &FindTable(const std::string &name);
    std::vector<std::string> ColumnNames();
    void ReadColumn(Definition &table);
    bool ReadKey(Definition &table, const std::string &column);
    int FindVariable(const Token &name) const;
    void AddPlace(const Table &table, const std::string &name, std::vector<int> &places) const;
    std::size_t ReadRow(const Table &table, const std::vector<int> &places, Translation &out);
    std::string Target(const std::string &name, Source &target);
    static std::string Rewriting(const Source &target, const std::vector<int> &places,
                                 const std::vector<std::string> &values, const std::string &rows);

    // SELECT
    Query ReadQuery(bool orderMatters);
    void ReadSelect(SelectParts &parts);
    void ReadList(SelectParts &parts);
    void ReadItem(SelectParts &parts);
    void ReadStar(SelectParts &parts, const std::string &qualifier);
    std::string Top();
    std::string Grouping(Scope &scope);
    std::string OrderBy(const Query &query, SelectParts &parts);
    std::string OrderItem(const Query &query, SelectParts &parts, int place);
    std::string FromClause();
    std::string Joins(bool &joined);
    std::string SourceClause(bool &joined);
    std::string AddSource(Source source, const std::string &sql);
    std::string AddTable(const std::string &name, const std::string &alias);
    std::string Alias(bool orText);
    void CheckGrouped(int error) const;
    // Writes the query with its columns converted to `targets` when given; with names c1, c2 ... when `nested`.
    void Write(Query &query, bool nested, const std::vector<ValueType> *targets = nullptr) const;

    // Expressions, by rising precedence
    Fragment ReadValue();
    std::string Condition();
    Fragment Chain(Word word);
    Fragment Not();
    Fragment Predicate();
    Fragment Calculation(int level);
    Fragment Operand();
    Fragment Sign();
    Fragment Primary();
    Fragment Literal(const Token &token) const;
    Fragment Global(const Token &token) const;
    Fragment Named();
    Fragment FindColumn(const std::string &name, const std::string &qualifier, bool qualified);
    Fragment Case();
    Fragment Cast(bool convert);
    Fragment Subquery();
    Fragment Call(const Token &name);
    Fragment Choice(const std::string &name);
    Fragment Aggregate(int which);
    std::string LikeTest(const Fragment &left);
    std::string BetweenTest(const Fragment &left);
    std::string InTest(Fragment left);
    Fragment SumValue();
    void RequireValue(const Fragment &fragment) const;
    void RequireCondition(const Fragment &fragment) const;
    bool Watches() const;
    void Settle(bool watched, const Fragment &fragment);

    // What operands become together
    Fragment Operated(const Token &operation, Fragment left, Fragment right) const;
    Fragment Arithmetic(const Token &operation, Fragment left, Fragment right) const;
    std::string Compared(const char *operation, const Fragment &left, const Fragment &right) const;
    ValueType Common(std::vector<Fragment> &fragments) const;
    Fragment Converted(Fragment fragment, const ValueType &type, Conversion how, int style = -1) const;

    Catalog &m_catalog;
    SessionValues &m_session;
    std::string m_text;
    std::vector<Token> m_tokens{1};
    std::size_t m_at = 0;        // the current token
    std::size_t m_statement = 0; // the first one of the statement
    std::size_t m_select = 0;    // the word SELECT that is being checked
    std::size_t m_visible = 0;   // how many variables have been declared before
    bool m_checking = false;
    int m_depth = 0; // of rules inside one another
    int m_ids = 0;
    Scope *m_scope = nullptr;
    bool m_rewriting = false;
    bool m_subquery = false; // the statement has a query inside
};

// Fragments.
Fragment Made(std::string sql, const ValueType &type);
Fragment MadeLiteral(Value value, const ValueType &type);
// Checked against, and rounded to, the type; `from` says how the value lies in SQLite.
Fragment Checked(const std::string &sql, Type from, const ValueType &type);
std::string Sql(const Fragment &fragment);
std::string Collated(const Fragment &fragment); // with the collation, where SQLite would not know it by itself

} // namespace tsql
