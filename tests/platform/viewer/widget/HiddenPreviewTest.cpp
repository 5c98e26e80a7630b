#include "Assemblies.h"
#include "platform/viewer/widget/PreviewWidget.h"

#include <gtest/gtest.h>

namespace pluvarine::test {
namespace {

// Hidden, the preview takes whole rebuilds; it holds the scene's save dialog while it lives, and
// the scene rebuilds without it afterwards. A preview never shown needs no display: this runs
// offscreen.
TEST(Preview, HiddenItTakesRebuildsAndHoldsTheSaveDialogWhileItLives) {
    ViewerScene scene;
    {
        PreviewWidget widget(scene);
        EXPECT_TRUE(scene.hasSaveDialog());
        EXPECT_TRUE(composeAssembly(scene, kBend42).design.modelBuilt);
    }
    EXPECT_FALSE(scene.hasSaveDialog());
    EXPECT_TRUE(composeAssembly(scene, kContinuous).design.modelBuilt);
}

} // namespace
} // namespace pluvarine::test
