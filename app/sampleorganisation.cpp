#include "sampleorganisation.h"
#include "searchpage.h"

#include <datanames.h>
#include <dbparams.h>
#include <innvalidator.h>
#include <localstorage.h>
#include <nvguiglobals.h>
#include <objecttypes.h>
#include <pbpvssdk5.h>
#include <scheduledata.h>
#include <snilsedit.h>

#include <QColor>
#include <QDebug>
#include <QFont>
#include <QImage>
#include <QLocale>
#include <QPainter>
#include <QRandomGenerator>

using nivaro::ObjectInfo;
using nivaro::TYPE_ID;

namespace {

struct Reason
{
    const char *name;
    const char *mark;
    int longestDays;
};
const Reason Reasons[] = {
    {"Ежегодный отпуск", "ОТ", 9},
    {"Больничный", "Б", 7},
    {"Командировка", "К", 4},
    {"Отгул", "ОВ", 1},
    {"Учебный отпуск", "У", 5},
};
// The year the sample calendar data is about, with the year before it.
constexpr int CalendarYear = 2026;
constexpr int PersonalScheduleBase = 100;

// Male forms; the female form is derived where Russian surnames change.
const char *const Surnames[] = {
    "Иванов", "Смирнов", "Кузнецов", "Попов", "Васильев", "Петров", "Соколов", "Михайлов",
    "Новиков", "Федоров", "Морозов", "Волков", "Алексеев", "Лебедев", "Семенов", "Егоров",
    "Павлов", "Козлов", "Степанов", "Николаев", "Орлов", "Андреев", "Макаров", "Никитин",
    "Захаров", "Зайцев", "Соловьев", "Борисов", "Яковлев", "Григорьев", "Романов", "Воробьев",
    "Сергеев", "Кузьмин", "Фролов", "Александров", "Дмитриев", "Королев", "Гусев", "Киселев",
    "Ильин", "Максимов", "Поляков", "Сорокин", "Виноградов", "Ковалев", "Белов", "Медведев",
    "Антонов", "Тарасов", "Жуков", "Баранов", "Филиппов", "Комаров", "Давыдов", "Беляев",
    "Герасимов", "Богданов", "Осипов", "Сидоров", "Матвеев", "Титов", "Марков", "Миронов",
    "Крылов", "Куликов", "Карпов", "Власов", "Мельников", "Денисов", "Гаврилов", "Тихонов",
    "Казаков", "Афанасьев", "Данилов", "Савельев", "Тимофеев", "Фомин", "Чернов", "Абрамов",
    "Мартынов", "Ефимов", "Федотов", "Щербаков", "Назаров", "Калинин", "Исаев", "Чернышев",
    "Быков", "Маслов", "Родионов", "Коновалов", "Лазарев", "Воронин", "Климов", "Филатов",
    "Пономарев", "Голубев", "Кудрявцев", "Прохоров", "Наумов", "Потапов", "Журавлев", "Овчинников",
    "Трофимов", "Леонов", "Соболев", "Ермаков", "Колесников", "Гончаров", "Емельянов", "Никифоров",
    "Грачев", "Котов", "Гришин", "Ефремов", "Архипов", "Громов", "Кириллов", "Малышев",
    "Панов", "Моисеев", "Румянцев", "Акимов", "Кондратьев", "Бирюков", "Горбунов", "Анисимов",
    "Еремин", "Тихомиров", "Галкин", "Лукьянов", "Михеев", "Скворцов", "Юдин", "Белоусов",
    "Нестеров", "Симонов", "Прокофьев", "Харитонов", "Князев", "Цветков", "Левин", "Митрофанов",
    "Воронов", "Аксенов", "Софронов", "Мальцев", "Логинов", "Горшков", "Савин", "Краснов",
    "Майоров", "Демидов", "Елисеев", "Рыбаков", "Сафонов", "Плотников", "Демин", "Хохлов",
    "Жданов", "Шевченко", "Ким", "Бондаренко", "Чайковский", "Островский", "Лисицын", "Шубин",
};

const char *const MaleNames[] = {
    "Александр", "Алексей", "Андрей", "Антон", "Артем", "Борис", "Вадим", "Валерий", "Василий",
    "Виктор", "Виталий", "Владимир", "Владислав", "Вячеслав", "Геннадий", "Георгий", "Григорий",
    "Даниил", "Денис", "Дмитрий", "Евгений", "Егор", "Иван", "Игорь", "Илья", "Кирилл",
    "Константин", "Леонид", "Максим", "Михаил", "Никита", "Николай", "Олег", "Павел", "Петр",
    "Роман", "Руслан", "Сергей", "Станислав", "Степан", "Тимур", "Федор", "Юрий", "Ярослав",
};

const char *const FemaleNames[] = {
    "Александра", "Алена", "Алина", "Анастасия", "Анна", "Валентина", "Валерия", "Вера",
    "Виктория", "Галина", "Дарья", "Диана", "Евгения", "Екатерина", "Елена", "Елизавета",
    "Жанна", "Зоя", "Инна", "Ирина", "Ксения", "Лариса", "Любовь", "Людмила", "Маргарита",
    "Марина", "Мария", "Надежда", "Наталья", "Нина", "Оксана", "Ольга", "Полина", "Светлана",
    "София", "Тамара", "Татьяна", "Ульяна", "Юлия", "Яна",
};

// Father's name -> patronymic of a son and of a daughter.
const char *const Patronymics[][2] = {
    {"Александрович", "Александровна"}, {"Алексеевич", "Алексеевна"}, {"Андреевич", "Андреевна"},
    {"Анатольевич", "Анатольевна"}, {"Борисович", "Борисовна"}, {"Валерьевич", "Валерьевна"},
    {"Васильевич", "Васильевна"}, {"Викторович", "Викторовна"}, {"Владимирович", "Владимировна"},
    {"Геннадьевич", "Геннадьевна"}, {"Григорьевич", "Григорьевна"}, {"Дмитриевич", "Дмитриевна"},
    {"Евгеньевич", "Евгеньевна"}, {"Иванович", "Ивановна"}, {"Игоревич", "Игоревна"},
    {"Ильич", "Ильинична"}, {"Константинович", "Константиновна"}, {"Леонидович", "Леонидовна"},
    {"Михайлович", "Михайловна"}, {"Николаевич", "Николаевна"}, {"Олегович", "Олеговна"},
    {"Павлович", "Павловна"}, {"Петрович", "Петровна"}, {"Романович", "Романовна"},
    {"Сергеевич", "Сергеевна"}, {"Степанович", "Степановна"}, {"Юрьевич", "Юрьевна"},
    {"Федорович", "Федоровна"},
};

struct Department
{
    const char *name;
    int parent; // index into the same list, -1 for one directly under the firm
};

const char *const Firms[] = {
    "АО «Северный машиностроительный завод»",
    "ООО «Технопарк Восток»",
    "ООО «Городские инженерные сети»",
};

const Department Departments[] = {
    {"Администрация", -1},
    {"Бухгалтерия", -1},
    {"Отдел кадров", -1},
    {"Служба безопасности", -1},
    {"Бюро пропусков", 3},
    {"Производство", -1},
    {"Цех № 1", 5},
    {"Цех № 2", 5},
    {"Склад", -1},
    {"ИТ-отдел", -1},
};

// Citizenship codes with weights: mostly Russia, then the near abroad.
const struct
{
    const char *code;
    int weight;
} Citizenships[] = {
    {"643", 900}, {"112", 20}, {"398", 20}, {"860", 20}, {"762", 10}, {"417", 10}, {"051", 10},
    {"804", 5}, {"268", 3}, {"156", 2},
};

template<typename T, size_t N>
const T &pick(QRandomGenerator &rng, const T (&items)[N])
{
    return items[rng.bounded(int(N))];
}

QString text(const char *utf8)
{
    return QString::fromUtf8(utf8);
}

QString femaleSurname(const QString &male)
{
    for (const QString &ending : {QStringLiteral("ов"), QStringLiteral("ев"), QStringLiteral("ин"), QStringLiteral("ын")}) {
        if (male.endsWith(ending))
            return male + QStringLiteral("а");
    }
    if (male.endsWith(QStringLiteral("ий")))
        return male.left(male.size() - 2) + QStringLiteral("ая");
    return male;
}

QString citizenship(QRandomGenerator &rng)
{
    int total = 0;
    for (const auto &c : Citizenships)
        total += c.weight;
    int roll = rng.bounded(total);
    for (const auto &c : Citizenships) {
        if (roll < c.weight)
            return text(c.code);
        roll -= c.weight;
    }
    return QStringLiteral("643");
}

QImage portrait(QRandomGenerator &rng, const QString &initials)
{
    QImage image(240, 320, QImage::Format_RGB32);
    const QColor background = QColor::fromHsv(rng.bounded(360), 60, 220);
    image.fill(background);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    p.setBrush(background.darker(160));
    p.drawEllipse(QRectF(70, 60, 100, 120));
    p.drawRoundedRect(QRectF(30, 190, 180, 160), 60, 60);
    p.setPen(Qt::white);
    QFont font;
    font.setPixelSize(40);
    font.setBold(true);
    p.setFont(font);
    p.drawText(QRectF(0, 90, 240, 60), Qt::AlignCenter, initials);
    return image;
}

class Builder
{
public:
    Builder(nivaro::LocalStorage *storage, const SampleOrganisation::Options &options)
        : m_storage(storage)
        , m_options(options)
        , m_rng(options.seed)
    {
    }

