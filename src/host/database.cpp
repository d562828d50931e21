// Actions on the database: see database.h.
#include "host/database.h"

#include "host/modGlobalVariables.h"
#include "host/modMain.h"

#include <utility>

namespace host
{

namespace
{

DatabaseAction *s_current = nullptr;

bool IsLost()
{
    return gConnection && gConnection->IsLost();
}

} // namespace

DatabaseAction::DatabaseAction(Kind kind) : m_kind(kind), m_outer(s_current)
{
    if (m_outer && m_kind == Kind::Ordinary)
        return;
    s_current = this;
    if (gConnection && gConnection->AskIfLost())
        ConnectAnew(true);
}

DatabaseAction::~DatabaseAction()
{
    s_current = m_outer;
}

bool DatabaseAction::ConnectAnew(bool atStart)
{
    if (std::exchange(m_connectedAnew, true))
        return false;
    const std::optional<runtime::Error> failure = Reconnect();
    if (failure && atStart && m_kind == Kind::Save)
        m_ended = failure;
    return !failure;
}

template <class Run>
auto DatabaseAction::Send(const Run &run)
{
    DatabaseAction *const action = s_current;
    if (!action)
        return run(Connection());
    if (action->m_ended)
        throw *action->m_ended;
    const bool first = !std::exchange(action->m_sent, true);
    if (!first && IsLost())
        action->ConnectAnew(false);
    try
    {
        return run(Connection());
    }
    catch (const runtime::Error &)
    {
        if (!first || !IsLost() || !action->ConnectAnew(true))
            throw;
    }
    return run(Connection());
}

void Execute(const std::string &sql)
{
    DatabaseAction::Send([&](odbc::rdoConnection &connection) { connection.Execute(sql); });
}

std::shared_ptr<odbc::rdoResultset> OpenResultset(const std::string &sql)
{
    return DatabaseAction::Send([&](odbc::rdoConnection &connection) { return connection.OpenResultset(sql); });
}

bool SaveHasEnded()
{
    return s_current && s_current->Ended();
}

bool HasConnection()
{
    return gConnection && gConnection->IsOpen();
}

} // namespace host
