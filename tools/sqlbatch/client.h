// A connection to any ODBC data source that runs batches and prints what they give.
#pragma once

#include "odbc/statement.h"

#include <memory>
#include <ostream>
#include <string>

namespace sqlbatch
{

class Client
{
public:
    // Connects with a complete connection string. Throws runtime::Error.
    explicit Client(const std::string &connect);
    ~Client();
    Client(const Client &) = delete;
    Client &operator=(const Client &) = delete;

    // Runs one batch to the end of its last result and prints rows (values separated by " | ", NULL as NULL), row
    // counts and messages. An error of one statement is printed to `errors` behind `place` and the batch goes on.
    // Returns the number of errors.
    int Run(const std::string &batch, const std::string &place, std::ostream &out, std::ostream &errors);

    // Prints no row counts from now on.
    void Quiet() { m_quiet = true; }

private:
    void PrintResult(std::ostream &out);
    void PrintMessages(std::ostream &out);

    odbc::EnvironmentHandle m_environment;
    odbc::ConnectionHandle m_connection;
    std::unique_ptr<odbc::Statement> m_statement;
    bool m_quiet = false;
};

} // namespace sqlbatch