    bool run(QString *error)
    {
        if (!m_storage->setDbSettings(dbSettings(), error) || !m_storage->putSchedules(schedules(), error))
            return false;

        QList<ObjectInfo> org;
        org.append(ObjectInfo(nivaro::SUBJECT_ROOT_UID, nivaro::OT_SUBJECT_ROOT,
                              {{db::common::NAME, QStringLiteral("Организация")}}));
        QList<TYPE_ID> leaves;
        for (const char *firmName : Firms) {
            ObjectInfo firm(nextUid(), nivaro::OT_FIRM, {{db::firm::NAME, text(firmName)}});
            firm.setParent(nivaro::SUBJECT_ROOT_UID);
            firm.setParameter(db::orgstructure::common::INN, organisationInn());
            org.append(firm);
            QVector<TYPE_ID> uids;
            int number = 1;
            for (const Department &dep : Departments) {
                ObjectInfo department(nextUid(), nivaro::OT_DEPARTMENT, {{db::orgstructure::NAME, text(dep.name)}});
                department.setParent(dep.parent < 0 ? firm.uid() : uids.at(dep.parent));
                department.setParameter(db::orgstructure::DEPARTNUM, QStringLiteral("%1").arg(number++, 3, 10, QLatin1Char('0')));
                uids.append(department.uid());
                org.append(department);
            }
            for (int i = 0; i < uids.size(); ++i) {
                // Departments that hold others are headings; people sit in the leaves.
                const bool hasChildren = std::any_of(std::begin(Departments), std::end(Departments),
                                                     [i](const Department &d) { return d.parent == i; });
                if (!hasChildren)
                    leaves.append(uids.at(i));
            }
        }
        if (!m_storage->putObjects(nivaro::ORGSTRUCTURE_DATANAME, org, error))
            return false;

        // Large organisations go in slices, so no single transaction holds
        // the whole file in memory twice.
        const int slice = 20000;
        for (int first = 0; first < m_options.employees; first += slice) {
            QList<ObjectInfo> working;
            QList<ObjectInfo> fired;
            QList<ObjectInfo> cards;
            const int last = qMin(m_options.employees, first + slice);
            for (int i = first; i < last; ++i) {
                ObjectInfo worker = employee(i, leaves.at(m_rng.bounded(leaves.size())));
                cards.append(card(worker));
                const bool dismissed = worker.parameter(db::common::OBJECTSTATE) == db::common::STATE_FIRED;
                (dismissed ? fired : working).append(worker);
            }
            if (!m_storage->putObjects(nivaro::SUBJECT_DATANAME, working, error)
                || !m_storage->putObjects(nivaro::SUBJECT_FIRED_DATANAME, fired, error)
                || !m_storage->putObjects(nivaro::CARD_DATANAME, cards, error))
                return false;
            if (first == 0 && !addPhotos(working, error))
                return false;
            if (first == 0)
                m_withCalendars = working.mid(0, m_options.calendars);
        }
        return addCalendars(error) && addCardProfiles(error) && addTemplates(error);
    }

private:
    TYPE_ID nextUid() { return m_uid++; }

