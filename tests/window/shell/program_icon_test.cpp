#include "window/shell/program_icon.h"

#include <gtest/gtest.h>

#include <QPixmap>

#include <algorithm>
#include <vector>

namespace varda {

using namespace window;
namespace {

TEST(ProgramIcon, HasItsOwnPictureForEverySize) {
    std::vector<int> widths;
    for (const QSize& size : programIcon().availableSizes()) {
        EXPECT_EQ(size.width(), size.height());
        widths.push_back(size.width());
    }
    std::ranges::sort(widths);
    EXPECT_EQ(widths, (std::vector<int>{16, 24, 32, 48, 64, 128, 256}));
}

TEST(ProgramIcon, LeavesOutWhatIsTooLarge) {
    const QList<QSize> sizes = programIcon(64).availableSizes();
    EXPECT_EQ(std::ranges::max(sizes, {}, &QSize::width), QSize(64, 64));
    EXPECT_EQ(sizes.size(), 5);
}

TEST(ProgramIcon, IsOpaqueInTheMiddleAndClearInTheCorners) {
    const QIcon icon = programIcon();
    for (const QSize& size : icon.availableSizes()) {
        const QImage picture = icon.pixmap(size).toImage();
        ASSERT_EQ(picture.size(), size);
        EXPECT_EQ(picture.pixelColor(picture.rect().center()).alpha(), 255) << size.width();
        EXPECT_LT(picture.pixelColor(0, 0).alpha(), 128) << size.width();
    }
}

} // namespace
} // namespace varda
