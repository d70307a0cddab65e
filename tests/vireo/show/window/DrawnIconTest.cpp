#include <QPixmap>
#include <QWidget>
#include <gtest/gtest.h>

#include "vireo/show/scenes/colourIcon.h"
#include "vireo/show/window/SymbolIcon.h"

namespace tavo {
namespace {

// Layouts ask for such sizes where a window is too small for its buttons. Qt would warn of painting on them.
TEST(DrawnIconTest, HasAnEmptyPictureOfAnEmptySize)
{
    const QWidget widget;
    for (const QIcon& icon : {symbolIcon(Symbol::Close, &widget), colourIcon({RGBA8(1, 2, 3, 255)})}) {
        for (const QSize size : {QSize(0, 0), QSize(0, 16), QSize(16, 0), QSize(-1, -1)})
            EXPECT_TRUE(icon.pixmap(size).isNull());
        EXPECT_EQ(icon.pixmap(QSize(16, 12)).size(), QSize(16, 12));
    }
}

} // namespace
} // namespace tavo
