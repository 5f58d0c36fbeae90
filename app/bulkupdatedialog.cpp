#include "bulkupdatedialog.h"

#include <dbparams.h>
#include <localstorage.h>

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QStackedWidget>

#include <algorithm>

BulkUpdateDialog::BulkUpdateDialog(nivaro::LocalStorage *storage, int objectCount, QWidget *parent)
    : QDialog(parent)
    , m_parameter(new QComboBox)
    , m_editors(new QStackedWidget)
    , m_dateEnd(new QDateEdit(QDate::currentDate().addYears(1)))
    , m_locked(new QCheckBox(tr("Заблокирован")))
    , m_schedule(new QComboBox)
{
    setObjectName(QStringLiteral("BulkUpdateDialog"));
    setWindowTitle(tr("Массовое изменение"));

    m_parameter->setObjectName(QStringLiteral("parameter"));
    for (const QString &key : {db::worker::DATE_END, db::worker::LOCKED, db::worker::SCHEDULE})
        m_parameter->addItem(parameterName(key), key);

    m_dateEnd->setCalendarPopup(true);
    m_dateEnd->setDisplayFormat(QStringLiteral("dd.MM.yyyy"));
    QList<nivaro::SCHEDULE_DATA> schedules = storage->schedules().values();
    std::sort(schedules.begin(), schedules.end(),
              [](const nivaro::SCHEDULE_DATA &a, const nivaro::SCHEDULE_DATA &b) { return a.name < b.name; });
    for (const nivaro::SCHEDULE_DATA &s : qAsConst(schedules))
        m_schedule->addItem(s.name, s.id);
    m_editors->addWidget(m_dateEnd);
    m_editors->addWidget(m_locked);
    m_editors->addWidget(m_schedule);
    connect(m_parameter, qOverload<int>(&QComboBox::currentIndexChanged), m_editors, &QStackedWidget::setCurrentIndex);

    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *form = new QFormLayout(this);
    form->addRow(new QLabel(tr("Будет изменено объектов: %1").arg(objectCount)));
    form->addRow(tr("Параметр"), m_parameter);
    form->addRow(tr("Значение"), m_editors);
    form->addRow(buttons);
}

QString BulkUpdateDialog::parameter() const
{
    return m_parameter->currentData().toString();
}

void BulkUpdateDialog::setParameter(const QString &key)
{
    m_parameter->setCurrentIndex(qMax(0, m_parameter->findData(key)));
}

QVariant BulkUpdateDialog::value() const
{
    // In the store's encoding: ISO dates, "true"/"false", schedule ids.
    const QString key = parameter();
    if (key == db::worker::DATE_END)
        return m_dateEnd->date().toString(Qt::ISODate);
    if (key == db::worker::LOCKED)
        return m_locked->isChecked() ? QStringLiteral("true") : QStringLiteral("false");
    return QString::number(m_schedule->currentData().toInt());
}

QString BulkUpdateDialog::parameterName(const QString &key)
{
    if (key == db::worker::DATE_END)
        return tr("Окончание действия");
    if (key == db::worker::LOCKED)
        return tr("Блокировка");
    if (key == db::worker::SCHEDULE)
        return tr("График работы");
    return key;
}

QString BulkUpdateDialog::shownValue(const nivaro::LocalStorage *storage, const QString &key, const QString &value)
{
    if (value.isEmpty())
        return value;
    if (key == db::worker::DATE_END) {
        const QDate date = QDate::fromString(value, Qt::ISODate);
        return date.isValid() ? date.toString(QStringLiteral("dd.MM.yyyy")) : value;
    }
    if (key == db::worker::LOCKED)
        return value.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0 ? tr("Да") : tr("Нет");
    if (key == db::worker::SCHEDULE) {
        bool ok = false;
        const int id = value.toInt(&ok);
        const auto schedules = storage->schedules();
        if (ok && schedules.contains(id))
            return schedules.value(id).name;
    }
    return value;
}