    ObjectInfo dbSettings() const
    {
        ObjectInfo settings(2, nivaro::OT_DB_SETTINGS);
        settings.setParameter(db::database::CARD_VIEW_FORMAT, QString::number(1));
        settings.setParameter(db::database::PD_DENY_STORE_USER_PHOTOS, QStringLiteral("false"));
        settings.setParameter(db::database::PD_DENY_STORE_USER_BIOMETRICS, QStringLiteral("false"));
        return settings;
    }

    static QList<nivaro::SCHEDULE_DATA> schedules()
    {
        QList<nivaro::SCHEDULE_DATA> list;
        auto add = [&](int id, const char *name, int type, const QDate &start, const char *pattern) {
            nivaro::SCHEDULE_DATA s;
            s.id = id;
            s.name = text(name);
            s.type = type;
            s.startDate = start;
            s.pattern = QString::fromLatin1(pattern);
            list.append(s);
        };
        add(1, "Пятидневка 8 часов", nivaro::SCHEDULE_DATA::Weekly, QDate(), "1111100");
        add(2, "Сменный 2/2", nivaro::SCHEDULE_DATA::Cyclic, QDate(2024, 1, 1), "1100");
        add(3, "Сутки через трое", nivaro::SCHEDULE_DATA::Cyclic, QDate(2024, 1, 1), "1000");
        add(4, "Свободный график", nivaro::SCHEDULE_DATA::Free, QDate(), "");
        return list;
    }

