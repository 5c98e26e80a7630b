#include <QApplication>
#include <gtest/gtest.h>

// Widget and GL tests need one QApplication for the whole program; the platform plugin comes
// from QT_QPA_PLATFORM (offscreen for widgets, xcb under Xvfb for rendering).
int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    QApplication app(argc, argv);
    return RUN_ALL_TESTS();
}
