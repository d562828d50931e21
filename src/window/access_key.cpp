// Access keys in captions.
#include "window/access_key.h"

#include "runtime/text.h"

namespace window
{

char32_t AccessKey(std::string_view caption)
{
    for (auto mark = caption.find('&'); mark != std::string_view::npos && mark + 1 < caption.size();
         mark = caption.find('&', mark + 2))
        if (caption[mark + 1] != '&')
            return runtime::UpperCase(runtime::FirstCharacter(caption.substr(mark + 1)).code);
    return 0;
}

} // namespace window
