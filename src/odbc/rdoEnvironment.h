// The ODBC environment: how connections are to be made.
#pragma once

#include "odbc/handles.h"

#include <cstdint>
#include <memory>
#include <string>

namespace odbc
{

class rdoConnection;

// Never ask the user for missing log-in data.
constexpr int kNeverPrompt = 1;
// No cursor library: result sets are forward-only and read-only.
constexpr int kNoCursorLibrary = 4;

class rdoEnvironment
{
public:
    // Creates the environment. Errors of the driver manager are raised.
    rdoEnvironment();

    int CursorDriver = kNoCursorLibrary;
    std::int16_t LoginTimeout = 0; // seconds; 0: no limit; a negative one fails at OpenConnection (380)

    // Connects. With a data-source name, `connect` is added to it; without one, `connect` goes to the driver manager
    // unchanged. `prompt` must be kNeverPrompt.
    std::shared_ptr<rdoConnection> OpenConnection(const std::string &dataSource, int prompt, bool readOnly,
                                                  const std::string &connect);

    // Frees the environment; connections that are open keep it alive. Raises nothing.
    void Close() noexcept;

private:
    std::shared_ptr<EnvironmentHandle> m_handle;
};

} // namespace odbc
