// The yardstick for the program's start-up: a minimal Qt Widgets program with one
// QOpenGLWidget, which ends as soon as its window is shown and its first frame is on the screen.
#include <QApplication>
#include <QMainWindow>
#include <QOpenGLFunctions>
#include <QOpenGLWidget>
#include <QTimer>

namespace {

class ClearingView : public QOpenGLWidget, protected QOpenGLFunctions {
protected:
    void initializeGL() override { initializeOpenGLFunctions(); }
    void paintGL() override {
        glClearColor(0.9f, 0.92f, 0.95f, 1.0f);
        glClear(GL_COLOR_BUFFER_BIT);
    }
};

} // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QMainWindow window;
    auto* view = new ClearingView;
    window.setCentralWidget(view);
    window.resize(1200, 640);
    QObject::connect(view, &QOpenGLWidget::frameSwapped, &app,
                     [] { QTimer::singleShot(0, qApp, &QCoreApplication::quit); });
    window.show();
    return QApplication::exec();
}
