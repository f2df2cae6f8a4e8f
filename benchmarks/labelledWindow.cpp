// A window with a menu and a button: what showing any text costs, beyond an empty window.

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>

int main(int argc, char* argv[])
{
    const QApplication application(argc, argv);
    QMainWindow window;
    window.menuBar()->addMenu(QStringLiteral("File"));
    window.setCentralWidget(new QPushButton(QStringLiteral("Button")));
    window.show();
    return QApplication::exec();
}
