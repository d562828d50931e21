// The pictures on the command buttons as image lists.
#pragma once

#include "editor/layout.h"
#include "platform/windows/handle.h"

#include <windows.h>

#include <commctrl.h>

namespace window
{

// Edge of a picture on a screen of 96 dots per inch, in pixels.
constexpr int kPictureSize = 32;

inline void DeletePictures(HIMAGELIST list)
{
    ImageList_Destroy(list);
}
using PictureList = platform::UniqueHandle<HIMAGELIST, &DeletePictures>;

// One image for each state that a button has, in the order that buttons want; the greyed one is grey. `size` is the
// edge in pixels. Error 7 when the system refuses.
PictureList MakePictureList(editor::Picture picture, int size);

} // namespace window
