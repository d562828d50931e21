// A person's press of a command button.
#include "editor/controls/button.h"

namespace editor::controls
{

bool Button::Click()
{
    return ByPerson(
        [this]
        {
            if (OnClick)
                OnClick();
        });
}

} // namespace editor::controls
