#ifndef ORGPROPERTYVIEW_H
#define ORGPROPERTYVIEW_H

#include "pendingsaves.h"
#include "nvdialogs_export.h"
#include "propertybasewidget.h"

#include <QHash>
#include <QList>
#include <QSet>

#include <functional>

class QFormLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QTimer;

/**
 * The common part of the firm and department property views: text fields
 * bound to parameter keys, for one object or many at once. A field whose
 * values differ between the selected objects shows "(разные значения)"
 * and is written only when the user edits it; a field's check decides
 * whether Save is possible, and its reason is shown under the field.
 * Changes leave as one "save_object" task per changed object.
 */
class NVDIALOGS_EXPORT OrgPropertyView : public PropertyBaseWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(OrgPropertyView)
public:
    ~OrgPropertyView() override;

    // Read only by the caller's choice; a store that cannot be written
    // makes the view read only whatever this says.
    void setReadOnly(bool readOnly);
    bool isReadOnly() const;
    // Per selected object, the edited parameters whose value differs from
    // the stored one.
    QHash<unsigned int, QHash<QString, QString>> changedObjects() const;
    // Why Save is off; empty while it is on.
    QString saveBlock() const { return m_saveBlock; }

public Q_SLOTS:
    void setCurrent(const nivaro::NVHash<unsigned int, nivaro::ObjectInfo> &objects) override;
    void applyChanges() override;
    void rejectChanges() override;
    void saved(unsigned int uid) override;
    // Connected to the store: shows what another save or client changed.
    void dataChanged(const QString &dataname, const QList<unsigned int> &uids);

protected:
    // The reason a value cannot be saved, or the empty text.
    using Check = std::function<QString(const QString &value)>;

    explicit OrgPropertyView(QWidget *parent = nullptr);

    // Adds a captioned line edit (or plain text edit) for key, with the
    // reason label under it named after the editor plus "Problem".
    QLineEdit *addLine(const QString &objectName, const QString &caption, const QString &key,
                       const Check &check = Check(), const QString &placeholder = QString());
    QPlainTextEdit *addText(const QString &objectName, const QString &caption, const QString &key);
    // The running and failure texts of a save, %1 being the object's name.
    virtual QString startText() const = 0;
    virtual QString errorText() const = 0;
    void enableControls() override;

private:
    struct Field
    {
        QString key;
        QLineEdit *line = nullptr;
        QPlainTextEdit *text = nullptr;
        QLabel *problem = nullptr;
        Check check;
        QString placeholder; // shown while the field is empty and not mixed
    };

    void edited(int field);
    void showValues(const QSet<QString> &keep = {});
    bool uniformValue(const QString &key, QString *value) const;
    QString shownValue(const Field &field) const;
    void updateSaveState();
    void setSaveBlock(const QString &reason);
    void refreshFromStore();
    void finishSaving();
    nivaro::NVHash<unsigned int, nivaro::ObjectInfo> storedSelection() const;
    bool readOnlyNow() const;

    QFormLayout *m_form;
    QLineEdit *m_dbId;
    QTimer *m_refreshTimer;
    QList<Field> m_fields;
    nivaro::NVHash<unsigned int, nivaro::ObjectInfo> m_objects;
    QList<unsigned int> m_uids;
    QSet<QString> m_edited;
    PendingSaves m_pending;
    QString m_saveBlock;
    bool m_saveFailed = false;
    bool m_refreshOwed = false;
    bool m_readOnly = false;
    bool m_loading = false;
};

#endif
