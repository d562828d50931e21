// What is drawn, pixel by pixel.
#pragma once

#include <windows.h>

#include <functional>
#include <vector>

namespace window_tests
{

// What is drawn on a square of one colour, black or white: the colours of its pixels.
inline std::vector<COLORREF> Drawn(int size, COLORREF ground, const std::function<void(HDC)> &draw)
{
    const HDC screen = GetDC(nullptr), device = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, size, size);
    const HGDIOBJ before = SelectObject(device, bitmap);
    PatBlt(device, 0, 0, size, size, ground == 0 ? BLACKNESS : WHITENESS);
    draw(device);
    std::vector<COLORREF> pixels;
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            pixels.push_back(GetPixel(device, x, y));
    SelectObject(device, before);
    DeleteObject(bitmap);
    DeleteDC(device);
    ReleaseDC(nullptr, screen);
    return pixels;
}

} // namespace window_tests
