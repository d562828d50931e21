// The commands of a script that mean the same in every play: see acts.h.
#include "play/acts.h"

#include "play/properties.h"
#include "script/failure.h"

namespace scenario
{

namespace
{

void Choose(const Command &command, Stage &stage)
{
    const std::string &name = command.Text(0);
    const ControlState state = stage.Read(name);
    const auto *const combo = std::get_if<ComboState>(&state);
    if (!combo)
        throw Refusal(name + " is not a drop-down list");
    const Word &entry = command.arguments[1];
    const int position = entry.quoted ? FindText(*combo, entry.text) : command.Number(1);
    if (position < 0 || position >= static_cast<int>(combo->entries.size()))
        throw Refusal(name + " has no entry " + entry.text);
    stage.Choose(name, position);
}

void Pick(const Command &command, Stage &stage)
{
    const std::string &name = command.Text(0);
    const ControlState state = stage.Read(name);
    const auto *const list = std::get_if<ListState>(&state);
    if (!list)
        throw Refusal(name + " is not a list");
    const Word &item = command.arguments[1];
    const int position = item.quoted ? FindText(*list, item.text) : FindKey(*list, item.text);
    if (position < 0)
        throw Refusal(name + " has no item " + item.text);
    stage.Pick(name, position);
}

} // namespace

void CarryOut(const Command &command, Stage &stage, Source &source)
{
    if (command.form->needsWindow && !stage.WindowIsOpen())
        throw Refusal("no window is open");
    switch (command.form->verb)
    {
    case Verb::Exec:
        return source.Connection().Run(command.Text(0));
    case Verb::Host:
        return stage.SetProperty(command.Text(0), ToProperty(command.Text(0), command.Text(1)));
    case Verb::Show:
        if (stage.WindowIsOpen())
            throw Refusal("the window is open already");
        source.Prepare();
        return stage.Show();
    case Verb::Fail:
        return source.Faults().Fail(command.Number(0), command.Text(1), command.Text(2));
    case Verb::Cut:
        return source.Faults().Cut(command.Text(0), command.Text(1));
    case Verb::Refuse:
        return source.Faults().RefuseConnects(command.Number(0));
    case Verb::Allow:
        return source.Faults().AllowConnects();
    case Verb::Tab:
        return stage.ShowTab(command.Number(0));
    case Verb::Choose:
        return Choose(command, stage);
    case Verb::Pick:
        return Pick(command, stage);
    case Verb::Column:
        return stage.ClickColumn(command.Text(0), command.Number(1));
    case Verb::Rename:
        return stage.Rename(command.Text(0), command.Text(1));
    case Verb::Escape:
        return stage.EscapeEdit(command.Text(0));
    case Verb::Toggle:
        return stage.Toggle(command.Text(0));
    case Verb::Click:
        return stage.Click(command.Text(0));
    case Verb::Close:
        return stage.Close();
    default:
        throw Refusal("the play knows no such command");
    }
}

} // namespace scenario
