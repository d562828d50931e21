// Control characters in the lines of the statement log and the fault list: see escape.h.
#include "driver/escape.h"

#include <cstddef>

namespace driver
{

std::string Escape(std::string_view text)
{
    std::string escaped;
    for (const char c : text)
        switch (c)
        {
        case '\r':
            escaped += "\\r";
            break;
        case '\n':
            escaped += "\\n";
            break;
        case '\t':
            escaped += "\\t";
            break;
        case '"':
        case '\\':
            escaped += '\\';
            [[fallthrough]];
        default:
            escaped += c;
        }
    return escaped;
}

std::string Unescape(std::string_view text)
{
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] != '\\' || i + 1 == text.size())
        {
            plain += text[i];
            continue;
        }
        const char c = text[++i];
        plain += c == 'r' ? '\r' : c == 'n' ? '\n' : c == 't' ? '\t' : c;
    }
    return plain;
}

} // namespace driver
