#include "orgpropertyview.h"

#include "nvdialogsutils.h"

#include <datanames.h>
#include <localstorage.h>
#include <nvglobals.h>

#include <QCoreApplication>
#include <QDebug>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

using nivaro::ObjectInfo;

namespace {

QString mixedText()
{
    return QCoreApplication::translate("OrgPropertyView", "(разные значения)");
}

// Long enough for any real name or address; a pasted page stops here,
// where the operator sees the limit.
constexpr int MaxLineLength = 500;
constexpr int MaxDescriptionLength = 4000;

} // namespace

OrgPropertyView::OrgPropertyView(QWidget *parent)
    : PropertyBaseWidget(parent)
    , m_form(new QFormLayout)
    , m_dbId(new QLineEdit(this))
    , m_refreshTimer(new QTimer(this))
{
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(m_form);
    layout->addStretch(1);
    m_form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    m_dbId->setObjectName(QStringLiteral("leDbId"));
    m_dbId->setReadOnly(true);
    m_form->addRow(tr("Идентификатор БД"), m_dbId);

    // Many tasks answered in a row each report changed data; one refresh
    // after the burst is enough.
    m_refreshTimer->setSingleShot(true);
    m_refreshTimer->setInterval(0);
    connect(m_refreshTimer, &QTimer::timeout, this, &OrgPropertyView::refreshFromStore);
    connect(nivaro::LocalStorage::instance(), &nivaro::LocalStorage::dataChanged, this, &OrgPropertyView::dataChanged);
}

OrgPropertyView::~OrgPropertyView() = default;

QLineEdit *OrgPropertyView::addLine(const QString &objectName, const QString &caption, const QString &key,
                                    const Check &check, const QString &placeholder)
{
    auto *edit = new QLineEdit(this);
    edit->setObjectName(objectName);
    NVDialogsUtils::limitTextInput(edit, MaxLineLength);
    auto *problem = new QLabel(this);
    problem->setObjectName(objectName + QStringLiteral("Problem"));
    problem->setWordWrap(true);
    problem->setStyleSheet(QStringLiteral("color: #b00020;"));
    problem->hide();
    m_form->insertRow(m_form->rowCount() - 1, caption, edit);
    m_form->insertRow(m_form->rowCount() - 1, QString(), problem);
    const int index = m_fields.size();
    m_fields.append(Field{key, edit, nullptr, problem, check, placeholder});
    edit->setPlaceholderText(placeholder);
    connect(edit, &QLineEdit::textChanged, this, [this, index] { edited(index); });
    return edit;
}

QPlainTextEdit *OrgPropertyView::addText(const QString &objectName, const QString &caption, const QString &key)
{
    auto *edit = new QPlainTextEdit(this);
    edit->setObjectName(objectName);
    edit->setTabChangesFocus(true);
    m_form->insertRow(m_form->rowCount() - 1, caption, edit);
    const int index = m_fields.size();
    m_fields.append(Field{key, nullptr, edit, nullptr, Check(), QString()});
    connect(edit, &QPlainTextEdit::textChanged, this, [this, index] { edited(index); });
    return edit;
}

void OrgPropertyView::setReadOnly(bool readOnly)
{
    m_readOnly = readOnly;
    refreshControlStates(m_objects);
    updateSaveState();
}

bool OrgPropertyView::isReadOnly() const
{
    return readOnlyNow();
}

bool OrgPropertyView::readOnlyNow() const
{
    return m_readOnly || nivaro::LocalStorage::instance()->isReadOnly();
}

void OrgPropertyView::enableControls()
{
    const bool any = !m_uids.isEmpty();
    const bool readOnly = readOnlyNow();
    for (const Field &field : qAsConst(m_fields)) {
        if (field.line) {
            field.line->setEnabled(any);
            field.line->setReadOnly(readOnly);
        } else {
            field.text->setEnabled(any);
            field.text->setReadOnly(readOnly);
        }
    }
}

// ---- Showing ---------------------------------------------------------------

void OrgPropertyView::setCurrent(const nivaro::NVHash<unsigned int, ObjectInfo> &objects)
{
    m_objects = objects;
    m_uids = objects.uniqueKeys();
    m_edited.clear();
    m_pending.clear();
    m_saveFailed = false;
    m_refreshOwed = false;
    showValues();
    refreshControlStates(m_objects);
    updateSaveState();
}

bool OrgPropertyView::uniformValue(const QString &key, QString *value) const
{
    bool first = true;
    for (auto it = m_objects.cbegin(); it != m_objects.cend(); ++it) {
        const QString v = it->parameter(key);
        if (first) {
            *value = v;
            first = false;
        } else if (v != *value) {
            return false;
        }
    }
    if (first)
        value->clear();
    return true;
}

// Every control but those of the keys in `keep`, which hold unsaved edits.
void OrgPropertyView::showValues(const QSet<QString> &keep)
{
    const bool loading = m_loading;
    m_loading = true;
    for (const Field &field : qAsConst(m_fields)) {
        if (keep.contains(field.key))
            continue;
        QString value;
        const bool same = uniformValue(field.key, &value);
        if (field.line) {
            field.line->setText(same ? NVGlobals::withoutControlCharacters(value) : QString());
            field.line->setPlaceholderText(same ? field.placeholder : mixedText());
            field.problem->clear();
            field.problem->hide();
        } else {
            field.text->setPlainText(same ? NVGlobals::withoutControlCharacters(value, true) : QString());
            field.text->setPlaceholderText(same ? QString() : mixedText());
        }
    }
    m_dbId->setText(m_uids.isEmpty() ? QString() : QString::number(m_uids.constFirst()));
    m_loading = loading;
}

// ---- Editing ---------------------------------------------------------------

