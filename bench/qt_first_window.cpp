// The time Qt alone takes from launch to its first window: a bare window
// titled like the main window, for bench/launch_time.sh.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    QWidget window;
    window.setWindowTitle("Vantrel");
    window.resize(800, 600);
    window.show();
    return app.exec();
}
