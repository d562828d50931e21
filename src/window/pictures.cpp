// The pictures on the command buttons as image lists.
#include "window/pictures.h"

#include "runtime/error.h"
#include "window/drawing.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

namespace window
{

namespace
{

using Bitmap = platform::UniqueHandle<HBITMAP, [](HBITMAP bitmap) { DeleteObject(bitmap); }>;
using Pixels = std::vector<std::uint32_t>;

// Buttons draw these: normal, hot, pressed, disabled, default, hot by pen.
constexpr int kStates = 6;
constexpr int kDisabled = 3;

// The states side by side. Drawing takes its time, and the same pictures are wanted at every opening: they are kept.
const Pixels &Strip(editor::Picture picture, int size)
{
    static std::map<std::pair<editor::Picture, int>, Pixels> strips;
    const auto [found, isNew] = strips.try_emplace({picture, size});
    if (isNew)
    {
        const auto edge = static_cast<std::ptrdiff_t>(size);
        const Pixels normal = DrawPicture(picture, size);
        const Pixels grey = Greyed(normal);
        for (std::ptrdiff_t row = 0; row < edge; ++row)
            for (int state = 0; state < kStates; ++state)
            {
                const auto begin = (state == kDisabled ? grey : normal).begin() + row * edge;
                found->second.insert(found->second.end(), begin, begin + edge);
            }
    }
    return found->second;
}

Bitmap MakeBitmap(const Pixels &pixels, int width, int height)
{
    BITMAPINFO description{};
    description.bmiHeader.biSize = sizeof description.bmiHeader;
    description.bmiHeader.biWidth = width;
    description.bmiHeader.biHeight = -height; // the first row is the top one
    description.bmiHeader.biPlanes = 1;
    description.bmiHeader.biBitCount = 32;
    void *bits = nullptr;
    Bitmap bitmap(CreateDIBSection(nullptr, &description, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (bitmap)
        std::copy(pixels.begin(), pixels.end(), static_cast<std::uint32_t *>(bits));
    return bitmap;
}

} // namespace

PictureList MakePictureList(editor::Picture picture, int size)
{
    const Bitmap strip = MakeBitmap(Strip(picture, size), size * kStates, size);
    PictureList list(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, kStates, 0));
    if (!strip || !list || ImageList_Add(list.get(), strip.get(), nullptr) < 0)
        runtime::Raise(runtime::kOutOfMemory);
    return list;
}

} // namespace window
