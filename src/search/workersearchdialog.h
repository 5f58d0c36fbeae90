#ifndef WORKERSEARCHDIALOG_H
#define WORKERSEARCHDIALOG_H

#include "nvdialogs_export.h"

#include <nvtypes.h>
#include <objectinfo.h>
#include <typeinfo.h>

#include <QDialog>
#include <QMutex>
#include <QScopedPointer>
#include <QSet>
#include <QStringList>

#include <memory>

class CustomValueColumn;
class QModelIndex;
class QTimer;
class SubjectViewDelegate;
class USBCardReaderManager;

namespace nivaro {
class ObjectTreeProxy;
class ObjectTreeModel;
} // namespace nivaro

namespace Ui {
class WorkerSearchDialog;
}

/**
 * The cancel flag of the background custom-parameter search, process-wide:
 * one such search runs at a time. Read and written only under m_mutex.
 */
class NVDIALOGS_EXPORT WorkerSearchCancel
{
public:
    static QMutex m_mutex;
    static void setCancelled(bool cancelled);
    static bool isCancelled();

private:
    static bool m_cancelled;
};

/**
 * Finds employees and departments in the organisation tree by name or
 * personnel number (the store's orgstructure index, word by word), by card
 * number (typed, or read from a card reader) or by a custom parameter's
 * value (in the background), and shows the result as a filtered tree.
 * Activating a row asks the host to open the object (selectObject). What
 * was last searched is remembered for the next dialog of the process.
 *
 * Non-modal; owned by its Qt parent. Reads the process-wide LocalStorage.
 */
class NVDIALOGS_EXPORT WorkerSearchDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(WorkerSearchDialog)

public:
    explicit WorkerSearchDialog(QWidget *parent = nullptr);
    ~WorkerSearchDialog() override;

    // The worker type's description: its custom parameters are offered
    // as search types after the separator.
    void setTypeInfo(const nivaro::TypeInfo &info);

    // The custom-parameter search, run on the search thread over a column
    // built from a snapshot of the employees: it never touches the store.
    // Stops within 100 objects once WorkerSearchCancel is set, returning
    // what it found so far.
    static QSet<unsigned int> searchCustom(const CustomValueColumn &column, const QString &text);

    // The number a card with this "PT_UID" (upper-case hexadecimal) bears:
    // that text read as one hexadecimal number; 0 when it is none or does
    // not fit in 64 bits.
    static quint64 cardNumberFromUid(const QString &uidText);

    // The name and card searches over the store's indexes: the employees
    // that every word of `text` (lower-case) prefixes a name or number
    // of; the owners of the cards whose number the text prefixes, typed
    // plainly or in the site's view format.
    static QSet<unsigned int> searchName(const QString &text);
    static QSet<unsigned int> searchCard(const QString &text);

    // Shows exactly these objects and the path to them in the result tree.
    void applySearchResult(const QSet<unsigned int> &uids);

    // Forgets what earlier dialogs of the process remembered.
    static void resetSavedState();

    // Whether a custom search is running now.
    bool isSearching() const;
    // The uids the result tree shows (the last result with its ancestors).
    QSet<unsigned int> shownUids() const;
    nivaro::ObjectTreeProxy *resultProxy() const;

public Q_SLOTS:
    void search();
    void searchTextEdited();
    void searchTypeChanged();
    void readCard();
    void readCardSucceed(const nivaro::ObjectInfo &card);
    void readCardFailed();
    void readCardFinished();
    void waitCardTick();
    void setProgressFormat(const QString &format);
    void showCriticalMessage(const QString &text);
    void gotoWorker();
    void gotoWorker(const QModelIndex &index);
    void selectionChanged();
    void updateCanGotoWorker();
    void readerSelected(int row);
    void dataHasChanged(const QString &dataname, const QList<unsigned int> &uids);
    void dataHasRemoved(const QString &dataname, const QList<unsigned int> &uids);
    void showResultViewContextMenu(const QPoint &pos);

Q_SIGNALS:
    void selectObject(unsigned int uid);
    void workerSelected(const QList<unsigned int> &uids);
    void orgstructureSelected(const QList<unsigned int> &uids);
    void cardRead(unsigned int readerUid);
    void finishedReadCard();
    void failedMessage(const QString &text);

protected:
    void closeEvent(QCloseEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void searchByCustom(const QString &key);
    // Stops the running custom search and waits for it (it notices within
    // 100 objects); its result, arriving later, is dropped.
    void cancelCustomSearch();
    void setSearchControlsEnabled(bool enabled);
    void endCardWait();
    void fillSearchTypes();
    void fillReaders();
    void fileNumbers(const QList<unsigned int> &uids);
    QString currentSearchType() const;
    nivaro::TYPE_ID selectedUid() const;

    static QString _saved_search_type;
    static QString _saved_name;
    static QString _saved_card;
    static QString _saved_custom;
    static QStringList _saved_custom_list;
    static unsigned int _saved_selected_uid;

    QScopedPointer<Ui::WorkerSearchDialog> ui;
    nivaro::ObjectTreeModel *m_model = nullptr;
    nivaro::ObjectTreeProxy *m_proxy = nullptr;
    SubjectViewDelegate *m_delegate = nullptr;
    USBCardReaderManager *m_readerManager = nullptr;
    QTimer *m_tickTimer = nullptr;
    nivaro::TypeInfo m_typeInfo;
    bool m_readingCard = false;
    // The row to select when the first result arrives (the remembered one).
    nivaro::TYPE_ID m_pendingSelect = 0;
    // Bumped by every search and by closing: a background result whose
    // number is not the current one is stale and never shown.
    quint64 m_generation = 0;
    class SearchTask;
    std::unique_ptr<SearchTask> m_task;
};

#endif
