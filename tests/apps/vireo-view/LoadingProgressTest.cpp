#include "apps/vireo-view/LoadingProgress.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QProgressDialog>
#include <QPushButton>
#include <gtest/gtest.h>

#include "tests/support/userEvents.h"

namespace vireo_view {
namespace {

QProgressDialog* findDialog()
{
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* const dialog = qobject_cast<QProgressDialog*>(widget); dialog && dialog->isVisible())
            return dialog;
    return nullptr;
}

TEST(LoadingProgressTest, AWindowTellsHowFarItIsAndCancels)
{
    LoadingProgress progress(LoadingProgress::Way::WINDOW, "head.nii");
    const QDeadlineTimer deadline(30'000);
    while (!findDialog() && !deadline.hasExpired())
        EXPECT_TRUE(progress.update(0.25));
    QProgressDialog* const dialog = findDialog();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->labelText(), "Loading head.nii");
    EXPECT_EQ(dialog->value(), 25);
    tavo::clickMouse(dialog->findChild<QPushButton*>(), QPoint(5, 5));
    bool goesOn = true;
    while (goesOn && !deadline.hasExpired())
        goesOn = progress.update(0.5);
    EXPECT_FALSE(goesOn);
}

} // namespace
} // namespace vireo_view
