// The commands of the scenario language: see commands.h.
#include "script/commands.h"

#include <algorithm>

namespace scenario
{

namespace
{

constexpr CommandForm kCommands[] = {
    {"data", Verb::Data, "FILE", false},
    {"exec", Verb::Exec, "SQL", false},
    {"query", Verb::Query, "SQL", false},
    {"host", Verb::Host, "NAME VALUE", false},
    {"site", Verb::Site, "SECTION KEY VALUE", false},
    {"registry", Verb::Registry, "KEY NAME VALUE", false},
    {"show", Verb::Show, "", false},
    {"tab", Verb::Tab, "N", true},
    {"choose", Verb::Choose, "COMBO ENTRY", true},
    {"pick", Verb::Pick, "LIST ITEM", true},
    {"column", Verb::Column, "LIST N", true},
    {"rename", Verb::Rename, "LIST TEXT", true},
    {"escape", Verb::Escape, "LIST", true},
    {"toggle", Verb::Toggle, "BOX", true},
    {"click", Verb::Click, "BUTTON", true},
    {"close", Verb::Close, "", true},
    {"answer", Verb::Answer, "WORD...", false},
    {"fail", Verb::Fail, "COUNT TEXT MESSAGE", false},
    {"cut", Verb::Cut, "STATE TEXT", false},
    {"refuse", Verb::Refuse, "COUNT", false},
    {"allow", Verb::Allow, "", false},
    {"dump", Verb::Dump, "NAME...", true},
    {"selected", Verb::Selected, "NAME...", true},
};

std::string_view WithoutDots(std::string_view arguments)
{
    return arguments.substr(0, arguments.find("..."));
}

} // namespace

const CommandForm *FindCommand(std::string_view name)
{
    const auto *const found = std::ranges::find(kCommands, name, &CommandForm::name);
    return found == std::end(kCommands) ? nullptr : found;
}

std::size_t ArgumentCount(const CommandForm &form)
{
    if (form.arguments.empty())
        return 0;
    return static_cast<std::size_t>(std::ranges::count(form.arguments, ' ')) + 1;
}

bool TakesMore(const CommandForm &form)
{
    return form.arguments.ends_with("...");
}

std::string_view ArgumentName(const CommandForm &form, std::size_t place)
{
    std::string_view rest = WithoutDots(form.arguments);
    for (; place > 0 && rest.find(' ') != std::string_view::npos; --place)
        rest.remove_prefix(rest.find(' ') + 1);
    return rest.substr(0, rest.find(' '));
}

} // namespace scenario
