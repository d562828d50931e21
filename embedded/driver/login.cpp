// Users and passwords: see login.h. A stand-in for a server's log-in, not a protection: who can read the file needs
// none.
#include "login.h"

namespace driver
{
namespace
{

std::string Quoted(const std::string &text)
{
    std::string out = "'";
    for (const char c : text)
        out.append(c == '\'' ? 2 : 1, c);
    return out + "'";
}

} // namespace

void AddUser(tsql::Session &session, const std::string &user, const std::string &password)
{
    session.Internal("CREATE TABLE IF NOT EXISTS kvembedded_users "
                     "(name TEXT NOT NULL COLLATE NOCASE PRIMARY KEY, password TEXT NOT NULL)");
    session.Internal("INSERT OR REPLACE INTO kvembedded_users VALUES (" + Quoted(user) + ", " + Quoted(password) + ")");
}

bool MayLogIn(tsql::Session &session, const std::string &user, const std::string &password)
{
    if (session.Internal("SELECT 1 FROM sqlite_master WHERE name = 'kvembedded_users'").empty() ||
        session.Internal("SELECT 1 FROM kvembedded_users LIMIT 1").empty())
        return true;
    return !session
                .Internal("SELECT 1 FROM kvembedded_users WHERE name = " + Quoted(user) +
                          " AND password = " + Quoted(password))
                .empty();
}

} // namespace driver