void OrgPropertyView::edited(int index)
{
    if (m_loading)
        return;
    Field &field = m_fields[index];
    if (field.text) {
        // A plain text edit has no limit of its own.
        const QString text = field.text->toPlainText();
        const QString clean = NVGlobals::withoutControlCharacters(text, true).left(MaxDescriptionLength);
        if (clean != text) {
            const QSignalBlocker blocker(field.text);
            field.text->setPlainText(clean);
            field.text->moveCursor(QTextCursor::End);
        }
        field.text->setPlaceholderText(QString());
    } else {
        field.line->setPlaceholderText(field.placeholder);
    }
    m_edited.insert(field.key);
    updateSaveState();
    emit dataEdited();
}

// Every edited field is checked at once, so fixing one never re-enables
// Save while another is still wrong; untouched values are never written
// and so never block.
void OrgPropertyView::updateSaveState()
{
    QString first;
    for (const Field &field : qAsConst(m_fields)) {
        if (!field.problem)
            continue;
        const QString why = m_edited.contains(field.key) && field.check ? field.check(shownValue(field)) : QString();
        field.problem->setText(why);
        field.problem->setVisible(!why.isEmpty());
        if (first.isEmpty())
            first = why;
    }
    if (first.isEmpty() && readOnlyNow() && !m_edited.isEmpty())
        first = tr("Только чтение: изменения не могут быть сохранены");
    setSaveBlock(first);
}

void OrgPropertyView::setSaveBlock(const QString &reason)
{
    emit enableSave(widgetUid(), reason.isEmpty() && !readOnlyNow());
    if (reason == m_saveBlock)
        return;
    m_saveBlock = reason;
    if (reason.isEmpty())
        emit showMessage(QString());
    else
        emit showCriticalMessage(reason);
}

// ---- Saving ----------------------------------------------------------------

QString OrgPropertyView::shownValue(const Field &field) const
{
    return field.line ? field.line->text() : field.text->toPlainText();
}

QHash<unsigned int, QHash<QString, QString>> OrgPropertyView::changedObjects() const
{
    QHash<QString, QString> values;
    for (const Field &field : m_fields) {
        if (m_edited.contains(field.key))
            values.insert(field.key, shownValue(field));
    }
    QHash<unsigned int, QHash<QString, QString>> changed;
    for (auto object = m_objects.cbegin(); object != m_objects.cend(); ++object) {
        QHash<QString, QString> mine;
        for (auto it = values.cbegin(); it != values.cend(); ++it) {
            if (object->parameter(it.key()) != it.value())
                mine.insert(it.key(), it.value());
        }
        if (!mine.isEmpty())
            changed.insert(object.key(), mine);
    }
    return changed;
}

void OrgPropertyView::applyChanges()
{
    if (readOnlyNow() || !m_saveBlock.isEmpty()) {
        qDebug() << "org view: save refused" << widgetUid() << m_saveBlock;
        return;
    }
    const QHash<unsigned int, QHash<QString, QString>> changed = changedObjects();
    // In the order of the selection, so replies can be matched in order.
    for (unsigned int uid : qAsConst(m_uids)) {
        const auto it = changed.constFind(uid);
        if (it == changed.cend())
            continue;
        m_pending.add(uid, *it);
        emit appendTask(makeSaveTask(m_objects.value(uid), *it, startText(), errorText()));
    }
}

void OrgPropertyView::rejectChanges()
{
    setCurrent(storedOrShown(m_objects, {nivaro::ORGSTRUCTURE_DATANAME}));
}

void OrgPropertyView::saved(unsigned int uid)
{
    unsigned int answered = 0;
    PendingSaves::Changes changes;
    if (!m_pending.take(uid, &answered, &changes)) {
        qDebug() << "org view: reply for no outstanding save" << uid;
        return;
    }
    if (uid == 0) {
        m_saveFailed = true;
        qDebug() << "org view: save failed" << answered;
    } else {
        ObjectInfo object = m_objects.value(uid);
        for (auto change = changes.cbegin(); change != changes.cend(); ++change)
            object.setParameter(change.key(), change.value());
        m_objects.replace(uid, object);
    }
    if (m_pending.isEmpty())
        finishSaving();
}

// A failed save keeps the edits, so that Save sends again what did not
// arrive; objects saved meanwhile compare equal and are not sent twice.
void OrgPropertyView::finishSaving()
{
    const bool failed = m_saveFailed;
    m_saveFailed = false;
    if (!failed) {
        m_edited.clear();
        emit dataSaved();
        emit showMessage(tr("Параметры сохранены"));
    }
    if (m_refreshOwed)
        refreshFromStore();
}

void OrgPropertyView::dataChanged(const QString &dataname, const QList<unsigned int> &uids)
{
    if (dataname != nivaro::ORGSTRUCTURE_DATANAME)
        return;
    if (std::any_of(uids.cbegin(), uids.cend(), [this](unsigned int uid) { return m_objects.contains(uid); }))
        m_refreshTimer->start();
}

nivaro::NVHash<unsigned int, ObjectInfo> OrgPropertyView::storedSelection() const
{
    return storedObjects(m_uids, {nivaro::ORGSTRUCTURE_DATANAME});
}

void OrgPropertyView::refreshFromStore()
{
    if (!m_pending.isEmpty()) {
        m_refreshOwed = true;
        return;
    }
    m_refreshOwed = false;
    const nivaro::NVHash<unsigned int, ObjectInfo> fresh = storedSelection();
    if (m_edited.isEmpty()) {
        setCurrent(fresh);
        return;
    }
    // The operator is typing: keep the edited fields, show the rest as
    // stored now and compare against that, so only real changes are sent.
    m_objects = fresh;
    m_uids = fresh.uniqueKeys();
    showValues(m_edited);
    refreshControlStates(m_objects);
    updateSaveState();
}
