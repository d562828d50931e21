// The pictures on the command buttons as image lists.
#include "window/pictures.h"

#include "runtime/error.h"
#include "window/drawing.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace window
{

namespace
{

using Bitmap = platform::UniqueHandle<HBITMAP, [](HBITMAP bitmap) { DeleteObject(bitmap); }>;
using Icon = platform::UniqueHandle<HICON, [](HICON icon) { DestroyIcon(icon); }>;

// Buttons draw these: normal, hot, pressed, disabled, default, hot by pen.
constexpr int kStates = 6;
constexpr int kDisabled = 3;

Icon MakeIcon(const std::vector<std::uint32_t> &pixels, int size)
{
    BITMAPINFO description{};
    description.bmiHeader.biSize = sizeof description.bmiHeader;
    description.bmiHeader.biWidth = size;
    description.bmiHeader.biHeight = -size; // the first row is the top one
    description.bmiHeader.biPlanes = 1;
    description.bmiHeader.biBitCount = 32;
    void *bits = nullptr;
    const Bitmap colour(CreateDIBSection(nullptr, &description, DIB_RGB_COLORS, &bits, nullptr, 0));
    // The picture carries its own transparency; the mask, of no effect, has an even number of bytes in a row.
    const std::vector<unsigned char> nothing(static_cast<std::size_t>((size + 15) / 16 * 2 * size));
    const Bitmap mask(CreateBitmap(size, size, 1, 1, nothing.data()));
    if (!colour || !mask)
        runtime::Raise(runtime::kOutOfMemory);
    std::copy(pixels.begin(), pixels.end(), static_cast<std::uint32_t *>(bits));
    ICONINFO icon{TRUE, 0, 0, mask.get(), colour.get()};
    return Icon(CreateIconIndirect(&icon));
}

} // namespace

PictureList MakePictureList(editor::Picture picture, int size)
{
    const std::vector<std::uint32_t> pixels = DrawPicture(picture, size);
    const Icon normal = MakeIcon(pixels, size);
    const Icon grey = MakeIcon(Greyed(pixels), size);
    PictureList list(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, kStates, 0));
    if (!normal || !grey || !list)
        runtime::Raise(runtime::kOutOfMemory);
    for (int state = 0; state < kStates; ++state)
        ImageList_ReplaceIcon(list.get(), -1, state == kDisabled ? grey.get() : normal.get());
    return list;
}

} // namespace window