    ObjectInfo employee(int index, TYPE_ID department)
    {
        const bool female = m_rng.bounded(100) < 45;
        const QString surname = text(pick(m_rng, Surnames));
        const auto &patronymic = pick(m_rng, Patronymics);
        ObjectInfo o(nextUid(), nivaro::OT_WORKER);
        o.setParent(department);
        o.setParameter(db::worker::LAST_NAME, female ? femaleSurname(surname) : surname);
        o.setParameter(db::worker::FIRST_NAME, text(female ? pick(m_rng, FemaleNames) : pick(m_rng, MaleNames)));
        o.setParameter(db::worker::MIDDLE_NAME, text(patronymic[female ? 1 : 0]));
        o.setParameter(db::worker::GENDER, QString::number(female ? 2 : 1));
        o.setParameter(db::worker::WORKERNUM, QStringLiteral("%1").arg(index + 1, 6, 10, QLatin1Char('0')));
        const QDate birthday = QDate(1958, 1, 1).addDays(m_rng.bounded(365 * 46));
        o.setParameter(db::worker::BIRTHDAY, birthday.toString(Qt::ISODate));
        const QString country = citizenship(m_rng);
        o.setParameter(db::worker::CITIZENSHIP_CODE, country);
        if (country == QLatin1String("643")) {
            o.setParameter(db::worker::DOC_TYPE, QStringLiteral("Паспорт гражданина РФ"));
            o.setParameter(db::worker::DOC_SERIES, QStringLiteral("%1").arg(4500 + m_rng.bounded(30), 4, 10, QLatin1Char('0')));
        } else {
            o.setParameter(db::worker::DOC_TYPE, QStringLiteral("Паспорт иностранного гражданина"));
            o.setParameter(db::worker::DOC_SERIES, QStringLiteral("N%1").arg(m_rng.bounded(100, 999)));
        }
        o.setParameter(db::worker::DOC_NUMBER, QStringLiteral("%1").arg(m_rng.bounded(1000000), 6, 10, QLatin1Char('0')));
        o.setParameter(db::worker::SNILS, SnilsEdit::withCheckSum(QStringLiteral("%1").arg(2000000 + index * 37 % 997000000, 9, 10, QLatin1Char('0'))));
        o.setParameter(db::orgstructure::common::INN, personalInn());
        o.setParameter(db::worker::DATE_BEGIN, QDate(2015, 1, 1).addDays(m_rng.bounded(3000)).toString(Qt::ISODate));
        o.setParameter(db::worker::SCHEDULE, QString::number(1 + m_rng.bounded(3)));
        o.setParameter(db::common::EXT_GUID, QStringLiteral("%1-%2").arg(m_rng.generate(), 8, 16, QLatin1Char('0')).arg(index, 6, 10, QLatin1Char('0')));
        if (m_rng.bounded(100) < 6)
            o.setParameter(db::common::OBJECTSTATE, db::common::STATE_FIRED);
        if (m_rng.bounded(100) < 10)
            o.setParameter(db::worker::DESCRIPTION, QStringLiteral("Работает по совместительству"));
        SearchPage::addSampleCustomParams(&o, index);
        return o;
    }

