// An INI reader that finds what the Windows one finds.
#include "platform/profile.h"

#include "platform/code_page.h"
#include "platform/native_file.h"
#include "platform/posix/paths.h"
#include "runtime/text.h"

#include <fstream>
#include <string_view>

namespace platform
{

namespace
{

constexpr std::size_t kBufferSize = 128;

std::string_view TrimWhite(std::string_view text)
{
    constexpr std::string_view kWhite = " \t\r\n\v\f";
    const auto first = text.find_first_not_of(kWhite);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kWhite) - first + 1);
}

std::string_view Unquote(std::string_view text)
{
    if (text.size() >= 2 && (text.front() == '"' || text.front() == '\'') && text.front() == text.back())
        return text.substr(1, text.size() - 2);
    return text;
}

} // namespace

std::string ReadProfileString(const std::string &section, const std::string &key, const std::string &file)
{
    if (KindOf(file) != FileKind::File)
        return {};
    std::ifstream input(PosixPath(file), std::ios::binary);
    std::string line;
    bool inSection = false;
    while (std::getline(input, line))
    {
        const std::string text = FromAnsi(TrimWhite(line));
        if (text.empty() || text.front() == ';')
            continue;
        if (text.front() == '[')
        {
            const auto end = text.find(']');
            inSection = end != std::string::npos &&
                        runtime::EqualNoCase(TrimWhite(std::string_view(text).substr(1, end - 1)), section);
            continue;
        }
        const auto equals = text.find('=');
        if (!inSection || equals == std::string::npos ||
            !runtime::EqualNoCase(TrimWhite(std::string_view(text).substr(0, equals)), key))
            continue;
        const std::string bytes = ToAnsi(Unquote(TrimWhite(std::string_view(text).substr(equals + 1))));
        return FromAnsi(std::string_view(bytes).substr(0, kBufferSize - 1));
    }
    return {};
}

} // namespace platform
