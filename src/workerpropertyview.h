#ifndef WORKERPROPERTYVIEW_H
#define WORKERPROPERTYVIEW_H

#include "pendingsaves.h"
#include "nvdialogs_export.h"
#include "propertybasewidget.h"

#include <QHash>
#include <QMap>
#include <QPixmap>
#include <QScopedPointer>
#include <QSet>

class INNValidator;
class QLineEdit;
class QTextDocument;
class QTimer;

namespace Ui {
class WorkerPropertyView;
}

/**
 * The employee's personal data: name, sex, birth date, citizenship,
 * identity document, SNILS, INN, photo and a description, for one employee
 * or many at once. Values that differ between the selected employees show
 * "(разные значения)" and are written only when the user edits them.
 * Changes leave as one "save_object" task per changed employee.
 */
class NVDIALOGS_EXPORT WorkerPropertyView : public PropertyBaseWidget
{
    Q_OBJECT
    Q_DISABLE_COPY(WorkerPropertyView)
public:
    explicit WorkerPropertyView(QWidget *parent = nullptr);
    ~WorkerPropertyView() override;

    QString widgetUid() const override;

    void setReadOnly(bool readOnly);
    void setBlobData(const QHash<unsigned int, QHash<QString, QByteArray>> &blobs);
    // Per selected employee, the parameters whose shown value differs from
    // the stored one, in the store's encoding.
    QHash<unsigned int, QHash<QString, QString>> changedObjects() const;
    void enablePersonalDataFields(const QMap<QString, bool> &restrictions);

    // The personal data sheet the print button previews, as HTML.
    QString personalDataSheet() const;

public Q_SLOTS:
    void setCurrent(const nivaro::NVHash<unsigned int, nivaro::ObjectInfo> &objects) override;
    void applyChanges() override;
    void rejectChanges() override;
    void saved(unsigned int uid) override;
    void validated(bool ok);
    void dataChanged(const QString &dataname, const QList<unsigned int> &uids);

Q_SIGNALS:
    void validationOk();
    void checkParameter(unsigned int uid, const QString &key, const QHash<QString, QString> &params);
    void newObject(const QString &type, unsigned int uid, const QHash<QString, QString> &params);

protected:
    // Opens the print preview of the sheet; tests replace it.
    virtual void openPrintPreview(QTextDocument *document);
    void enableControls() override;
    void changeEvent(QEvent *event) override;

private Q_SLOTS:
    void surnameEdited(const QString &text);
    void nameEdited(const QString &text);
    void patronymicEdited(const QString &text);
    void photoEdited(const QPixmap &photo);
    void genderEdited(int index);
    void docTypeEdited(const QString &text);
    void docSeriesEdited(const QString &text);
    void docNumberEdited(const QString &text);
    void birthdayEdited();
    void descriptionEdited();
    void snilsEdited(const QString &snils);
    void innChanged(const QString &text);
    void citizenshipActivated(int index);
    void printDocuments();
    void refreshFromStore();

private:
    void init();
    void initCitizenship();
    void fillCitizenship();
    void edited(const QString &key);
    void updateSaveState();
    void setSaveBlock(const QString &reason);
    bool uniformValue(const QString &key, QString *value) const;
    void showValues(const QSet<QString> &keep = {});
    void showText(QLineEdit *edit, const QString &key);
    void showBirthday();
    void markBirthday();
    void showGender();
    void showCitizenship();
    void showPhoto();
    void applyRestrictions();
    void keepSaved(unsigned int uid, const QHash<QString, QString> &changes);
    void finishSaving();
    nivaro::NVHash<unsigned int, nivaro::ObjectInfo> storedSelection() const;
    bool photosDenied() const;
    // The edited controls' values by key, photos left out where they are banned.
    QHash<QString, QString> editedValues() const;
    // Calls f(object, changes) once per selected employee with changes.
    template<typename F>
    void forEachChanged(F f) const;
    // The picture shown where there is no photo: the ban notice or "no photo".
    const QPixmap &placeholder() const;
    QString shownValue(const QString &key) const;
    QString citizenshipName(const QString &code) const;

    QScopedPointer<Ui::WorkerPropertyView> ui;
    INNValidator *m_innValidator;
    QTimer *m_refreshTimer;
    nivaro::NVHash<unsigned int, nivaro::ObjectInfo> m_objects;
    QList<unsigned int> m_uids;
    QSet<QString> m_edited;
    // What each outstanding save task wrote, applied to m_objects on saved().
    PendingSaves m_pending;
    bool m_saveFailed = false;  // a reply of the current save was a failure
    bool m_refreshOwed = false; // the store changed while saves were out
    QString m_saveBlock;        // why Save is off; empty while it is on
    QMap<QString, bool> m_restrictions;
    mutable QPixmap m_noPhotoPicture;
    mutable QPixmap m_banPicture;
    bool m_readOnly = false;
    bool m_loading = false;
};

#endif
