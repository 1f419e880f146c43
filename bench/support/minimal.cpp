// The least program with a window that Qt Widgets can be: what every start costs. With a text as
// its argument the window shows it, which takes a font.

#include <QApplication>
#include <QLabel>
#include <QMainWindow>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    if (argc > 1)
        window.setCentralWidget(new QLabel(QString::fromLocal8Bit(argv[1])));
    window.resize(450, 180);
    window.show();
    return QApplication::exec();
}
