// The real window as the stage of the editor.
#include "window/register.h"

#include "window/form_window.h"

#include <memory>

namespace window
{

void Register()
{
    editor::SetFormViewFactory([](editor::StagedForm &form) -> std::unique_ptr<editor::FormView>
                               { return std::make_unique<FormWindow>(form); });
}

} // namespace window
