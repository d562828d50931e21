// Control characters as they stand in transcripts and approved files.
#include "support/escape.h"

#include <cstddef>

namespace support
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

std::string EscapeDocument(std::string_view bytes)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string document;
    for (const char c : bytes)
    {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\r' || c == '\t' || c == '\\')
            document += Escape(std::string_view(&c, 1));
        else if (c != '\n' && (byte < 0x20 || byte >= 0x7F))
            document.append("\\x") += {kDigits[byte >> 4], kDigits[byte & 15]};
        else
            document += c;
    }
    return document;
}

} // namespace support
