// The component's windows as the host side knows them: a list of those that are loaded, and how one is made by name.
#pragma once

#include "platform/desktop.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace host
{

// A place on the screen in twips.
struct Rectangle
{
    double left = 0;
    double top = 0;
    double width = 0;
    double height = 0;
};

// A window of the component. It is in LoadedForms() from the start of its load to the end of its unload.
class Form
{
public:
    virtual ~Form() = default;

    virtual std::string Name() const = 0;

    // The native window; null before it is made and on a stage without windows.
    virtual platform::WindowHandle Handle() const = 0;

    virtual Rectangle Bounds() const = 0;

    // Loads the window if it is not loaded, shows it modally and returns when it has been unloaded; a window that is
    // modal already is brought to the front. Not to be called while a handler runs. Nothing escapes.
    virtual void ShowModal() = 0;
};

// The loaded windows, in the order of loading.
std::vector<Form *> &LoadedForms();

// Makes the single default instance of a window. `name` is the window's name.
using FormFactory = std::function<std::unique_ptr<Form>()>;
void SetFormFactory(const std::string &name, FormFactory factory);

// The default instance of that name, made when it does not exist. Error 91 when no factory has been set for it.
Form &DefaultForm(const std::string &name);

// Forgets the default instance. Called when its ShowModal has returned.
void ReleaseDefaultForm(const std::string &name);

} // namespace host
