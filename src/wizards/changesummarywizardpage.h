#ifndef CHANGESUMMARYWIZARDPAGE_H
#define CHANGESUMMARYWIZARDPAGE_H

#include "nvdialogs_export.h"

#include <nvtypes.h>
#include <nvwizardpage.h>

#include <QList>
#include <QString>

class QTreeWidget;
class QLabel;

/**
 * What a wizard is about to do, shown before anything runs: one entry per
 * object, and under it each field with its old and new value. The page
 * that follows it runs exactly these changes, so the operator confirms
 * the run by going on from here.
 */
class NVDIALOGS_EXPORT ChangeSummaryWizardPage : public NVWizardPage
{
    Q_OBJECT
public:
    struct Field
    {
        QString name;     // as the operator knows it ("Фамилия")
        QString oldValue; // empty for a new object
        QString newValue;
    };
    struct Change
    {
        nivaro::TYPE_ID uid = 0; // 0: the object is created
        QString object;          // display name
        QString action;          // "Создание", "Перевод", "Увольнение", "Удаление", "Изменение"
        QList<Field> fields;
    };

    explicit ChangeSummaryWizardPage(QWidget *parent = nullptr);

    void setChanges(const QList<Change> &changes);
    QList<Change> changes() const { return m_changes; }
    // Plain text of the summary, one line per object and per field.
    QString summaryText() const;
    QTreeWidget *view() const { return m_view; }

private:
    QList<Change> m_changes;
    QLabel *m_header = nullptr;
    QTreeWidget *m_view = nullptr;
};

#endif
