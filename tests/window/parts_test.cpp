// The parts of the window that need none: access keys, scale, pictures.
#include "window/access_key.h"
#include "window/pictures.h"
#include "window/pixels.h"
#include "window/scale.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <utility>
#include <vector>

namespace
{

TEST(AccessKey, IsTheLetterBehindTheMark)
{
    for (const auto &[caption, key] : {std::pair("&Add", U'A'),
                                       {"Heading &Formats", U'F'},
                                       {"Add", U'\0'},
                                       {"", U'\0'},
                                       {"R&&D", U'\0'},
                                       {"R&&D &lab", U'L'},
                                       {"Trailing&", U'\0'},
                                       {"&\xC3\xA4", U'\xC4'}})
        EXPECT_EQ(window::AccessKey(caption), key) << caption;
}

// What it gives at all resolutions, layout_test.cpp sees on the form.
TEST(Scale, HasAnAxisForEachDirection)
{
    const window::Scale scale(96, 120);
    EXPECT_EQ(scale.X(1440), 96);
    EXPECT_EQ(scale.Y(1440), 120);
    EXPECT_DOUBLE_EQ(scale.TwipsX(7), 105);
    EXPECT_DOUBLE_EQ(scale.TwipsY(7), 84);
}

std::vector<COLORREF> Drawn(HIMAGELIST list, int image, int size)
{
    return window_tests::Drawn(size, RGB(255, 255, 255),
                               [=](HDC device) { ImageList_Draw(list, image, device, 0, 0, ILD_NORMAL); });
}

// At 96 to 288 dots per inch.
TEST(Pictures, EachIsOfItsOwnAndGreyWhereItsButtonIsDisabled)
{
    for (const int size : {32, 40, 48, 64, 80, 96})
    {
        std::set<std::vector<COLORREF>> seen;
        for (const auto picture : {editor::Picture::Print, editor::Picture::Save, editor::Picture::Cancel,
                                   editor::Picture::Add, editor::Picture::Delete})
        {
            const window::PictureList list = window::MakePictureList(picture, size);
            ASSERT_EQ(ImageList_GetImageCount(list.get()), 6);
            const std::vector<COLORREF> normal = Drawn(list.get(), 0, size), grey = Drawn(list.get(), 3, size);
            const auto covered = [](const std::vector<COLORREF> &pixels)
            { return std::count_if(pixels.begin(), pixels.end(), [](COLORREF c) { return c != RGB(255, 255, 255); }); };
            EXPECT_GT(covered(normal), size * size / 8) << size;
            EXPECT_GT(covered(grey), size * size / 8) << size;
            for (const COLORREF pixel : grey)
            {
                EXPECT_EQ(GetRValue(pixel), GetBValue(pixel));
                EXPECT_EQ(GetRValue(pixel), GetGValue(pixel));
            }
            EXPECT_EQ(normal.front(), RGB(255, 255, 255)) << "transparent beside the picture";
            EXPECT_EQ(grey.front(), RGB(255, 255, 255));
            seen.insert(normal);
        }
        EXPECT_EQ(seen.size(), 5u) << size;
    }
}

} // namespace
