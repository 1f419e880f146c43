// The least program with a window that Qt Widgets can be: what every start costs. With a text as
// its argument the window shows it, which takes a font; with a second one it has what main windows
// have, a menu, a tool with an icon and a status bar.

#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QMenuBar>
#include <QStatusBar>
#include <QStyle>
#include <QToolBar>

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    QMainWindow window;
    if (argc > 1)
        window.setCentralWidget(new QLabel(QString::fromLocal8Bit(argv[1])));
    if (argc > 2) {
        QAction* const action = window.menuBar()->addMenu("File")->addAction("Open");
        action->setIcon(window.style()->standardIcon(QStyle::SP_DialogOpenButton));
        window.addToolBar("File")->addAction(action);
        window.statusBar();
    }
    window.resize(450, 180);
    window.show();
    return QApplication::exec();
}
