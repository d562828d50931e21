// Control characters in the lines of the statement log and the fault list: see escape.h.
#include "driver/escape.h"

#include <cstddef>

namespace driver
{
namespace
{
constexpr std::string_view kPlain = "\r\n\t\"\\";
constexpr std::string_view kLetters = "rnt\"\\"; // behind a backslash
} // namespace

std::string Escape(std::string_view text)
{
    std::string escaped;
    for (const char c : text)
    {
        const std::size_t at = kPlain.find(c);
        if (at != std::string_view::npos)
            escaped += '\\';
        escaped += at != std::string_view::npos ? kLetters[at] : c;
    }
    return escaped;
}

std::string Unescape(std::string_view text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        const bool isEscaped = text[i] == '\\' && i + 1 < text.size();
        i += isEscaped ? 1 : 0;
        const std::size_t at = isEscaped ? kLetters.find(text[i]) : std::string_view::npos;
        plain += at != std::string_view::npos ? kPlain[at] : text[i];
    }
    return plain;
}

} // namespace driver
