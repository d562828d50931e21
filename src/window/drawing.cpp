// Pictures as a few shapes on a square of 32 by 32, drawn with soft edges.
#include "window/drawing.h"

#include <cstddef>

namespace window
{

namespace
{

struct Point
{
    double x;
    double y;
};

// A polygon, or a disc where there are no corners.
struct Shape
{
    std::uint32_t colour; // red, green, blue
    std::vector<Point> corners;
    Point centre{0, 0};
    double radius = 0;
};

Shape Box(std::uint32_t colour, double left, double top, double right, double bottom)
{
    return {colour, {{left, top}, {right, top}, {right, bottom}, {left, bottom}}};
}

Shape Disc(std::uint32_t colour, double radius)
{
    return {colour, {}, {16, 16}, radius};
}

// A cross of two bars around the middle, upright or lying on its corners.
Shape Cross(std::uint32_t colour, double reach, double halfWidth, bool upright)
{
    const double r = reach, w = halfWidth;
    std::vector<Point> corners = {{-w, -r}, {w, -r}, {w, -w}, {r, -w}, {r, w},   {w, w},
                                  {w, r},   {-w, r}, {-w, w}, {-r, w}, {-r, -w}, {-w, -w}};
    constexpr double kHalfRoot = 0.70710678;
    for (Point &corner : corners)
    {
        if (!upright)
            corner = {(corner.x - corner.y) * kHalfRoot, (corner.x + corner.y) * kHalfRoot};
        corner = {corner.x + 16, corner.y + 16};
    }
    return {colour, corners};
}

// From the bottom to the top.
std::vector<Shape> Shapes(editor::Picture picture)
{
    switch (picture)
    {
    case editor::Picture::Add:
        return {Cross(0x1B6B2F, 9.5, 4, true), Cross(0x3FAE58, 8.5, 3, true)};
    case editor::Picture::Delete:
        return {Cross(0x8E1B1B, 11, 3.5, false), Cross(0xD94040, 9.8, 2.4, false)};
    case editor::Picture::Cancel:
        return {Disc(0x8E1B1B, 10.5), Disc(0xD94040, 9.5), Cross(0xFFFFFF, 6.5, 1.7, false)};
    case editor::Picture::Print:
        return {Box(0x7A7A7A, 10, 5, 22, 14),  Box(0xFFFFFF, 11, 6, 21, 14),  Box(0x3E4A5A, 5, 12, 27, 23),
                Box(0x8796AA, 6, 13, 26, 22),  Box(0x3FAE58, 22, 15, 24, 17), Box(0x7A7A7A, 9, 19, 23, 28),
                Box(0xFFFFFF, 10, 20, 22, 27), Box(0x5A6A7E, 12, 22, 20, 23), Box(0x5A6A7E, 12, 24.5, 18, 25.5)};
    case editor::Picture::Save:
        return {{0x1D3A6E, {{5, 5}, {24, 5}, {27, 8}, {27, 27}, {5, 27}}},
                {0x3E6DB5, {{6, 6}, {23.6, 6}, {26, 8.4}, {26, 26}, {6, 26}}},
                Box(0xD8DEE8, 10, 6, 22, 13),
                Box(0x1D3A6E, 18, 7, 20.5, 12),
                Box(0xFFFFFF, 9, 16, 23, 26),
                Box(0x8796AA, 11, 18.5, 21, 19.5),
                Box(0x8796AA, 11, 21.5, 21, 22.5)};
    case editor::Picture::None:
        break;
    }
    return {};
}

bool Covers(const Shape &shape, Point at)
{
    if (shape.corners.empty())
    {
        const double x = at.x - shape.centre.x, y = at.y - shape.centre.y;
        return x * x + y * y <= shape.radius * shape.radius;
    }
    bool inside = false;
    Point previous = shape.corners.back();
    for (const Point corner : shape.corners)
    {
        if ((corner.y > at.y) != (previous.y > at.y) &&
            at.x < (previous.x - corner.x) * (at.y - corner.y) / (previous.y - corner.y) + corner.x)
            inside = !inside;
        previous = corner;
    }
    return inside;
}

const Shape *TopShape(const std::vector<Shape> &shapes, Point at)
{
    for (auto shape = shapes.rbegin(); shape != shapes.rend(); ++shape)
        if (Covers(*shape, at))
            return &*shape;
    return nullptr;
}

// The mean of what lies under a pixel.
std::uint32_t Pixel(const std::vector<Shape> &shapes, int x, int y, double scale)
{
    constexpr int kSamples = 4;
    unsigned covered = 0, red = 0, green = 0, blue = 0;
    for (int i = 0; i < kSamples * kSamples; ++i)
    {
        const Point at{(x + (i % kSamples + 0.5) / kSamples) * scale, (y + (i / kSamples + 0.5) / kSamples) * scale};
        if (const Shape *const shape = TopShape(shapes, at))
        {
            ++covered;
            red += shape->colour >> 16 & 0xFF;
            green += shape->colour >> 8 & 0xFF;
            blue += shape->colour & 0xFF;
        }
    }
    if (covered == 0)
        return 0;
    const unsigned alpha = covered * 255 / (kSamples * kSamples);
    return alpha << 24 | red / covered << 16 | green / covered << 8 | blue / covered;
}

} // namespace

std::vector<std::uint32_t> DrawPicture(editor::Picture picture, int size)
{
    const std::vector<Shape> shapes = Shapes(picture);
    std::vector<std::uint32_t> pixels;
    pixels.reserve(static_cast<std::size_t>(size) * static_cast<std::size_t>(size));
    for (int y = 0; y < size; ++y)
        for (int x = 0; x < size; ++x)
            pixels.push_back(Pixel(shapes, x, y, 32.0 / size));
    return pixels;
}

std::vector<std::uint32_t> Greyed(std::vector<std::uint32_t> pixels)
{
    for (std::uint32_t &pixel : pixels)
    {
        const std::uint32_t alpha = pixel >> 24;
        const std::uint32_t light = ((pixel >> 16 & 0xFF) * 30 + (pixel >> 8 & 0xFF) * 59 + (pixel & 0xFF) * 11) / 100;
        const std::uint32_t grey = 96 + light * 5 / 8;
        pixel = alpha * 6 / 10 << 24 | grey << 16 | grey << 8 | grey;
    }
    return pixels;
}

} // namespace window
