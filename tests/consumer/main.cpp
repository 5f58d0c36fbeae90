// Uses the installed headers and libraries the way a client would: a record
// from the platform layer and the library's employee view.
#include <objectinfo.h>
#include <objecttypes.h>
#include <workerpropertyview.h>

#include <QApplication>
#include <QTextStream>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);

    const nivaro::ObjectInfo worker(42, nivaro::OT_WORKER);
    WorkerPropertyView view;
    view.show();
    QCoreApplication::processEvents();

    QTextStream(stdout) << "consumer: ObjectInfo uid " << QString::number(worker.uid()) << ", view "
                        << view.metaObject()->className() << '\n';
    return worker.uid() == 42 && view.isVisible() ? 0 : 1;
}
