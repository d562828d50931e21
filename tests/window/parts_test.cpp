// The parts of the window that need none: access keys, scale, drawing.
#include "window/access_key.h"
#include "window/drawing.h"
#include "window/scale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <vector>

namespace
{

TEST(AccessKey, IsTheLetterBehindTheMark)
{
    struct Case
    {
        const char *caption;
        char32_t key;
    };
    for (const Case &test :
         {Case{"&Add", U'A'}, Case{"Heading &Formats", U'F'}, Case{"Add", 0}, Case{"", 0}, Case{"R&&D", 0},
          Case{"R&&D &lab", U'L'}, Case{"Trailing&", 0}, Case{"&\xC3\xA4", U'\xC4'}})
        EXPECT_EQ(window::AccessKey(test.caption), test.key) << test.caption;
}

TEST(Scale, TurnsTwipsIntoPixels)
{
    struct Case
    {
        int dots;
        LONG left, top, right, bottom;
    };
    for (const Case &test : {Case{96, 16, 328, 121, 361}, Case{120, 20, 410, 151, 451}, Case{144, 24, 492, 182, 542},
                             Case{192, 32, 656, 242, 722}})
    {
        const RECT place = window::Scale(test.dots, test.dots).Rectangle({240, 4920, 1575, 495});
        EXPECT_EQ(place.left, test.left) << test.dots;
        EXPECT_EQ(place.top, test.top) << test.dots;
        EXPECT_EQ(place.right, test.right) << test.dots;
        EXPECT_EQ(place.bottom, test.bottom) << test.dots;
    }
}

TEST(Scale, HasAnAxisForEachDirection)
{
    const window::Scale scale(96, 120);
    EXPECT_EQ(scale.X(1440), 96);
    EXPECT_EQ(scale.Y(1440), 120);
    EXPECT_DOUBLE_EQ(scale.TwipsX(7), 105);
    EXPECT_DOUBLE_EQ(scale.TwipsY(7), 84);
}

TEST(Scale, GivesTheFontItsHeight)
{
    EXPECT_EQ(window::Scale(96, 96).FontHeight(33), -11);
    EXPECT_EQ(window::Scale(192, 192).FontHeight(33), -22);
}

constexpr editor::Picture kPictures[] = {editor::Picture::Print, editor::Picture::Save, editor::Picture::Cancel,
                                         editor::Picture::Add, editor::Picture::Delete};

TEST(Drawing, EachPictureIsOfItsOwn)
{
    std::set<std::vector<std::uint32_t>> seen;
    for (const editor::Picture picture : kPictures)
        seen.insert(window::DrawPicture(picture, 32));
    EXPECT_EQ(seen.size(), std::size(kPictures));
}

TEST(Drawing, KeepsClearOfTheEdgeAtEverySize)
{
    for (const int size : {32, 40, 48, 64})
        for (const editor::Picture picture : kPictures)
        {
            const std::vector<std::uint32_t> pixels = window::DrawPicture(picture, size);
            ASSERT_EQ(pixels.size(), static_cast<std::size_t>(size * size));
            int opaque = 0;
            for (int i = 0; i < size * size; ++i)
            {
                const int x = i % size, y = i / size, margin = size / 8;
                const bool edge = std::min({x, y, size - 1 - x, size - 1 - y}) < margin;
                if (edge)
                {
                    EXPECT_EQ(pixels[static_cast<std::size_t>(i)] >> 24, 0u) << size << " " << x << "," << y;
                }
                opaque += pixels[static_cast<std::size_t>(i)] >> 24 == 255;
            }
            EXPECT_GT(opaque, size * size / 8);
        }
}

TEST(Drawing, GreyedIsGreyAndFainter)
{
    for (const editor::Picture picture : kPictures)
    {
        const std::vector<std::uint32_t> normal = window::DrawPicture(picture, 32), grey = window::Greyed(normal);
        EXPECT_NE(grey, normal);
        for (std::size_t i = 0; i < grey.size(); ++i)
        {
            EXPECT_EQ(grey[i] >> 16 & 0xFF, grey[i] & 0xFF);
            EXPECT_EQ(grey[i] >> 8 & 0xFF, grey[i] & 0xFF);
            EXPECT_EQ(grey[i] >> 24, (normal[i] >> 24) * 6 / 10);
        }
    }
}

} // namespace
