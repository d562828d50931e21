// The editor in its real window, opened through the object that hosts use, with a clock around what a user sees.
#pragma once

#include "editor/frmHeadings.h"

#include <functional>
#include <string>
#include <vector>

namespace bench
{

// A site in the folder that the environment names in KV_BENCH_SITES: NAME.db, which is opened as it stands and not
// changed. The connection is made by the first Open and stays until the end, as in a host that opens the editor again
// and again.
class ShownSite
{
public:
    // With a log the statements that the component sends are kept; it costs time.
    ShownSite(const std::string &name, int partition, bool logged = false);
    ~ShownSite();
    ShownSite(const ShownSite &) = delete;
    ShownSite &operator=(const ShownSite &) = delete;

    // Calls ShowForm, and lets `whileOpen` act as soon as everything has been painted and the window waits for the
    // user; then the window is closed. Returns the seconds from the call until then. The program ends when no window
    // comes up.
    double Open(const std::function<void(editor::frmHeadings &)> &whileOpen = {});

    // The statements that have been sent so far, of a site with a log.
    std::vector<std::string> Sent() const;

    const std::string &File() const { return m_file; }

private:
    std::string m_file;
    std::string m_log;
};

} // namespace bench
