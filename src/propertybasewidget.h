#ifndef PROPERTYBASEWIDGET_H
#define PROPERTYBASEWIDGET_H

#include "nvdialogs_export.h"

#include <nvhash.h>
#include <objectinfo.h>
#include <taskinfo.h>

#include <QMap>
#include <QSet>
#include <QStringList>
#include <QWidget>

/**
 * Base of every property view that edits the objects selected in the
 * client's tree. The frame around the view hands it the selection with
 * setCurrent(), listens to its signals to drive Save / Close and the
 * message line, and calls applyChanges() on Save; the view answers with
 * one "save_object" task per changed object and never writes the store.
 */
class NVDIALOGS_EXPORT PropertyBaseWidget : public QWidget
{
    Q_OBJECT
public:
    explicit PropertyBaseWidget(QWidget *parent = nullptr);
    ~PropertyBaseWidget() override;

    virtual QString widgetUid() const = 0;
    virtual QStringList subPages() const;

    // The distinct values the objects hold for `key` in `values` (key ->
    // one value per object); an object missing from the list counts as
    // holding defaultValue. One element: all agree.
    static QSet<QString> paramsToSet(const QMap<QString, QStringList> &values, const QString &key,
                                     const QString &defaultValue = QString());

public Q_SLOTS:
    virtual void setCurrent(const nivaro::NVHash<unsigned int, nivaro::ObjectInfo> &objects) = 0;
    virtual void applyChanges() = 0;
    virtual void rejectChanges() = 0;
    virtual void saved(unsigned int uid) = 0;
    virtual void showSubPage(int page);

Q_SIGNALS:
    void dataEdited();
    void dataSaved();
    void enableSave(const QString &reason, bool enable);
    void enableClose(const QString &reason, bool enable);
    void appendTask(const nivaro::TaskInfo &task);
    void showMessage(const QString &message);
    void showCriticalMessage(const QString &message);

protected:
    /**
     * Sets the enabled state of every control from scratch: gives back what
     * the dismissed-employee rule turned off (inner widgets included), lets
     * the view apply its own rules (enableControls()), then applies the
     * dismissed rule to `selection`. Called after any change of selection,
     * rights or read-only mode, it leaves the view exactly as a new view
     * showing the same would be, whatever was shown before and in whatever
     * order the host called things.
     */
    void refreshControlStates(const nivaro::NVHash<unsigned int, nivaro::ObjectInfo> &selection);
    // The view's own rules: which controls the selection, the operator's
    // rights and read-only mode allow. Nothing by default.
    virtual void enableControls();

    /**
     * The save task of one object: a new task number, command
     * "save_object", "object_type" and "parent" from the record, one
     * "property-<key>" entry per changed parameter, this view as receiver
     * with reply slot "saved", and the running and failure texts with the
     * object's display name put in for %1.
     */
    nivaro::TaskInfo makeSaveTask(const nivaro::ObjectInfo &object,
                                  const QHash<QString, QString> &changed,
                                  const QString &startText, const QString &errorText);

    // The objects as the store holds them now, in the given collections;
    // uids it no longer has are left out.
    static nivaro::NVHash<unsigned int, nivaro::ObjectInfo> storedObjects(const QList<unsigned int> &uids,
                                                                        const QStringList &datanames);
    // What Cancel goes back to: the stored values, as the store holds them
    // now (the view's copies may be older than a change it was not free to
    // show while editing); an object the store no longer has keeps what was
    // shown.
    static nivaro::NVHash<unsigned int, nivaro::ObjectInfo>
    storedOrShown(const nivaro::NVHash<unsigned int, nivaro::ObjectInfo> &shown, const QStringList &datanames);
};

#endif
