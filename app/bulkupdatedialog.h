#ifndef BULKUPDATEDIALOG_H
#define BULKUPDATEDIALOG_H

#include <QDialog>
#include <QVariant>

class QCheckBox;
class QComboBox;
class QDateEdit;
class QStackedWidget;
namespace nivaro {
class LocalStorage;
}

/**
 * Asks which parameter a bulk update writes and its value: the end of
 * validity, the lock flag or the work schedule, each with an editor that
 * only accepts what the parameter can hold.
 */
class BulkUpdateDialog : public QDialog
{
    Q_OBJECT
public:
    BulkUpdateDialog(nivaro::LocalStorage *storage, int objectCount, QWidget *parent = nullptr);

    QString parameter() const;
    QVariant value() const;
    // Chooses the parameter by key; for tests and callers that know it.
    void setParameter(const QString &key);

    // The parameter's name as the dialog shows it, and a value of it in the
    // store's encoding as an operator reads it; for the summary of a run.
    static QString parameterName(const QString &key);
    static QString shownValue(const nivaro::LocalStorage *storage, const QString &key, const QString &value);

private:
    QComboBox *m_parameter;
    QStackedWidget *m_editors;
    QDateEdit *m_dateEnd;
    QCheckBox *m_locked;
    QComboBox *m_schedule;
};

#endif
