// A user's press of a command button.
#include "editor/controls/button.h"

namespace editor::controls
{

bool Button::Click()
{
    return ByUser(
        [this]
        {
            if (OnClick)
                OnClick();
        });
}

} // namespace editor::controls
