// One connection with one statement at a time.
#pragma once

#include "odbc/handles.h"

#include <memory>
#include <string>

namespace odbc
{

class rdoResultset;
struct Statement;

class rdoConnection
{
public:
    rdoConnection(std::shared_ptr<EnvironmentHandle> environment, std::unique_ptr<ConnectionHandle> connection);
    ~rdoConnection();
    rdoConnection(const rdoConnection &) = delete;
    rdoConnection &operator=(const rdoConnection &) = delete;

    // Runs a statement and goes to its first row. What was open on this connection is closed first. Results without
    // rows before the first one with rows are skipped; when no result has rows, the result set is at its end. An
    // error of any statement of the batch that is met on the way is raised.
    std::shared_ptr<rdoResultset> OpenResultset(const std::string &sql);

    // Runs a statement or batch whose rows are not read, to the end of its last result. The first error on the way is
    // raised, after the rest of the batch has been let through.
    void Execute(const std::string &sql);

    // Disconnects. Errors are raised; a dead connection closes without one. A second call does nothing.
    void Close();

    // True until Close.
    bool IsOpen() const noexcept { return m_connection != nullptr; }
    // True once a statement has met the loss of the connection; never of a closed one.
    bool IsLost() const noexcept;
    // The same, and asks the driver, who may know of a loss that no statement has met yet.
    bool AskIfLost() noexcept;

private:
    // Executes; the statement handle is then on the first result. Returns the call's code; error 91 when closed.
    SQLRETURN Run(const std::string &sql);

    std::shared_ptr<EnvironmentHandle> m_environment; // outlives the connection
    std::unique_ptr<ConnectionHandle> m_connection;   // null once closed
    std::shared_ptr<Statement> m_statement;
};

} // namespace odbc
