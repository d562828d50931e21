// The pictures on the command buttons as image lists.
#include "window/pictures.h"

#include "platform/windows/module.h"
#include "runtime/error.h"
#include "window/resources.h"

#include <cstdint>

namespace window
{

namespace
{

using Bitmap = platform::UniqueHandle<HBITMAP, [](HBITMAP bitmap) { DeleteObject(bitmap); }>;
using Icon = platform::UniqueHandle<HICON, [](HICON icon) { DestroyIcon(icon); }>;
using Device = platform::UniqueHandle<HDC, [](HDC device) { DeleteDC(device); }>;

// Buttons draw these: normal, hot, pressed, disabled, default, hot by pen.
constexpr int kStates = 6;
constexpr int kDisabled = 3;

int ResourceOf(editor::Picture picture)
{
    switch (picture)
    {
    case editor::Picture::Print:
        return KV_ICON_PRINT;
    case editor::Picture::Save:
        return KV_ICON_SAVE;
    case editor::Picture::Cancel:
        return KV_ICON_CANCEL;
    case editor::Picture::Add:
        return KV_ICON_ADD;
    case editor::Picture::Delete:
        return KV_ICON_DELETE;
    case editor::Picture::None:
        break;
    }
    return 0;
}

Icon LoadPicture(editor::Picture picture, int size)
{
    return Icon(static_cast<HICON>(LoadImageW(platform::ThisModule(), MAKEINTRESOURCEW(ResourceOf(picture)), IMAGE_ICON,
                                              size, size, LR_DEFAULTCOLOR)));
}

// Alpha, red, green and blue from the highest byte.
std::uint32_t Greyed(std::uint32_t pixel)
{
    const std::uint32_t alpha = pixel >> 24;
    const std::uint32_t light = ((pixel >> 16 & 0xFF) * 30 + (pixel >> 8 & 0xFF) * 59 + (pixel & 0xFF) * 11) / 100;
    const std::uint32_t grey = 96 + light * 5 / 8;
    return alpha * 6 / 10 << 24 | grey << 16 | grey << 8 | grey;
}

// The picture in grey, and fainter.
Bitmap GreyedBitmap(HICON icon, int size)
{
    ICONINFO parts{};
    if (!GetIconInfo(icon, &parts))
        return {};
    const Bitmap mask(parts.hbmMask), colour(parts.hbmColor);
    const Device device(CreateCompatibleDC(nullptr));
    BITMAPINFO description{};
    description.bmiHeader = {sizeof description.bmiHeader, size, -size, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void *bits = nullptr;
    Bitmap grey(CreateDIBSection(nullptr, &description, DIB_RGB_COLORS, &bits, nullptr, 0));
    if (!grey || !GetDIBits(device.get(), colour.get(), 0, static_cast<UINT>(size), bits, &description, DIB_RGB_COLORS))
        return {};
    auto *const pixels = static_cast<std::uint32_t *>(bits);
    for (int i = 0; i < size * size; ++i)
        pixels[i] = Greyed(pixels[i]);
    return grey;
}

} // namespace

PictureList MakePictureList(editor::Picture picture, int size)
{
    const Icon icon = LoadPicture(picture, size);
    const Bitmap grey = icon ? GreyedBitmap(icon.get(), size) : Bitmap();
    PictureList list(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, kStates, 0));
    bool added = grey && list;
    for (int state = 0; added && state < kStates; ++state)
        added = (state == kDisabled ? ImageList_Add(list.get(), grey.get(), nullptr)
                                    : ImageList_ReplaceIcon(list.get(), -1, icon.get())) == state;
    if (!added)
        runtime::Raise(runtime::kOutOfMemory);
    return list;
}

} // namespace window
