#include "searchpage.h"

#include "mainwindow.h"

#include <nvcustomparams.h>
#include <objectinfo.h>
#include <objecttypes.h>
#include <workersearchdialog.h>

#include <QAction>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QLineEdit>
#include <QMenu>
#include <QPixmap>
#include <QPointer>
#include <QRandomGenerator>

namespace {
const QString LockerNumber = QStringLiteral("CP_LOCKER_NUMBER");
const QString CarPlate = QStringLiteral("CP_CAR_PLATE");
const QString ShoeSize = QStringLiteral("CP_SHOE_SIZE");
const char DialogProperty[] = "nvstudio_search_dialog";
} // namespace

nivaro::TypeInfo SearchPage::workerType()
{
    nivaro::TypeInfo type(nivaro::OT_WORKER, QCoreApplication::translate("SearchPage", "Сотрудник"));
    type.addCustomParam(LockerNumber, QCoreApplication::translate("SearchPage", "Номер шкафчика"));
    type.addCustomParam(CarPlate, QCoreApplication::translate("SearchPage", "Госномер автомобиля"));
    type.addCustomParam(ShoeSize, QCoreApplication::translate("SearchPage", "Размер обуви"));
    return type;
}

void SearchPage::addSampleCustomParams(nivaro::ObjectInfo *worker, int index)
{
    QRandomGenerator rng(quint32(index) * 2654435761u + 17u);
    // Letters that Russian plates share with the Latin alphabet.
    static const QString plateLetters = QStringLiteral("АВЕКМНОРСТУХ");
    const auto letter = [&] { return plateLetters.at(rng.bounded(plateLetters.size())); };
    if (rng.bounded(100) < 70)
        worker->setParameter(LockerNumber, QStringLiteral("Ш-%1").arg(rng.bounded(1, 400), 3, 10, QLatin1Char('0')));
    if (rng.bounded(100) < 30)
        worker->setParameter(CarPlate, QStringLiteral("%1%2%3%4 %5")
                                           .arg(letter())
                                           .arg(rng.bounded(1, 1000), 3, 10, QLatin1Char('0'))
                                           .arg(letter())
                                           .arg(letter())
                                           .arg(rng.bounded(2) ? 77 : 197));
    if (rng.bounded(100) < 80)
        worker->setParameter(ShoeSize, QString::number(rng.bounded(36, 47)));
}

void SearchPage::install(MainWindow *window)
{
    NVCustomParams::registerType(workerType());
    auto *action = new QAction(QCoreApplication::translate("SearchPage", "Поиск сотрудника…"), window);
    action->setObjectName(QStringLiteral("searchAction"));
    action->setShortcut(QKeySequence::Find);
    action->setShortcutContext(Qt::ApplicationShortcut);
    QObject::connect(action, &QAction::triggered, window, [window] { open(window); });
    window->addAction(action);
    // Beside the bulk update, in whatever menu holds it.
    const QList<QWidget *> holders = window->bulkUpdateAction()->associatedWidgets();
    for (QWidget *holder : holders) {
        if (auto *menu = qobject_cast<QMenu *>(holder))
            menu->addAction(action);
    }
}

WorkerSearchDialog *SearchPage::open(MainWindow *window)
{
    auto *dialog = window->property(DialogProperty).value<WorkerSearchDialog *>();
    if (!dialog) {
        dialog = new WorkerSearchDialog(window);
        dialog->setObjectName(QStringLiteral("workerSearchDialog"));
        dialog->setTypeInfo(workerType());
        QObject::connect(dialog, &WorkerSearchDialog::selectObject, window, [window](unsigned int uid) {
            window->selectUids({uid});
            window->activateWindow();
        });
        window->setProperty(DialogProperty, QVariant::fromValue(dialog));
    }
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    return dialog;
}

bool SearchPage::saveScreenshot(MainWindow *window, const QString &text, const QString &fileName, QString *error)
{
    WorkerSearchDialog *dialog = open(window);
    auto *combo = dialog->findChild<QComboBox *>(QStringLiteral("searchTypeCombo"));
    combo->setCurrentIndex(combo->findData(QStringLiteral("hidden/fio")));
    dialog->searchTypeChanged();
    dialog->findChild<QLineEdit *>(QStringLiteral("searchEdit"))->setText(text);
    dialog->search();
    QCoreApplication::processEvents();
    const QPixmap picture = dialog->grab();
    if (picture.isNull() || !picture.save(fileName)) {
        *error = QCoreApplication::translate("SearchPage", "Не удалось сохранить снимок окна в %1")
                     .arg(QDir::toNativeSeparators(fileName));
        return false;
    }
    return true;
}
