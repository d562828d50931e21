// The lines of HEADINGS.TXT as a transcript prints them: see report_lines.h.
#include "play/report_lines.h"

#include "platform/code_page.h"

namespace scenario
{

namespace
{

std::string EscapeControls(std::string_view line)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string escaped;
    for (const char c : line)
    {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\r')
            escaped += "\\r";
        else if (c == '\t')
            escaped += "\\t";
        else if (byte < 0x20)
            escaped.append("\\x") += {kDigits[byte >> 4], kDigits[byte & 15]};
        else
            escaped += c;
    }
    return escaped;
}

} // namespace

std::string ReportLines(std::string_view bytes)
{
    constexpr std::string_view kTitle = "GENERAL SETTINGS\\t\\t\\t";
    const std::string text = platform::FromAnsi(bytes);
    std::string lines;
    for (std::string_view rest = text; !rest.empty();)
    {
        std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        if (line.ends_with('\r'))
            line.remove_suffix(1);
        std::string escaped = EscapeControls(line);
        if (lines.empty() && escaped.starts_with(kTitle))
            escaped = std::string(kTitle) + "<now>";
        lines += escaped + "\n";
    }
    return lines;
}

} // namespace scenario
