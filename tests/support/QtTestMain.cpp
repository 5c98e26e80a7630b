#include <QApplication>
#include <gtest/gtest.h>

// Widget and GL tests need one QApplication for the whole program; the platform plugin comes
// from QT_QPA_PLATFORM (offscreen for widgets, xcb under Xvfb for rendering). Listing the tests
// needs none, so ctest finds them without a display (`ctest -L unit` runs anywhere).
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    if (::testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
