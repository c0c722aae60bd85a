// The floor for starting up: the least a Qt program does to show an empty dialog of the size of
// the client's. Like the client it does without OpenGL, whose drivers would cost more than all
// else.
#include <QApplication>
#include <QDialog>

int main(int argc, char* argv[])
{
    qputenv("QT_XCB_GL_INTEGRATION", "none");
    QApplication app(argc, argv);
    QDialog dialog;
    dialog.resize(600, 400);
    return dialog.exec();
}
