<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US">
<context>
    <name>MainWindow</name>
    <message>
        <location filename="../app/mainwindow.cpp" line="+57"/>
        <source>Nivaro-Studio — %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Несохраненные изменения</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Сохранить изменения?</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+7"/>
        <source>&amp;Файл</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Выход</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Фильтр по имени</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+26"/>
        <location line="+112"/>
        <source>Выберите одного или нескольких сотрудников в дереве организации</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="-95"/>
        <source>Хранилище: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+96"/>
        <source>«%1»: выберите сотрудников, чтобы изменить их личные данные</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+23"/>
        <source>Выбрано сотрудников: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+27"/>
        <source>Найдено слишком много: уточните фильтр</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Сотрудников: %1, уволенных: %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>NVGlobals</name>
    <message>
        <location filename="../platform/nvglobals/nvglobals.cpp" line="+98"/>
        <source>Правый большой</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Правый указательный</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Правый средний</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Правый безымянный</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Правый мизинец</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Левый большой</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Левый указательный</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Левый средний</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Левый безымянный</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Левый мизинец</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Правая ладонь</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Левая ладонь</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Лицо</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PropertyFrame</name>
    <message>
        <location filename="../app/propertyframe.cpp" line="+17"/>
        <source>Сохранить</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Отменить</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+76"/>
        <source>Изменений нет</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Сохранение...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+55"/>
        <source>Проверьте заполнение полей</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>StudioStartup</name>
    <message>
        <location filename="../app/studiostartup.cpp" line="+27"/>
        <source>Не удалось создать папку %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+31"/>
        <source>Не удалось сохранить снимок окна в %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <location filename="../app/main.cpp" line="+63"/>
        <source>--generate ждет число сотрудников от 1 до 5000000</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Файл %1 уже существует: для нового хранилища укажите другой --store</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Не удалось открыть хранилище %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