    ObjectInfo card(const ObjectInfo &owner)
    {
        ObjectInfo c(nextUid(), nivaro::OT_CARD);
        c.setParent(owner.uid());
        const quint64 number = (quint64(m_rng.bounded(1, 256)) << 16) | quint64(m_rng.bounded(65536));
        c.setParameter(db::card::NUMBER, QString::number(number));
        c.setParameter(db::card::OWNER, QString::number(owner.uid()));
        // Proximity cards with a facility code: what most sites still hand out.
        c.setParameter(db::card::CARD_NAME, QStringLiteral("EM-Marine"));
        c.setParameter(db::card::DATE_BEGIN, owner.parameter(db::worker::DATE_BEGIN));
        return c;
    }

    bool addPhotos(const QList<ObjectInfo> &workers, QString *error)
    {
        for (int i = 0; i < qMin(m_options.photos, workers.size()); ++i) {
            const ObjectInfo &w = workers.at(i);
            const QString initials = w.parameter(db::worker::LAST_NAME).left(1) + w.parameter(db::worker::FIRST_NAME).left(1);
            const QByteArray bytes = NVGuiGlobals::imageToDB(portrait(m_rng, initials), 80).toHex();
            if (!m_storage->setBlob(w.uid(), db::worker::PHOTO, bytes, error))
                return false;
        }
        return true;
    }

    QString personalInn()
    {
        QString ten = QStringLiteral("77");
        for (int i = 0; i < 8; ++i)
            ten += QChar(QLatin1Char(char('0' + m_rng.bounded(10))));
        return INNValidator::withCheckDigits(ten);
    }

    QString organisationInn()
    {
        QString digits = QStringLiteral("77");
        for (int i = 0; i < 7; ++i)
            digits += QChar(QLatin1Char(char('0' + m_rng.bounded(10))));
        return INNValidator::withCheckDigits(digits);
    }

