// HEADINGS.TXT: its place, and lines in the ANSI code page buffered.
#include "report/report_file.h"

#include "platform/code_page.h"
#include "runtime/text.h"

#include <algorithm>

namespace report
{

namespace
{

constexpr std::size_t kPiece = 256 * 1024;

bool IsAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

} // namespace

std::string ReportPath(const std::string &rootDirectory)
{
    const bool endsInBackslash = runtime::Trim(rootDirectory).ends_with('\\');
    return rootDirectory + (endsInBackslash ? "" : "\\") + "ZENTRA\\TEMP\\HEADINGS.TXT";
}

ReportFile::ReportFile(runtime::ErrorTrap &trap, const std::string &path) : m_trap(trap)
{
    m_trap.Try([&] { m_file.emplace(path); });
}

ReportFile &ReportFile::operator<<(std::string_view text)
{
    // Most texts are the same in every code page, and are then appended without a detour.
    if (IsAscii(text))
        m_pending += text;
    else
        m_pending += platform::ToAnsi(text);
    if (m_pending.size() >= kPiece)
        Flush();
    return *this;
}

void ReportFile::Rule()
{
    Line("----------------------------------------------------------------------------");
}

void ReportFile::Close()
{
    Flush();
    if (m_file)
        m_trap.Try([&] { m_file->Close(); });
    m_file.reset();
}

void ReportFile::Flush()
{
    if (m_file && !m_trap.Try([&] { m_file->Write(m_pending); }))
        m_file.reset();
    m_pending.clear();
}

} // namespace report
