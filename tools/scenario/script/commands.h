// The commands of the scenario language: their names, and the words that go with each.
#pragma once

#include <string_view>

namespace scenario
{

enum class Verb
{
    Data,
    Exec,
    Query,
    Host,
    Site,
    Registry,
    Show,
    Tab,
    Choose,
    Pick,
    Column,
    Rename,
    Escape,
    Toggle,
    Click,
    Close,
    Answer,
    Fail,
    Cut,
    Refuse,
    Allow,
    Dump,
    Selected,
};

struct CommandForm
{
    std::string_view name;
    Verb verb;
    // The words behind the name, for people: upper case stands for a word, N and COUNT for whole numbers; "..." behind
    // the last one means one or more of it.
    std::string_view arguments;
    bool needsWindow; // acts on the open window
};

// The form of a name, or null.
const CommandForm *FindCommand(std::string_view name);

// The number of words a form asks for, without its name. With "..." it is the least.
std::size_t ArgumentCount(const CommandForm &form);
bool TakesMore(const CommandForm &form);
// The name of the argument at a place (from 0).
std::string_view ArgumentName(const CommandForm &form, std::size_t place);

} // namespace scenario
