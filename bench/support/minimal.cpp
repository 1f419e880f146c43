// The least program with a window that Qt Widgets can be: what every start costs.

#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    window.resize(450, 180);
    window.show();
    return QApplication::exec();
}
