#ifndef SEARCHPAGE_H
#define SEARCHPAGE_H

#include <nvtypes.h>
#include <typeinfo.h>

#include <QString>

class MainWindow;
class WorkerSearchDialog;

namespace nivaro {
class ObjectInfo;
}

/**
 * The employee search in nvstudio: Ctrl+F opens the search dialog beside
 * the main window, and the object it asks for is selected and shown in
 * the tree. Also the sample custom parameters of employees that the
 * custom-parameter search finds.
 */
class SearchPage
{
public:
    // The worker type as the sample server describes it: the custom
    // parameters locker number, car plate and shoe size.
    static nivaro::TypeInfo workerType();
    // Gives a generated employee sample values of those parameters, from
    // its own sequence so the rest of the organisation stays as it was.
    static void addSampleCustomParams(nivaro::ObjectInfo *worker, int index);

    // Adds the search action (Ctrl+F) to the window and its Edit menu.
    static void install(MainWindow *window);
    // The window's one search dialog, created on first use.
    static WorkerSearchDialog *open(MainWindow *window);

    // Opens the dialog, searches `text` by name and saves a picture of it.
    static bool saveScreenshot(MainWindow *window, const QString &text, const QString &fileName, QString *error);
};

#endif
