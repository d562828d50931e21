// Sending statements over the component's one connection, and re-establishing it when it was lost.
#pragma once

#include "odbc/rdoResultset.h"
#include "runtime/error.h"

#include <memory>
#include <optional>
#include <string>

namespace host
{

// One action of the user that needs the database, for the length of a block: opening, Save, Print, Add, a change of
// partition or account, a try of the event log. A server that was restarted between two actions costs the user nothing:
// at the start the driver is asked whether the connection is lost, and the first statement is sent once more when it
// meets the loss; both after reconnecting, without a message. Every other statement is sent once; those after a
// loss go over a new connection. An action reconnects at most once.
class DatabaseAction
{
public:
    enum class Kind
    {
        Ordinary, // belongs to an action that is under way; errors are those of the statements
        LogEntry, // an action of its own, also inside another
        Save      // ends when it cannot reconnect at its start: no further statement is sent
    };

    explicit DatabaseAction(Kind kind = Kind::Ordinary);
    ~DatabaseAction();
    DatabaseAction(const DatabaseAction &) = delete;
    DatabaseAction &operator=(const DatabaseAction &) = delete;

    // Why a Save has ended at its start: the error of reconnecting. Statements raise it from then on.
    const std::optional<runtime::Error> &Ended() const noexcept { return m_ended; }

private:
    friend void Execute(const std::string &sql);
    friend std::shared_ptr<odbc::rdoResultset> OpenResultset(const std::string &sql);

    // Runs `run` over the connection, by the rules of the action under way, if there is one.
    template <class Run>
    static auto Send(const Run &run);
    // False when it has been tried before in this action, or fails.
    bool ConnectAnew(bool atStart);

    Kind m_kind;
    DatabaseAction *m_outer;
    bool m_sent = false;          // a statement has been sent
    bool m_connectedAnew = false; // or has tried to
    std::optional<runtime::Error> m_ended;
};

// True when the Save under way has ended at its start.
bool SaveHasEnded();

// True while the component has a connection, a lost one included; false before Connect and after Disconnect.
bool HasConnection();

// Runs a statement over the connection, as the operation of odbc::rdoConnection of that name does. Error 91 without a
// connection.
void Execute(const std::string &sql);
std::shared_ptr<odbc::rdoResultset> OpenResultset(const std::string &sql);

} // namespace host
