#ifndef BENCHDATA_H
#define BENCHDATA_H

// Deterministic organisations for the benchmarks: employees with the
// parameters a real store holds, so that sizes and costs are realistic.

#include <dbparams.h>
#include <objectinfo.h>
#include <objecttypes.h>

#include <QDate>
#include <QFile>
#include <QRandomGenerator>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <malloc.h>

namespace benchdata {

inline const QStringList &surnames()
{
    static const QStringList list = QStringLiteral(
        "Иванов Смирнов Кузнецов Попов Васильев Петров Соколов Михайлов Новиков Федоров Морозов Волков Алексеев "
        "Лебедев Семенов Егоров Павлов Козлов Степанов Николаев Орлов Андреев Макаров Никитин Захаров Зайцев "
        "Соловьев Борисов Яковлев Григорьев Романов Воробьев Сергеев Кузьмин Фролов Александров Дмитриев Королев "
        "Гусев Киселев Ильин Максимов Поляков Сорокин Виноградов Ковалев Белов Медведев Антонов Тарасов Жуков "
        "Баранов Филиппов Комаров Давыдов Беляев Герасимов Богданов Осипов Сидоров Матвеев Титов Марков Миронов "
        "Крылов Куликов Карпов Власов Мельников Денисов Гаврилов Тихонов Казаков Афанасьев Данилов Савельев "
        "Тимофеев Фомин Чернов Абрамов Мартынов Ефимов Федотов Щербаков Назаров Калинин Исаев Чернышев Быков "
        "Маслов Родионов Коновалов Лазарев Воронин Климов Филатов Пономарев Голубев Кудрявцев Прохоров Наумов")
                                          .split(QLatin1Char(' '));
    return list;
}

inline const QStringList &firstNames()
{
    static const QStringList list = QStringLiteral(
        "Александр Алексей Андрей Антон Артем Борис Вадим Валерий Василий Виктор Виталий Владимир Вячеслав "
        "Геннадий Георгий Григорий Даниил Денис Дмитрий Евгений Егор Иван Игорь Илья Кирилл Константин Леонид "
        "Максим Михаил Никита Николай Олег Павел Петр Роман Руслан Сергей Степан Тимур Федор Юрий Ярослав "
        "Александра Алена Алина Анастасия Анна Валентина Вера Виктория Галина Дарья Диана Евгения Екатерина "
        "Елена Елизавета Жанна Зоя Инна Ирина Ксения Лариса Любовь Людмила Маргарита Марина Мария Надежда "
        "Наталья Нина Оксана Ольга Полина Светлана София Тамара Татьяна Ульяна Юлия Яна")
                                          .split(QLatin1Char(' '));
    return list;
}

// An employee with about twenty parameters, as the sample organisation has.
inline nivaro::ObjectInfo employee(QRandomGenerator &rng, nivaro::TYPE_ID uid, nivaro::TYPE_ID department, int index)
{
    const bool female = rng.bounded(100) < 45;
    QString surname = surnames().at(rng.bounded(surnames().size()));
    if (female)
        surname += QStringLiteral("а");
    nivaro::ObjectInfo o(uid, nivaro::OT_WORKER);
    o.setParent(department);
    o.setParameter(db::worker::LAST_NAME, surname);
    o.setParameter(db::worker::FIRST_NAME, firstNames().at(rng.bounded(firstNames().size())));
    o.setParameter(db::worker::MIDDLE_NAME, female ? QStringLiteral("Ивановна") : QStringLiteral("Петрович"));
    o.setParameter(db::worker::GENDER, QString::number(female ? 2 : 1));
    o.setParameter(db::worker::WORKERNUM, QStringLiteral("%1").arg(index + 1, 6, 10, QLatin1Char('0')));
    o.setParameter(db::worker::BIRTHDAY, QDate(1960, 1, 1).addDays(rng.bounded(16000)).toString(Qt::ISODate));
    o.setParameter(db::worker::CITIZENSHIP_CODE, QStringLiteral("643"));
    o.setParameter(db::worker::DOC_TYPE, QStringLiteral("Паспорт гражданина РФ"));
    o.setParameter(db::worker::DOC_SERIES, QString::number(4500 + rng.bounded(30)));
    o.setParameter(db::worker::DOC_NUMBER, QString::number(100000 + rng.bounded(900000)));
    o.setParameter(db::worker::SNILS, QString::number(10000000000ull + rng.bounded(89999999)));
    o.setParameter(db::orgstructure::common::INN, QString::number(770000000000ull + rng.bounded(99999999)));
    o.setParameter(db::worker::DATE_BEGIN, QDate(2015, 1, 1).addDays(rng.bounded(3000)).toString(Qt::ISODate));
    o.setParameter(db::worker::SCHEDULE, QString::number(1 + rng.bounded(3)));
    o.setParameter(db::worker::JOBLINK, QString::number(50 + rng.bounded(20)));
    o.setParameter(db::worker::FIRMLINK, QString::number(10));
    o.setParameter(db::worker::PHONE_NUMBER, QStringLiteral("+7 916 %1").arg(rng.bounded(1000000, 9999999)));
    o.setParameter(db::worker::EMAIL, QStringLiteral("user%1@example.org").arg(index));
    o.setParameter(db::common::EXT_GUID, QStringLiteral("%1").arg(rng.generate(), 8, 16, QLatin1Char('0')));
    o.setParameter(db::worker::LOCKED, QStringLiteral("false"));
    return o;
}

// Peak resident memory of this process in MB since the last reset.
inline double peakRssMB()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).trimmed().split(' ').first().toDouble() / 1024.0;
    }
    return 0;
}

// Bytes the heap has handed out and not taken back.
inline std::size_t heapInUse()
{
    return mallinfo2().uordblks;
}

inline void resetPeakRss()
{
    QFile refs(QStringLiteral("/proc/self/clear_refs"));
    if (refs.open(QIODevice::WriteOnly))
        refs.write("5");
}

} // namespace benchdata

#endif
