// Quote doubling: how a text gets into a statement.
#include "store/modDataActivity.h"

namespace store
{

std::string DoubleQuotes(std::string_view text)
{
    std::string doubled;
    doubled.reserve(text.size());
    for (auto quote = text.find('\''); quote != std::string_view::npos; quote = text.find('\''))
    {
        doubled.append(text.substr(0, quote + 1)) += '\'';
        text.remove_prefix(quote + 1);
    }
    return doubled.append(text);
}

} // namespace store
