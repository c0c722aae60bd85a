// The floor for starting up: the least a Qt program does to show an empty dialog of the size of
// the client's.
#include <QApplication>
#include <QDialog>

int main(int argc, char* argv[])
{
    QApplication app(argc, argv);
    QDialog dialog;
    dialog.resize(600, 400);
    return dialog.exec();
}
