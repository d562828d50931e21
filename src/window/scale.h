// From twips (1440 to the inch) to the pixels of the screen, and back.
#pragma once

#include "editor/controls/control.h"

#include <windows.h>

namespace window
{

class Scale
{
public:
    // Dots per inch in each axis.
    Scale(int dotsX, int dotsY) : m_dotsX(dotsX), m_dotsY(dotsY) {}
    static Scale OfScreen();

    int X(int twips) const { return MulDiv(twips, m_dotsX, kTwipsPerInch); }
    int Y(int twips) const { return MulDiv(twips, m_dotsY, kTwipsPerInch); }

    // Neighbours in twips are neighbours in pixels: edges are rounded, not sizes.
    RECT Rectangle(const editor::controls::Rectangle &bounds) const
    {
        return {X(bounds.left), Y(bounds.top), X(bounds.left + bounds.width), Y(bounds.top + bounds.height)};
    }

    double TwipsX(int pixels) const { return static_cast<double>(pixels) * kTwipsPerInch / m_dotsX; }
    double TwipsY(int pixels) const { return static_cast<double>(pixels) * kTwipsPerInch / m_dotsY; }

    // A length that is given in pixels of a screen of 96 dots per inch.
    int Pixels(int at96) const { return MulDiv(at96, m_dotsY, 96); }

    // The height that CreateFont takes for a font size in quarter points.
    int FontHeight(int quarterPoints) const { return -MulDiv(quarterPoints, m_dotsY, 72 * 4); }

private:
    static constexpr int kTwipsPerInch = 1440;
    int m_dotsX;
    int m_dotsY;
};

} // namespace window
