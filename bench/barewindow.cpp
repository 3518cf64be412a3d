// The least that a program with a table in its window can be.

#include <QApplication>
#include <QMainWindow>
#include <QStandardItemModel>
#include <QTableView>

int main(int argc, char **argv)
{
    QApplication application(argc, argv);
    QStandardItemModel model(0, 10);
    QMainWindow window;
    auto *view = new QTableView(&window);
    view->setModel(&model);
    window.setCentralWidget(view);
    window.resize(900, 700);
    window.show();
    return QApplication::exec();
}
