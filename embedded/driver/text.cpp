// Text at the boundary: see text.h.
#include "text.h"

#include "diagnostics.h"

#include <algorithm>

namespace driver
{
namespace
{

constexpr char32_t Replacement = 0xFFFD;

void AppendUtf8(std::string &out, char32_t c)
{
    if (c < 0x80)
    {
        out += static_cast<char>(c);
        return;
    }
    int more = c < 0x800 ? 1 : c < 0x10000 ? 2 : 3;
    static const unsigned char lead[] = {0, 0xC0, 0xE0, 0xF0};
    out += static_cast<char>(lead[more] | (c >> (6 * more)));
    while (more-- > 0)
        out += static_cast<char>(0x80 | ((c >> (6 * more)) & 0x3F));
}

// Takes one character off the front of `text`, which is not empty.
char32_t TakeUtf8(std::string_view &text)
{
    const unsigned char first = static_cast<unsigned char>(text[0]);
    text.remove_prefix(1);
    if (first < 0x80)
        return first;
    const size_t more = first >= 0xF0 && first < 0xF5 ? 3 : first >= 0xE0 ? 2 : 1;
    if (first < 0xC2 || first > 0xF4 || text.size() < more)
        return Replacement;
    char32_t c = first & (0x3F >> more);
    for (size_t i = 0; i < more; ++i)
    {
        const unsigned char next = static_cast<unsigned char>(text[i]);
        if ((next & 0xC0) != 0x80)
            return Replacement;
        c = (c << 6) | (next & 0x3F);
    }
    if ((more == 2 && (c < 0x800 || (c >= 0xD800 && c < 0xE000))) || (more == 3 && (c < 0x10000 || c > 0x10FFFF)))
        return Replacement;
    text.remove_prefix(more);
    return c;
}

char LowerAscii(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

} // namespace

std::string ToUtf8(const SQLWCHAR *text, SQLLEN length)
{
    if (text == nullptr)
        return {};
    if (length < 0 && length != SQL_NTS)
        throw DriverError("HY090", "Invalid string or buffer length");
    std::string out;
    for (SQLLEN i = 0; length == SQL_NTS ? text[i] != 0 : i < length; ++i)
    {
        char32_t c = text[i];
        if (c >= 0xD800 && c < 0xE000)
        {
            const bool paired = c < 0xDC00 && (length == SQL_NTS || i + 1 < length) && (text[i + 1] & 0xFC00) == 0xDC00;
            c = paired ? 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00) : Replacement;
        }
        AppendUtf8(out, c);
    }
    return out;
}

void ToUtf16(std::string_view text, std::u16string &wide)
{
    wide.clear();
    while (!text.empty())
    {
        const char32_t c = TakeUtf8(text);
        if (c < 0x10000)
        {
            wide += static_cast<char16_t>(c);
            continue;
        }
        wide += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
        wide += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
    }
}

std::u16string ToUtf16(std::string_view text)
{
    std::u16string wide;
    ToUtf16(text, wide);
    return wide;
}

bool CopyOut(std::u16string_view wide, SQLWCHAR *buffer, SQLLEN capacity)
{
    if (buffer == nullptr || capacity <= 0)
        return !wide.empty() && buffer != nullptr;
    const size_t count = std::min(wide.size(), static_cast<size_t>(capacity - 1));
    std::copy_n(wide.data(), count, buffer);
    buffer[count] = 0;
    return count < wide.size();
}

bool EqualsIgnoringCase(std::string_view a, std::string_view b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerAscii(x) == LowerAscii(y); });
}

std::string_view TrimBlanks(std::string_view text)
{
    const size_t first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

std::vector<std::string> SplitList(std::string_view text, char separator)
{
    std::vector<std::string> parts;
    while (!text.empty())
    {
        const size_t end = std::min(text.find(separator), text.size());
        const std::string_view part = TrimBlanks(text.substr(0, end));
        if (!part.empty())
            parts.emplace_back(part);
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return parts;
}

std::string Escape(std::string_view text)
{
    std::string out;
    for (const char c : text)
    {
        switch (c)
        {
        case '\r':
            out += "\\r";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\t':
            out += "\\t";
            break;
        case '"':
        case '\\':
            out += '\\';
            [[fallthrough]];
        default:
            out += c;
        }
    }
    return out;
}

std::string Unescape(std::string_view text)
{
    std::string out;
    for (size_t i = 0; i < text.size(); ++i)
    {
        if (text[i] != '\\' || i + 1 == text.size())
        {
            out += text[i];
            continue;
        }
        const char c = text[++i];
        out += c == 'r' ? '\r' : c == 'n' ? '\n' : c == 't' ? '\t' : c;
    }
    return out;
}

} // namespace driver
