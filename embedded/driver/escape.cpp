// Control characters in the lines of the statement log and the fault list: see escape.h.
#include "driver/escape.h"

namespace driver
{

constexpr std::string_view kPlain = "\r\n\t\"\\";
constexpr std::string_view kLetters = "rnt\"\\"; // behind a backslash

std::string Escape(std::string_view text)
{
    std::string escaped;
    for (const char c : text)
        if (const auto at = kPlain.find(c); at != std::string_view::npos)
            (escaped += '\\') += kLetters[at];
        else
            escaped += c;
    return escaped;
}

std::string Unescape(std::string_view text)
{
    std::string plain;
    bool isEscaped = false;
    for (const char c : text)
    {
        const auto at = isEscaped ? kLetters.find(c) : std::string_view::npos;
        isEscaped = !isEscaped && c == '\\';
        if (!isEscaped)
            plain += at != std::string_view::npos ? kPlain[at] : c;
    }
    return plain;
}

} // namespace driver
