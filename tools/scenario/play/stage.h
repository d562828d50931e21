// Where a scenario is played: the component with its host, and a user at its window.
#pragma once

#include "play/control_state.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <variant>

namespace scenario
{

struct ShownBox
{
    int flags = 0; // message box flags, added up
    std::string title;
    std::string text;
};

// What happens on a stage while a command is carried out. Called on the player's thread.
class Audience
{
public:
    virtual ~Audience() = default;

    // A message box has come up. Returns the answer that it gets: OK, Yes or No, one that the box has.
    virtual std::string AnswerBox(const ShownBox &box) = 0;

    // The component has asked for the report to be opened.
    virtual void ReportOpened(const std::string &path) = 0;

    // ShowForm has returned.
    virtual void ShowFormReturned(int value) = 0;

    // For a stage whose ShowForm does not come back while the window is open: plays the commands that follow for as
    // long as `open` holds.
    virtual void PlayWhile(const std::function<bool()> &open) = 0;
};

// A property of the host's: a 16-bit number, a 32-bit number or a text.
using PropertyValue = std::variant<std::int16_t, std::int32_t, std::string>;

// Commands that cannot be carried out are a Refusal. Controls are named as in the window's layout.
class Stage
{
public:
    virtual ~Stage() = default;

    // --- The host
    virtual void SetProperty(const std::string &name, const PropertyValue &value) = 0;
    virtual void SetMachineRegistry(const std::string &key, const std::string &name, const std::string &value) = 0;
    // Calls ShowForm and returns when the window is open and idle, or when ShowForm has returned.
    virtual void Show() = 0;
    virtual bool WindowIsOpen() = 0;

    // --- The user. Each returns when everything it brings about has happened. Positions count from 0.
    virtual void ShowTab(int tab) = 0;
    virtual void Choose(const std::string &combo, int position) = 0;
    virtual void Pick(const std::string &list, int position) = 0;
    virtual void ClickColumn(const std::string &list, int column) = 0; // from 1
    virtual void Rename(const std::string &list, const std::string &text) = 0;
    virtual void EscapeEdit(const std::string &list) = 0;
    virtual void Toggle(const std::string &box) = 0;
    virtual void Click(const std::string &button) = 0;
    virtual void Close() = 0;

    virtual ControlState Read(const std::string &name) = 0;
};

} // namespace scenario