    // Absence reasons, then for the first employees their schedule
    // history, some month-bound personal schedules and absences over the
    // last two years, so that the calendar shows something on first run.
    bool addCalendars(QString *error)
    {
        QList<ObjectInfo> reasons;
        for (const auto &r : Reasons)
            reasons.append(ObjectInfo(nextUid(), nivaro::OT_REASON, {{db::reason::NAME, text(r.name)}, {db::reason::MARK, text(r.mark)}}));
        QList<nivaro::SCHEDULE_DATA> personal;
        const QLocale russian(QLocale::Russian);
        for (int month = 1; month <= 12; ++month) {
            nivaro::SCHEDULE_DATA s;
            s.id = PersonalScheduleBase + month;
            s.name = QStringLiteral("Индивидуальный, %1 %2").arg(russian.standaloneMonthName(month).toLower()).arg(CalendarYear);
            s.type = nivaro::SCHEDULE_DATA::Monthly;
            s.startDate = QDate(CalendarYear, month, 1);
            s.pattern = QStringLiteral("1110");
            personal.append(s);
        }
        if (!m_storage->putObjects(nivaro::REASON_DATANAME, reasons, error) || !m_storage->putSchedules(personal, error))
            return false;

        QRandomGenerator rng(m_options.seed + 1);
        QList<nivaro::WorkerCalendar> calendars;
        for (const ObjectInfo &w : qAsConst(m_withCalendars)) {
            nivaro::WorkerCalendar c;
            c.worker = w.uid();
            const QDate hired = QDate::fromString(w.parameter(db::worker::DATE_BEGIN), Qt::ISODate);
            const int schedule = w.parameter(db::worker::SCHEDULE).toInt();
            auto assign = [&](int id, const QDate &from, const QDate &to) {
                nivaro::_WORKER_SCHEDULE_HISTORY_RECORD_V2 a;
                a.id = quint32(c.scheduleHistory.size() + 1);
                a.worker = w.uid();
                a.scheduleId = id;
                a.startDate = from;
                a.endDate = to;
                a.loopStartDate = from;
                a.created = QDateTime(from, QTime(9, 0), Qt::UTC);
                c.scheduleHistory.append(a);
            };
            // Some moved from another schedule to today's one.
            if (rng.bounded(100) < 30) {
                const QDate change = QDate(CalendarYear - 1, 1, 1).addDays(rng.bounded(600));
                assign(schedule % 3 + 1, hired, change.addDays(-1));
                assign(schedule, change, QDate());
            } else {
                assign(schedule, hired, QDate());
            }
            if (rng.bounded(100) < 20)
                c.personalSchedules.append(personal.at(rng.bounded(personal.size())));

            QDate day(CalendarYear - 1, 1, 1);
            const QDate last(CalendarYear, 12, 31);
            while (c.absences.size() < 8) {
                day = day.addDays(20 + rng.bounded(90));
                const int kind = rng.bounded(int(std::size(Reasons)));
                nivaro::_WORKER_ABSENCE_REASON_RECORD r;
                r.id = quint32(c.absences.size() + 1);
                r.reason = reasons.at(kind).uid();
                r.start = QDateTime(day, QTime(0, 0), Qt::UTC);
                day = day.addDays(rng.bounded(1, Reasons[kind].longestDays + 1) - 1);
                if (day > last)
                    break;
                r.end = QDateTime(day, QTime(23, 59), Qt::UTC);
                r.created = r.start.addDays(-rng.bounded(1, 15));
                if (rng.bounded(100) < 25)
                    r.comment = QStringLiteral("По заявлению от %1").arg(r.created.date().toString(QStringLiteral("dd.MM.yyyy")));
                c.absences.append(r);
            }
            calendars.append(c);
        }
        return m_storage->putWorkerCalendars(calendars, error);
    }

