// A scenario as it was read: see script.h.
#include "script/script.h"

#include "script/failure.h"

#include <charconv>

namespace scenario
{

namespace
{

bool ToNumber(const std::string &text, int &number)
{
    const char *const end = text.data() + text.size();
    const auto [stopped, problem] = std::from_chars(text.data(), end, number);
    return problem == std::errc() && stopped == end;
}

std::string Usage(const CommandForm &form)
{
    std::string usage(form.name);
    if (!form.arguments.empty())
        usage.append(" ").append(form.arguments);
    return usage;
}

void CheckArgument(const CommandForm &form, std::string_view name, const Word &word)
{
    int number = 0;
    if ((name == "N" || name == "COUNT") && (word.quoted || !ToNumber(word.text, number) || number < 0))
        throw Refusal("\"" + word.text + "\" is not a number: " + Usage(form));
    if (name == "WORD" && word.text != "OK" && word.text != "Yes" && word.text != "No")
        throw Refusal("\"" + word.text + "\" is not an answer: OK, Yes or No");
    if (name == "ENTRY" && !word.quoted && (!ToNumber(word.text, number) || number < 0))
        throw Refusal("an entry is a number or a text in quotes");
}

Command ParseCommand(Line line)
{
    Command command;
    const bool prefixed = !line.words.front().quoted;
    if (prefixed && line.words.front().text == "quiet" && line.words.size() > 1)
    {
        command.without = "";
        line.words.erase(line.words.begin());
    }
    else if (prefixed && line.words.front().text == "without" && line.words.size() > 2)
    {
        command.without = line.words[1].text;
        line.words.erase(line.words.begin(), line.words.begin() + 2);
    }
    const std::string &name = line.words.front().text;
    command.form = line.words.front().quoted ? nullptr : FindCommand(name);
    if (!command.form)
        throw Refusal("unknown command \"" + name + "\"");
    command.echo = std::move(line.echo);
    command.arguments.assign(line.words.begin() + 1, line.words.end());

    const std::size_t wanted = ArgumentCount(*command.form);
    const std::size_t given = command.arguments.size();
    if (given < wanted || (given > wanted && !TakesMore(*command.form)))
        throw Refusal("wrong number of words: " + Usage(*command.form));
    for (std::size_t i = 0; i < given; ++i)
        CheckArgument(*command.form, ArgumentName(*command.form, i), command.arguments[i]);
    return command;
}

} // namespace

int Command::Number(std::size_t place) const
{
    int number = -1;
    ToNumber(Text(place), number);
    return number;
}

Script ParseScript(const std::string &file, std::string_view text)
{
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    Script script{file, {}, {}};
    for (int number = 1; !text.empty(); ++number)
    {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        try
        {
            Line words = SplitLine(line);
            if (words.words.empty())
                continue;
            script.commands.push_back(ParseCommand(std::move(words)));
            script.commands.back().line = number;
        }
        catch (const Refusal &refusal)
        {
            throw Failure(file, number, refusal.what());
        }
    }
    return script;
}

} // namespace scenario
