#include "nvdialogsutils.h"

#include <dbparams.h>
#include <nvglobals.h>

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QLineEdit>
#include <QToolTip>
#include <QWidget>

#include <atomic>

namespace {

struct Country
{
    const char *code;
    const char *name;
};

// ISO 3166-1 numeric codes with the short names of the national classifier
// of countries, which also carries the four rows past the standard's end.
const Country States[] = {
        {"004", QT_TRANSLATE_NOOP("NVDialogsUtils", "АФГАНИСТАН")},
        {"008", QT_TRANSLATE_NOOP("NVDialogsUtils", "АЛБАНИЯ")},
        {"010", QT_TRANSLATE_NOOP("NVDialogsUtils", "АНТАРКТИДА")},
        {"012", QT_TRANSLATE_NOOP("NVDialogsUtils", "АЛЖИР")},
        {"016", QT_TRANSLATE_NOOP("NVDialogsUtils", "АМЕРИКАНСКОЕ САМОА")},
        {"020", QT_TRANSLATE_NOOP("NVDialogsUtils", "АНДОРРА")},
        {"024", QT_TRANSLATE_NOOP("NVDialogsUtils", "АНГОЛА")},
        {"028", QT_TRANSLATE_NOOP("NVDialogsUtils", "АНТИГУА И БАРБУДА")},
        {"031", QT_TRANSLATE_NOOP("NVDialogsUtils", "АЗЕРБАЙДЖАН")},
        {"032", QT_TRANSLATE_NOOP("NVDialogsUtils", "АРГЕНТИНА")},
        {"036", QT_TRANSLATE_NOOP("NVDialogsUtils", "АВСТРАЛИЯ")},
        {"040", QT_TRANSLATE_NOOP("NVDialogsUtils", "АВСТРИЯ")},
        {"044", QT_TRANSLATE_NOOP("NVDialogsUtils", "БАГАМЫ")},
        {"048", QT_TRANSLATE_NOOP("NVDialogsUtils", "БАХРЕЙН")},
        {"050", QT_TRANSLATE_NOOP("NVDialogsUtils", "БАНГЛАДЕШ")},
        {"051", QT_TRANSLATE_NOOP("NVDialogsUtils", "АРМЕНИЯ")},
        {"052", QT_TRANSLATE_NOOP("NVDialogsUtils", "БАРБАДОС")},
        {"056", QT_TRANSLATE_NOOP("NVDialogsUtils", "БЕЛЬГИЯ")},
        {"060", QT_TRANSLATE_NOOP("NVDialogsUtils", "БЕРМУДЫ")},
        {"064", QT_TRANSLATE_NOOP("NVDialogsUtils", "БУТАН")},
        {"068", QT_TRANSLATE_NOOP("NVDialogsUtils", "БОЛИВИЯ (МНОГОНАЦИОНАЛЬНОЕ ГОСУДАРСТВО)")},
        {"070", QT_TRANSLATE_NOOP("NVDialogsUtils", "БОСНИЯ И ГЕРЦЕГОВИНА")},
        {"072", QT_TRANSLATE_NOOP("NVDialogsUtils", "БОТСВАНА")},
        {"074", QT_TRANSLATE_NOOP("NVDialogsUtils", "ОСТРОВ БУВЕ")},
        {"076", QT_TRANSLATE_NOOP("NVDialogsUtils", "БРАЗИЛИЯ")},
        {"084", QT_TRANSLATE_NOOP("NVDialogsUtils", "БЕЛИЗ")},
        {"086", QT_TRANSLATE_NOOP("NVDialogsUtils", "БРИТАНСКАЯ ТЕРРИТОРИЯ В ИНДИЙСКОМ ОКЕАНЕ")},
        {"090", QT_TRANSLATE_NOOP("NVDialogsUtils", "СОЛОМОНОВЫ ОСТРОВА")},
        {"092", QT_TRANSLATE_NOOP("NVDialogsUtils", "ВИРГИНСКИЕ ОСТРОВА, БРИТАНСКИЕ")},
        {"096", QT_TRANSLATE_NOOP("NVDialogsUtils", "БРУНЕЙ-ДАРУССАЛАМ")},
        {"100", QT_TRANSLATE_NOOP("NVDialogsUtils", "БОЛГАРИЯ")},
        {"104", QT_TRANSLATE_NOOP("NVDialogsUtils", "МЬЯНМА")},
        {"108", QT_TRANSLATE_NOOP("NVDialogsUtils", "БУРУНДИ")},
        {"112", QT_TRANSLATE_NOOP("NVDialogsUtils", "БЕЛАРУСЬ")},
        {"116", QT_TRANSLATE_NOOP("NVDialogsUtils", "КАМБОДЖА")},
        {"120", QT_TRANSLATE_NOOP("NVDialogsUtils", "КАМЕРУН")},
        {"124", QT_TRANSLATE_NOOP("NVDialogsUtils", "КАНАДА")},
        {"132", QT_TRANSLATE_NOOP("NVDialogsUtils", "КАБО-ВЕРДЕ")},
        {"136", QT_TRANSLATE_NOOP("NVDialogsUtils", "ОСТРОВА КАЙМАН")},
        {"140", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЦЕНТРАЛЬНО-АФРИКАНСКАЯ РЕСПУБЛИКА")},
        {"144", QT_TRANSLATE_NOOP("NVDialogsUtils", "ШРИ-ЛАНКА")},
        {"148", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЧАД")},
        {"152", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЧИЛИ")},
        {"156", QT_TRANSLATE_NOOP("NVDialogsUtils", "КИТАЙ")},
        {"158", QT_TRANSLATE_NOOP("NVDialogsUtils", "ТАЙВАНЬ (КИТАЙ)")},
        {"162", QT_TRANSLATE_NOOP("NVDialogsUtils", "ОСТРОВ РОЖДЕСТВА")},
        {"166", QT_TRANSLATE_NOOP("NVDialogsUtils", "КОКОСОВЫЕ (КИЛИНГ) ОСТРОВА")},
        {"170", QT_TRANSLATE_NOOP("NVDialogsUtils", "КОЛУМБИЯ")},
        {"174", QT_TRANSLATE_NOOP("NVDialogsUtils", "КОМОРЫ")},
        {"175", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАЙОТТА")},
        {"178", QT_TRANSLATE_NOOP("NVDialogsUtils", "КОНГО")},
        {"180", QT_TRANSLATE_NOOP("NVDialogsUtils", "КОНГО, ДЕМОКРАТИЧЕСКАЯ РЕСПУБЛИКА")},
        {"184", QT_TRANSLATE_NOOP("NVDialogsUtils", "ОСТРОВА КУКА")},
        {"188", QT_TRANSLATE_NOOP("NVDialogsUtils", "КОСТА-РИКА")},
        {"191", QT_TRANSLATE_NOOP("NVDialogsUtils", "ХОРВАТИЯ")},
        {"192", QT_TRANSLATE_NOOP("NVDialogsUtils", "КУБА")},
        {"196", QT_TRANSLATE_NOOP("NVDialogsUtils", "КИПР")},
        {"203", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЧЕХИЯ")},
        {"204", QT_TRANSLATE_NOOP("NVDialogsUtils", "БЕНИН")},
        {"208", QT_TRANSLATE_NOOP("NVDialogsUtils", "ДАНИЯ")},
        {"212", QT_TRANSLATE_NOOP("NVDialogsUtils", "ДОМИНИКА")},
        {"214", QT_TRANSLATE_NOOP("NVDialogsUtils", "ДОМИНИКАНСКАЯ РЕСПУБЛИКА")},
        {"218", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЭКВАДОР")},
        {"222", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЭЛЬ-САЛЬВАДОР")},
        {"226", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЭКВАТОРИАЛЬНАЯ ГВИНЕЯ")},
        {"231", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЭФИОПИЯ")},
        {"232", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЭРИТРЕЯ")},
        {"233", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЭСТОНИЯ")},
        {"234", QT_TRANSLATE_NOOP("NVDialogsUtils", "ФАРЕРСКИЕ ОСТРОВА")},
        {"238", QT_TRANSLATE_NOOP("NVDialogsUtils", "ФОЛКЛЕНДСКИЕ ОСТРОВА (МАЛЬВИНСКИЕ)")},
        {"239", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЮЖНАЯ ДЖОРДЖИЯ И ЮЖНЫЕ САНДВИЧЕВЫ ОСТРОВА")},
        {"242", QT_TRANSLATE_NOOP("NVDialogsUtils", "ФИДЖИ")},
        {"246", QT_TRANSLATE_NOOP("NVDialogsUtils", "ФИНЛЯНДИЯ")},
        {"248", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЭЛАНДСКИЕ ОСТРОВА")},
        {"250", QT_TRANSLATE_NOOP("NVDialogsUtils", "ФРАНЦИЯ")},
        {"254", QT_TRANSLATE_NOOP("NVDialogsUtils", "ФРАНЦУЗСКАЯ ГВИАНА")},
        {"258", QT_TRANSLATE_NOOP("NVDialogsUtils", "ФРАНЦУЗСКАЯ ПОЛИНЕЗИЯ")},
        {"260", QT_TRANSLATE_NOOP("NVDialogsUtils", "ФРАНЦУЗСКИЕ ЮЖНЫЕ ТЕРРИТОРИИ")},
        {"262", QT_TRANSLATE_NOOP("NVDialogsUtils", "ДЖИБУТИ")},
        {"266", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГАБОН")},
        {"268", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГРУЗИЯ")},
        {"270", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГАМБИЯ")},
        {"275", QT_TRANSLATE_NOOP("NVDialogsUtils", "ПАЛЕСТИНА, ГОСУДАРСТВО")},
        {"276", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГЕРМАНИЯ")},
        {"288", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГАНА")},
        {"292", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГИБРАЛТАР")},
        {"296", QT_TRANSLATE_NOOP("NVDialogsUtils", "КИРИБАТИ")},
        {"300", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГРЕЦИЯ")},
        {"304", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГРЕНЛАНДИЯ")},
        {"308", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГРЕНАДА")},
        {"312", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГВАДЕЛУПА")},
        {"316", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГУАМ")},
        {"320", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГВАТЕМАЛА")},
        {"324", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГВИНЕЯ")},
        {"328", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГАЙАНА")},
        {"332", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГАИТИ")},
        {"334", QT_TRANSLATE_NOOP("NVDialogsUtils", "ОСТРОВ ХЕРД И ОСТРОВА МАКДОНАЛЬД")},
        {"336", QT_TRANSLATE_NOOP("NVDialogsUtils", "ПАПСКИЙ ПРЕСТОЛ (ГОСУДАРСТВО - ГОРОД ВАТИКАН)")},
        {"340", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГОНДУРАС")},
        {"344", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГОНКОНГ")},
        {"348", QT_TRANSLATE_NOOP("NVDialogsUtils", "ВЕНГРИЯ")},
        {"352", QT_TRANSLATE_NOOP("NVDialogsUtils", "ИСЛАНДИЯ")},
        {"356", QT_TRANSLATE_NOOP("NVDialogsUtils", "ИНДИЯ")},
        {"360", QT_TRANSLATE_NOOP("NVDialogsUtils", "ИНДОНЕЗИЯ")},
        {"364", QT_TRANSLATE_NOOP("NVDialogsUtils", "ИРАН (ИСЛАМСКАЯ РЕСПУБЛИКА)")},
        {"368", QT_TRANSLATE_NOOP("NVDialogsUtils", "ИРАК")},
        {"372", QT_TRANSLATE_NOOP("NVDialogsUtils", "ИРЛАНДИЯ")},
        {"376", QT_TRANSLATE_NOOP("NVDialogsUtils", "ИЗРАИЛЬ")},
        {"380", QT_TRANSLATE_NOOP("NVDialogsUtils", "ИТАЛИЯ")},
        {"384", QT_TRANSLATE_NOOP("NVDialogsUtils", "КОТ Д'ИВУАР")},
        {"388", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЯМАЙКА")},
        {"392", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЯПОНИЯ")},
        {"398", QT_TRANSLATE_NOOP("NVDialogsUtils", "КАЗАХСТАН")},
        {"400", QT_TRANSLATE_NOOP("NVDialogsUtils", "ИОРДАНИЯ")},
        {"404", QT_TRANSLATE_NOOP("NVDialogsUtils", "КЕНИЯ")},
        {"408", QT_TRANSLATE_NOOP("NVDialogsUtils", "КОРЕЯ, НАРОДНО-ДЕМОКРАТИЧЕСКАЯ РЕСПУБЛИКА")},
        {"410", QT_TRANSLATE_NOOP("NVDialogsUtils", "КОРЕЯ, РЕСПУБЛИКА")},
        {"414", QT_TRANSLATE_NOOP("NVDialogsUtils", "КУВЕЙТ")},
        {"417", QT_TRANSLATE_NOOP("NVDialogsUtils", "КИРГИЗИЯ")},
        {"418", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЛАОССКАЯ НАРОДНО-ДЕМОКРАТИЧЕСКАЯ РЕСПУБЛИКА")},
        {"422", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЛИВАН")},
        {"426", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЛЕСОТО")},
        {"428", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЛАТВИЯ")},
        {"430", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЛИБЕРИЯ")},
        {"434", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЛИВИЯ")},
        {"438", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЛИХТЕНШТЕЙН")},
        {"440", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЛИТВА")},
        {"442", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЛЮКСЕМБУРГ")},
        {"446", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАКАО")},
        {"450", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАДАГАСКАР")},
        {"454", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАЛАВИ")},
        {"458", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАЛАЙЗИЯ")},
        {"462", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАЛЬДИВЫ")},
        {"466", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАЛИ")},
        {"470", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАЛЬТА")},
        {"474", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАРТИНИКА")},
        {"478", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАВРИТАНИЯ")},
        {"480", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАВРИКИЙ")},
        {"484", QT_TRANSLATE_NOOP("NVDialogsUtils", "МЕКСИКА")},
        {"492", QT_TRANSLATE_NOOP("NVDialogsUtils", "МОНАКО")},
        {"496", QT_TRANSLATE_NOOP("NVDialogsUtils", "МОНГОЛИЯ")},
        {"498", QT_TRANSLATE_NOOP("NVDialogsUtils", "МОЛДОВА, РЕСПУБЛИКА")},
        {"499", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЧЕРНОГОРИЯ")},
        {"500", QT_TRANSLATE_NOOP("NVDialogsUtils", "МОНТСЕРРАТ")},
        {"504", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАРОККО")},
        {"508", QT_TRANSLATE_NOOP("NVDialogsUtils", "МОЗАМБИК")},
        {"512", QT_TRANSLATE_NOOP("NVDialogsUtils", "ОМАН")},
        {"516", QT_TRANSLATE_NOOP("NVDialogsUtils", "НАМИБИЯ")},
        {"520", QT_TRANSLATE_NOOP("NVDialogsUtils", "НАУРУ")},
        {"524", QT_TRANSLATE_NOOP("NVDialogsUtils", "НЕПАЛ")},
        {"528", QT_TRANSLATE_NOOP("NVDialogsUtils", "НИДЕРЛАНДЫ")},
        {"531", QT_TRANSLATE_NOOP("NVDialogsUtils", "КЮРАСАО")},
        {"533", QT_TRANSLATE_NOOP("NVDialogsUtils", "АРУБА")},
        {"534", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЕН-МАРТЕН (НИДЕРЛАНДСКАЯ ЧАСТЬ)")},
        {"535", QT_TRANSLATE_NOOP("NVDialogsUtils", "БОНЭЙР, СИНТ-ЭСТАТИУС И САБА")},
        {"540", QT_TRANSLATE_NOOP("NVDialogsUtils", "НОВАЯ КАЛЕДОНИЯ")},
        {"548", QT_TRANSLATE_NOOP("NVDialogsUtils", "ВАНУАТУ")},
        {"554", QT_TRANSLATE_NOOP("NVDialogsUtils", "НОВАЯ ЗЕЛАНДИЯ")},
        {"558", QT_TRANSLATE_NOOP("NVDialogsUtils", "НИКАРАГУА")},
        {"562", QT_TRANSLATE_NOOP("NVDialogsUtils", "НИГЕР")},
        {"566", QT_TRANSLATE_NOOP("NVDialogsUtils", "НИГЕРИЯ")},
        {"570", QT_TRANSLATE_NOOP("NVDialogsUtils", "НИУЭ")},
        {"574", QT_TRANSLATE_NOOP("NVDialogsUtils", "ОСТРОВ НОРФОЛК")},
        {"578", QT_TRANSLATE_NOOP("NVDialogsUtils", "НОРВЕГИЯ")},
        {"580", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЕВЕРНЫЕ МАРИАНСКИЕ ОСТРОВА")},
        {"581", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАЛЫЕ ТИХООКЕАНСКИЕ ОТДАЛЕННЫЕ ОСТРОВА СОЕДИНЕННЫХ ШТАТОВ")},
        {"583", QT_TRANSLATE_NOOP("NVDialogsUtils", "МИКРОНЕЗИЯ, ФЕДЕРАТИВНЫЕ ШТАТЫ")},
        {"584", QT_TRANSLATE_NOOP("NVDialogsUtils", "МАРШАЛЛОВЫ ОСТРОВА")},
        {"585", QT_TRANSLATE_NOOP("NVDialogsUtils", "ПАЛАУ")},
        {"586", QT_TRANSLATE_NOOP("NVDialogsUtils", "ПАКИСТАН")},
        {"591", QT_TRANSLATE_NOOP("NVDialogsUtils", "ПАНАМА")},
        {"598", QT_TRANSLATE_NOOP("NVDialogsUtils", "ПАПУА-НОВАЯ ГВИНЕЯ")},
        {"600", QT_TRANSLATE_NOOP("NVDialogsUtils", "ПАРАГВАЙ")},
        {"604", QT_TRANSLATE_NOOP("NVDialogsUtils", "ПЕРУ")},
        {"608", QT_TRANSLATE_NOOP("NVDialogsUtils", "ФИЛИППИНЫ")},
        {"612", QT_TRANSLATE_NOOP("NVDialogsUtils", "ПИТКЕРН")},
        {"616", QT_TRANSLATE_NOOP("NVDialogsUtils", "ПОЛЬША")},
        {"620", QT_TRANSLATE_NOOP("NVDialogsUtils", "ПОРТУГАЛИЯ")},
        {"624", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГВИНЕЯ-БИСАУ")},
        {"626", QT_TRANSLATE_NOOP("NVDialogsUtils", "ТИМОР-ЛЕСТЕ")},
        {"630", QT_TRANSLATE_NOOP("NVDialogsUtils", "ПУЭРТО-РИКО")},
        {"634", QT_TRANSLATE_NOOP("NVDialogsUtils", "КАТАР")},
        {"638", QT_TRANSLATE_NOOP("NVDialogsUtils", "РЕЮНЬОН")},
        {"642", QT_TRANSLATE_NOOP("NVDialogsUtils", "РУМЫНИЯ")},
        {"643", QT_TRANSLATE_NOOP("NVDialogsUtils", "РОССИЯ")},
        {"646", QT_TRANSLATE_NOOP("NVDialogsUtils", "РУАНДА")},
        {"652", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЕН-БАРТЕЛЕМИ")},
        {"654", QT_TRANSLATE_NOOP("NVDialogsUtils", "СВЯТАЯ ЕЛЕНА, ОСТРОВ ВОЗНЕСЕНИЯ, ТРИСТАН-ДА-КУНЬЯ")},
        {"659", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЕНТ-КИТС И НЕВИС")},
        {"660", QT_TRANSLATE_NOOP("NVDialogsUtils", "АНГВИЛЛА")},
        {"662", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЕНТ-ЛЮСИЯ")},
        {"663", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЕН-МАРТЕН (ФРАНЦУЗСКАЯ ЧАСТЬ)")},
        {"666", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЕН-ПЬЕР И МИКЕЛОН")},
        {"670", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЕНТ-ВИНСЕНТ И ГРЕНАДИНЫ")},
        {"674", QT_TRANSLATE_NOOP("NVDialogsUtils", "САН-МАРИНО")},
        {"678", QT_TRANSLATE_NOOP("NVDialogsUtils", "САН-ТОМЕ И ПРИНСИПИ")},
        {"682", QT_TRANSLATE_NOOP("NVDialogsUtils", "САУДОВСКАЯ АРАВИЯ")},
        {"686", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЕНЕГАЛ")},
        {"688", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЕРБИЯ")},
        {"690", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЕЙШЕЛЫ")},
        {"694", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЬЕРРА-ЛЕОНЕ")},
        {"702", QT_TRANSLATE_NOOP("NVDialogsUtils", "СИНГАПУР")},
        {"703", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЛОВАКИЯ")},
        {"704", QT_TRANSLATE_NOOP("NVDialogsUtils", "ВЬЕТНАМ")},
        {"705", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЛОВЕНИЯ")},
        {"706", QT_TRANSLATE_NOOP("NVDialogsUtils", "СОМАЛИ")},
        {"710", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЮЖНАЯ АФРИКА")},
        {"716", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЗИМБАБВЕ")},
        {"724", QT_TRANSLATE_NOOP("NVDialogsUtils", "ИСПАНИЯ")},
        {"728", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЮЖНЫЙ СУДАН")},
        {"729", QT_TRANSLATE_NOOP("NVDialogsUtils", "СУДАН")},
        {"732", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЗАПАДНАЯ САХАРА")},
        {"740", QT_TRANSLATE_NOOP("NVDialogsUtils", "СУРИНАМ")},
        {"744", QT_TRANSLATE_NOOP("NVDialogsUtils", "ШПИЦБЕРГЕН И ЯН МАЙЕН")},
        {"748", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЭСВАТИНИ")},
        {"752", QT_TRANSLATE_NOOP("NVDialogsUtils", "ШВЕЦИЯ")},
        {"756", QT_TRANSLATE_NOOP("NVDialogsUtils", "ШВЕЙЦАРИЯ")},
        {"760", QT_TRANSLATE_NOOP("NVDialogsUtils", "СИРИЙСКАЯ АРАБСКАЯ РЕСПУБЛИКА")},
        {"762", QT_TRANSLATE_NOOP("NVDialogsUtils", "ТАДЖИКИСТАН")},
        {"764", QT_TRANSLATE_NOOP("NVDialogsUtils", "ТАИЛАНД")},
        {"768", QT_TRANSLATE_NOOP("NVDialogsUtils", "ТОГО")},
        {"772", QT_TRANSLATE_NOOP("NVDialogsUtils", "ТОКЕЛАУ")},
        {"776", QT_TRANSLATE_NOOP("NVDialogsUtils", "ТОНГА")},
        {"780", QT_TRANSLATE_NOOP("NVDialogsUtils", "ТРИНИДАД И ТОБАГО")},
        {"784", QT_TRANSLATE_NOOP("NVDialogsUtils", "ОБЪЕДИНЕННЫЕ АРАБСКИЕ ЭМИРАТЫ")},
        {"788", QT_TRANSLATE_NOOP("NVDialogsUtils", "ТУНИС")},
        {"792", QT_TRANSLATE_NOOP("NVDialogsUtils", "ТУРЦИЯ")},
        {"795", QT_TRANSLATE_NOOP("NVDialogsUtils", "ТУРКМЕНИСТАН")},
        {"796", QT_TRANSLATE_NOOP("NVDialogsUtils", "ОСТРОВА ТЕРКС И КАЙКОС")},
        {"798", QT_TRANSLATE_NOOP("NVDialogsUtils", "ТУВАЛУ")},
        {"800", QT_TRANSLATE_NOOP("NVDialogsUtils", "УГАНДА")},
        {"804", QT_TRANSLATE_NOOP("NVDialogsUtils", "УКРАИНА")},
        {"807", QT_TRANSLATE_NOOP("NVDialogsUtils", "СЕВЕРНАЯ МАКЕДОНИЯ")},
        {"818", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЕГИПЕТ")},
        {"826", QT_TRANSLATE_NOOP("NVDialogsUtils", "СОЕДИНЕННОЕ КОРОЛЕВСТВО")},
        {"831", QT_TRANSLATE_NOOP("NVDialogsUtils", "ГЕРНСИ")},
        {"832", QT_TRANSLATE_NOOP("NVDialogsUtils", "ДЖЕРСИ")},
        {"833", QT_TRANSLATE_NOOP("NVDialogsUtils", "ОСТРОВ МЭН")},
        {"834", QT_TRANSLATE_NOOP("NVDialogsUtils", "ТАНЗАНИЯ, ОБЪЕДИНЕННАЯ РЕСПУБЛИКА")},
        {"840", QT_TRANSLATE_NOOP("NVDialogsUtils", "СОЕДИНЕННЫЕ ШТАТЫ")},
        {"850", QT_TRANSLATE_NOOP("NVDialogsUtils", "ВИРГИНСКИЕ ОСТРОВА, США")},
        {"854", QT_TRANSLATE_NOOP("NVDialogsUtils", "БУРКИНА-ФАСО")},
        {"858", QT_TRANSLATE_NOOP("NVDialogsUtils", "УРУГВАЙ")},
        {"860", QT_TRANSLATE_NOOP("NVDialogsUtils", "УЗБЕКИСТАН")},
        {"862", QT_TRANSLATE_NOOP("NVDialogsUtils", "ВЕНЕСУЭЛА (БОЛИВАРИАНСКАЯ РЕСПУБЛИКА)")},
        {"876", QT_TRANSLATE_NOOP("NVDialogsUtils", "УОЛЛИС И ФУТУНА")},
        {"882", QT_TRANSLATE_NOOP("NVDialogsUtils", "САМОА")},
        {"887", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЙЕМЕН")},
        {"894", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЗАМБИЯ")},
        {"895", QT_TRANSLATE_NOOP("NVDialogsUtils", "АБХАЗИЯ")},
        {"896", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЮЖНАЯ ОСЕТИЯ")},
        {"897", QT_TRANSLATE_NOOP("NVDialogsUtils", "ДНР")},
        {"898", QT_TRANSLATE_NOOP("NVDialogsUtils", "ЛНР")},
};

// Marks what the dismissed rule turned off, so that the next selection can
// give back exactly that: inner widgets (the line edit of a date edit, the
// list of a combo box) are never touched by a view's own enabling code.
const char *const DisabledIfFired = "nvdDisabledIfFired";

template<typename T>
void disableAll(QWidget *parent)
{
    const QList<T *> children = parent->findChildren<T *>();
    for (T *child : children) {
        // A control a view turned off for its own reasons stays its to turn on.
        if (!child->testAttribute(Qt::WA_ForceDisabled))
            child->setProperty(DisabledIfFired, true);
        child->setEnabled(false);
    }
}

} // namespace

void NVDialogsUtils::DisableChildrenIfFired(const nivaro::NVHash<unsigned int, nivaro::ObjectInfo> &objects,
                                            QWidget *parent)
{
    if (!parent)
        return;
    const bool anyFired = std::any_of(objects.cbegin(), objects.cend(), [](const nivaro::ObjectInfo &object) {
        return object.parameter(db::common::OBJECTSTATE).toLower() == db::common::STATE_FIRED;
    });
    if (!anyFired)
        return;
    // Labels and group boxes stay enabled: a dismissed employee's data
    // remains readable, only the controls that change it go grey.
    disableAll<QLineEdit>(parent);
    disableAll<QComboBox>(parent);
    disableAll<QAbstractScrollArea>(parent);
    disableAll<QAbstractButton>(parent);
    disableAll<QAbstractSpinBox>(parent);
}

void NVDialogsUtils::EnableChildrenDisabledIfFired(QWidget *parent)
{
    if (!parent)
        return;
    const QList<QWidget *> children = parent->findChildren<QWidget *>();
    for (QWidget *child : children) {
        if (!child->property(DisabledIfFired).toBool())
            continue;
        child->setProperty(DisabledIfFired, QVariant());
        child->setEnabled(true);
    }
}

void NVDialogsUtils::limitTextInput(QLineEdit *edit, int maxLength)
{
    edit->setMaxLength(maxLength);
    edit->setToolTip(QCoreApplication::translate("NVDialogsUtils", "Не более %n символов", nullptr, maxLength));
    // textEdited: only what the user typed or pasted, never what a view shows.
    QObject::connect(edit, &QLineEdit::textEdited, edit, [edit](const QString &text) {
        const QString clean = NVGlobals::withoutControlCharacters(text);
        if (clean.size() != text.size()) {
            const int cursor = edit->cursorPosition() - (text.size() - clean.size());
            edit->setText(clean);
            edit->setCursorPosition(qMax(0, cursor));
        }
        // A field that stops taking characters, or a paste cut short, says
        // why right where the operator types.
        if (clean.size() >= edit->maxLength())
            QToolTip::showText(edit->mapToGlobal(QPoint(0, edit->height())), edit->toolTip(), edit);
    });
}

QList<StateRegistryInfo> NVDialogsUtils::getStatesRegistry()
{
    QList<StateRegistryInfo> registry;
    registry.reserve(int(sizeof(States) / sizeof(States[0])));
    for (const Country &c : States)
        registry.append({QString::fromLatin1(c.code), QString::fromUtf8(c.name)});
    return registry;
}

QStringList NVDialogsUtils::getNearAbroadCodes()
{
    return {QStringLiteral("031"), QStringLiteral("051"), QStringLiteral("112"), QStringLiteral("268"),
            QStringLiteral("398"), QStringLiteral("417"), QStringLiteral("428"), QStringLiteral("440"),
            QStringLiteral("498"), QStringLiteral("643"), QStringLiteral("762"), QStringLiteral("795"),
            QStringLiteral("860"), QStringLiteral("804"), QStringLiteral("233")};
}

QString NVDialogsUtils::translateState(const QString &name)
{
    return QCoreApplication::translate("NVDialogsUtils", name.toUtf8().constData());
}

namespace {
std::atomic<bool> s_debugEnabled{false};
} // namespace

// Atomic: card operations read the switch from pool threads.
void NVDialogsUtils::setDebugEnabled(bool enabled)
{
    s_debugEnabled.store(enabled, std::memory_order_relaxed);
}

bool NVDialogsUtils::debugEnabled()
{
    return s_debugEnabled.load(std::memory_order_relaxed);
}