    // The profiles a site keeps for its three card families: a Classic one
    // with its own keys, a DESFire one (DES keys, as new cards ship) writing
    // the second data format, and
    // a Plus one in security level 3.
    bool addCardProfiles(QString *error)
    {
        namespace p = db::scardprofile;
        ObjectInfo classic(nextUid(), nivaro::OT_SMARTCARD_PROFILE,
                           {{p::common::NAME, QStringLiteral("Mifare Classic — проходная")},
                            {p::mfclassic::KEY_A, QStringLiteral("A0A1A2A3A4A5")},
                            {p::mfclassic::KEY_B, QStringLiteral("B0B1B2B3B4B5")},
                            {p::mfclassic::FIRST_BLOCK, QStringLiteral("4")},
                            {p::mfclassic::LAST_BLOCK, QStringLiteral("62")},
                            {p::mfclassic::BLOCK_ACCESS, QStringLiteral("0001")}});
        ObjectInfo desfire(nextUid(), nivaro::OT_SMARTCARD_PROFILE,
                           {{p::common::NAME, QStringLiteral("Mifare DESFire — шаблоны v2")},
                            {p::common::DATA_FORMAT, QStringLiteral("v2")},
                            {p::mfdesfire::KEY_MASTER, QStringLiteral("0011223344556677")},
                            {p::mfdesfire::KEY_APP, QStringLiteral("8899AABBCCDDEEFF")},
                            {p::mfdesfire::KEY_APP_NR, QStringLiteral("1")},
                            {p::mfdesfire::APP_ID, QStringLiteral("5133654")},
                            {p::mfdesfire::FILE_ID, QStringLiteral("1")},
                            {p::mfdesfire::FILE_SIZE, QStringLiteral("3584")},
                            {p::mfdesfire::FILE_OFFSET, QStringLiteral("0")}});
        ObjectInfo plus(nextUid(), nivaro::OT_SMARTCARD_PROFILE,
                        {{p::common::NAME, QStringLiteral("Mifare Plus SL3")},
                         {p::common::MIFARE_PLUS_MODE, QStringLiteral("sl3")},
                         {p::mfplussl3::KEY_MASTER, QStringLiteral("0F0E0D0C0B0A09080706050403020100")},
                         {p::mfplussl3::KEY_CONF, QStringLiteral("1F1E1D1C1B1A19181716151413121110")},
                         {p::mfplussl3::KEY_L3SWITCH, QStringLiteral("2F2E2D2C2B2A29282726252423222120")},
                         {p::mfplussl3::KEY_L1AUTH, QStringLiteral("3F3E3D3C3B3A39383736353433323130")},
                         {p::mfplussl3::KEY_L3SECTOR_SWITCH, QStringLiteral("4F4E4D4C4B4A49484746454443424140")},
                         {p::mfplussl3::KEY_A, QStringLiteral("5F5E5D5C5B5A59585756555453525150")},
                         {p::mfplussl3::KEY_B, QStringLiteral("6F6E6D6C6B6A69686766656463626160")},
                         {p::mfplussl3::BLOCK_ACCESS, QStringLiteral("0001")},
                         {p::mfplussl3::FIRST_BLOCK, QStringLiteral("4")},
                         {p::mfplussl3::LAST_BLOCK, QStringLiteral("126")}});
        return m_storage->putObjects(nivaro::SMARTCARD_PROFILE_DATANAME, {classic, desfire, plus}, error);
    }

    // Synthetic templates of the sizes real scanners produce (the bytes
    // mean nothing): fingerprints of 400-1000 bytes, the palm-vein SDK's
    // packed size, faces of 1-2 KB, finger veins of about 1 KB.
    bool addTemplates(QString *error)
    {
        QRandomGenerator rng(m_options.seed + 2);
        const int enrolled = qMin(12, m_withCalendars.size());
        for (int i = 0; i < enrolled; ++i) {
            const ObjectInfo &w = m_withCalendars.at(i);
            QList<nivaro::_TEMPLATE_DATA> templates;
            auto add = [&](int type, int finger, int size) {
                nivaro::_TEMPLATE_DATA t;
                t.id = quint32(templates.size() + 1);
                t.worker = w.uid();
                t.type = type;
                t.finger = quint16(finger);
                t.data.resize(size);
                for (char &b : t.data)
                    b = char(rng.bounded(256));
                t.created = QDateTime(QDate(CalendarYear, 1, 10).addDays(i), QTime(10, 0), Qt::UTC);
                templates.append(t);
            };
            add(nivaro::_TEMPLATE_DATA::Fingerprint, 1, rng.bounded(400, 1000));
            add(nivaro::_TEMPLATE_DATA::Fingerprint, 6, rng.bounded(400, 1000));
            if (i % 2 == 0)
                add(nivaro::_TEMPLATE_DATA::PalmVein, 10, PBPVSSDK5::packedTemplateSize());
            if (i % 3 != 2)
                add(nivaro::_TEMPLATE_DATA::Face, 12, rng.bounded(1024, 2048));
            if (i % 4 == 1)
                add(nivaro::_TEMPLATE_DATA::FingerVein, 2, rng.bounded(900, 1300));
            if (!m_storage->setTemplates(w.uid(), templates, error))
                return false;
        }
        return true;
    }

    nivaro::LocalStorage *m_storage;
    SampleOrganisation::Options m_options;
    QRandomGenerator m_rng;
    TYPE_ID m_uid = 10;
    QList<ObjectInfo> m_withCalendars;
};

} // namespace


bool SampleOrganisation::generate(nivaro::LocalStorage *storage, const Options &options, QString *error)
{
    qDebug() << "sample organisation" << options.employees << "employees, seed" << options.seed;
    return Builder(storage, options).run(error);
}
