// Control characters in the lines of the statement log and the fault list; transcripts of scenarios write them alike.
#pragma once

#include <string>
#include <string_view>

namespace driver
{

inline constexpr std::string_view kPlain = "\r\n\t\"\\";
inline constexpr std::string_view kLetters = "rnt\"\\"; // behind a backslash

// \r, \n, \t, \" and \\ as in C.
inline std::string Escape(std::string_view text)
{
    std::string escaped;
    for (const char c : text)
        if (const auto at = kPlain.find(c); at != std::string_view::npos)
            (escaped += '\\') += kLetters[at];
        else
            escaped += c;
    return escaped;
}

inline std::string Unescape(std::string_view text)
{
    std::string plain;
    for (size_t i = 0; i < text.size(); ++i)
    {
        const bool isEscaped = text[i] == '\\' && i + 1 < text.size();
        const auto at = isEscaped ? kLetters.find(text[i + 1]) : std::string_view::npos;
        plain += at != std::string_view::npos ? kPlain[at] : text[i];
        i += at != std::string_view::npos;
    }
    return plain;
}

} // namespace driver
