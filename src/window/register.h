// The real window as the stage of the editor.
#pragma once

namespace window
{

// Makes real windows the stage of the component's forms. To be called once, at start.
void Register();

} // namespace window
