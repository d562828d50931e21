// HEADINGS.TXT: its place, and lines in the ANSI code page buffered.
#pragma once

#include "platform/files.h"
#include "runtime/error_trap.h"

#include <optional>
#include <string>
#include <string_view>

namespace report
{

// The report's path below a root directory. The root directory is used as it was read; blanks around it are left out
// only for the question whether it ends in a backslash, which is intentional.
std::string ReportPath(const std::string &rootDirectory);

// The report being written. A file that cannot be opened or written is an error in the trap, and takes no more lines;
// nothing is raised.
class ReportFile
{
public:
    ReportFile(runtime::ErrorTrap &trap, const std::string &path);

    // Appends a part of a line.
    ReportFile &operator<<(std::string_view text);

    // Ends the line.
    void EndLine() { *this << "\r\n"; }

    void Line(std::string_view text)
    {
        *this << text;
        EndLine();
    }

    // The line of hyphens under a section's head.
    void Rule();

    // Stands before each section but the first: a carriage return of its own before the line end.
    void Separator() { Line("\r"); }

    // Writes out what is left and closes the file.
    void Close();

private:
    void Flush();

    runtime::ErrorTrap &m_trap;
    std::optional<platform::TextOutput> m_file;
    std::string m_pending; // bytes of the code page
};

} // namespace report
