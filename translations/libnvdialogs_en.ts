<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en_US" sourcelanguage="ru_RU">
<context>
    <name>AbsencePage</name>
    <message>
        <location filename="../app/absencepage.cpp" line="+21"/>
        <source>Только за период с</source>
        <translation>Only for the period from</translation>
    </message>
    <message>
        <location line="+36"/>
        <source>по</source>
        <translation>to</translation>
    </message>
</context>
<context>
    <name>BaseProgressWizardPage</name>
    <message>
        <location filename="../src/wizards/baseprogresswizardpage.ui" line="+14"/>
        <source>WizardPage</source>
        <translation>WizardPage</translation>
    </message>
    <message>
        <location line="+22"/>
        <source>%p%</source>
        <translation>%p%</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>Повторить неудачные</source>
        <translation>Retry failed</translation>
    </message>
    <message>
        <location filename="../src/wizards/baseprogresswizardpage.cpp" line="+15"/>
        <source>Создание завершено</source>
        <translation>Creation finished</translation>
    </message>
    <message>
        <location line="+142"/>
        <source>Неизвестная ошибка</source>
        <translation>Unknown error</translation>
    </message>
    <message>
        <location line="+97"/>
        <source>Повтор неудачных задач: %1</source>
        <translation>Retrying failed tasks: %1</translation>
    </message>
</context>
<context>
    <name>BulkUpdateDialog</name>
    <message>
        <location filename="../app/bulkupdatedialog.cpp" line="+21"/>
        <source>Заблокирован</source>
        <translation>Blocked</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Массовое изменение</source>
        <translation>Bulk update</translation>
    </message>
    <message>
        <location line="+53"/>
        <source>Окончание действия</source>
        <translation>Valid until</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Блокировка</source>
        <translation>Blocking</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>График работы</source>
        <translation>Work schedule</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>Да</source>
        <translation>Yes</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Нет</source>
        <translation>No</translation>
    </message>
    <message>
        <location line="-47"/>
        <source>Будет изменено объектов: %1</source>
        <translation>Objects to be changed: %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Параметр</source>
        <translation>Parameter</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Значение</source>
        <translation>Value</translation>
    </message>
</context>
<context>
    <name>BulkUpdateRuns</name>
    <message>
        <location filename="../app/bulkupdateruns.cpp" line="+67"/>
        <source>Изменение</source>
        <translation>Change</translation>
    </message>
</context>
<context>
    <name>CardReadersMenu</name>
    <message>
        <location filename="../app/cardreadersmenu.cpp" line="+13"/>
        <source>&amp;Считыватели</source>
        <translation>&amp;Readers</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>Mifare Classic 1K</source>
        <translation>Mifare Classic 1K</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Mifare Classic 4K</source>
        <translation>Mifare Classic 4K</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Mifare DESFire 2 КБ</source>
        <translation>Mifare DESFire 2 KB</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Mifare DESFire 4 КБ</source>
        <translation>Mifare DESFire 4 KB</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Mifare DESFire 8 КБ</source>
        <translation>Mifare DESFire 8 KB</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Mifare Plus SL1</source>
        <translation>Mifare Plus SL1</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Mifare Plus SL3</source>
        <translation>Mifare Plus SL3</translation>
    </message>
    <message>
        <location line="+40"/>
        <source>На считыватель положена карта %1, номер %2</source>
        <translation>Card %1 put on the reader, number %2</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Карта убрана со считывателя</source>
        <translation>Card taken off the reader</translation>
    </message>
    <message>
        <location line="+15"/>
        <source>Нет подключенных считывателей</source>
        <translation>No readers connected</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>%1: %2</source>
        <translation>%1: %2</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>%1: нет карты</source>
        <translation>%1: no card</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Положить карту</source>
        <translation>Put a card</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Убрать карту</source>
        <translation>Take the card off</translation>
    </message>
</context>
<context>
    <name>CardTemplatesWidget</name>
    <message>
        <location filename="../src/cards/cardtemplateswidget.ui" line="+20"/>
        <source>Выбор шаблонов</source>
        <translation>Template selection</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Выберите шаблоны для записи на смарт-карту</source>
        <translation>Choose the templates to write to the smart card</translation>
    </message>
    <message>
        <location filename="../src/cards/cardtemplateswidget.cpp" line="+36"/>
        <source>Идентификатор</source>
        <translation>Identifier</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Размер, байт</source>
        <translation>Size, bytes</translation>
    </message>
    <message>
        <location line="+45"/>
        <source>На выбранную смарт-карту можно записать не более %1 байт</source>
        <translation>At most %1 bytes can be written to the selected smart card</translation>
    </message>
</context>
<context>
    <name>CardWidget</name>
    <message>
        <location filename="../src/cards/cardwidget.ui" line="+9"/>
        <source>Выдача карты</source>
        <translation>Card issue</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Считыватель:</source>
        <translation>Reader:</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Профиль карты:</source>
        <translation>Card profile:</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>Прочитать</source>
        <translation>Read</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Форматировать</source>
        <translation>Format</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Записать UID</source>
        <translation>Write UID</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Записать шаблоны</source>
        <translation>Write templates</translation>
    </message>
    <message>
        <location filename="../src/cards/cardwidget.cpp" line="+73"/>
        <location line="+236"/>
        <source>Осталось %1 сек.</source>
        <translation>%1 s left</translation>
    </message>
    <message>
        <location line="-158"/>
        <location line="+92"/>
        <source>Нет подключенных считывателей</source>
        <translation>No readers connected</translation>
    </message>
    <message>
        <location line="-89"/>
        <source>%1 (только номер карты)</source>
        <translation>%1 (card number only)</translation>
    </message>
    <message>
        <location line="+28"/>
        <source>Ключи по умолчанию</source>
        <translation>Default keys</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Профиль %1</source>
        <translation>Profile %1</translation>
    </message>
    <message>
        <location line="+35"/>
        <source>Только чтение: %1</source>
        <translation>Read only: %1</translation>
    </message>
    <message>
        <location line="+49"/>
        <source>У сотрудника нет биометрических шаблонов</source>
        <translation>The employee has no biometric templates</translation>
    </message>
    <message>
        <location line="+30"/>
        <source>Выбранный считыватель не работает со смарт-картами</source>
        <translation>The selected reader does not work with smart cards</translation>
    </message>
    <message>
        <location line="+40"/>
        <source>Карта: %1, номер %2, UID %3</source>
        <translation>Card: %1, number %2, UID %3</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>тип неизвестен</source>
        <translation>type unknown</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>не определен</source>
        <translation>not determined</translation>
    </message>
    <message>
        <location line="+51"/>
        <source>Выбор шаблонов</source>
        <translation>Template selection</translation>
    </message>
    <message>
        <location line="+14"/>
        <source>Запись шаблонов отменена</source>
        <translation>Template writing cancelled</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Не выбрано ни одного шаблона</source>
        <translation>No template selected</translation>
    </message>
    <message>
        <location line="+21"/>
        <source>Не удалось определить номер карты по ее идентификатору</source>
        <translation>Could not determine the card number from its identifier</translation>
    </message>
    <message>
        <location line="+43"/>
        <source>Карта %1 уже выдана сотруднику.</source>
        <translation>Card %1 is already issued to the employee.</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Сохранение карты %1 сотрудника %2</source>
        <translation>Saving card %1 of employee %2</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Ошибка сохранения карты %1 сотрудника %2</source>
        <translation>Failed to save card %1 of employee %2</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>Ошибка сохранения карты</source>
        <translation>Failed to save the card</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Карта %1 выдана сотруднику.</source>
        <translation>Card %1 issued to the employee.</translation>
    </message>
</context>
<context>
    <name>CardsPage</name>
    <message>
        <location filename="../app/cardspage.cpp" line="+15"/>
        <source>Считыватель</source>
        <translation>Reader</translation>
    </message>
</context>
<context>
    <name>ChangeSummaryWizardPage</name>
    <message>
        <location filename="../src/wizards/changesummarywizardpage.cpp" line="+14"/>
        <source>Проверка изменений</source>
        <translation>Review the changes</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Ничего еще не изменено. Проверьте, что будет сделано: изменения начнутся на следующей странице.</source>
        <translation>Nothing has been changed yet. Check what will be done: the changes start on the next page.</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Объект и поле</source>
        <translation>Object and field</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Было</source>
        <translation>Was</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Станет</source>
        <translation>Becomes</translation>
    </message>
    <message>
        <location line="+30"/>
        <source>Объектов: %1</source>
        <translation>Objects: %1</translation>
    </message>
</context>
<context>
    <name>DeleteListWizardPage</name>
    <message>
        <location filename="../src/wizards/deletelistwizardpage.cpp" line="+20"/>
        <source>Список объектов</source>
        <translation>Objects</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Объекты, с которыми будет работать мастер.</source>
        <translation>The objects the wizard will work on.</translation>
    </message>
</context>
<context>
    <name>DeleteObjectWizard</name>
    <message>
        <location filename="../src/wizards/deleteobjectwizard.cpp" line="+27"/>
        <source>Мастер удаления</source>
        <translation>Delete wizard</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Выполнить</source>
        <translation>Run</translation>
    </message>
    <message>
        <location line="+25"/>
        <source>%1: этот мастер удаляет только сотрудников, подразделения и организации</source>
        <translation>%1: this wizard deletes only employees, departments and companies</translation>
    </message>
    <message>
        <location line="+25"/>
        <source>«%1»: внутри остаются сотрудники или подразделения, не выбранные для удаления</source>
        <translation>“%1”: it still holds employees or departments not chosen for deletion</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Не будут удалены:</source>
        <translation>Will not be deleted:</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Нечего удалять</source>
        <translation>Nothing to delete</translation>
    </message>
    <message>
        <location line="+25"/>
        <source>Удаление</source>
        <translation>Deletion</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Подразделение</source>
        <translation>Department</translation>
    </message>
</context>
<context>
    <name>DeleteProgressWizardPage</name>
    <message>
        <location filename="../src/wizards/deleteprogresswizardpage.cpp" line="+10"/>
        <source>Удаление %1</source>
        <translation>Deleting %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>%1 удален</source>
        <translation>%1 deleted</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Ошибка удаления %1</source>
        <translation>Failed to delete %1</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Идет удаление</source>
        <translation>Deleting</translation>
    </message>
</context>
<context>
    <name>DepartmentPropertyView</name>
    <message>
        <location filename="../src/orgstructure/departmentpropertyview.cpp" line="+8"/>
        <source>Название</source>
        <translation>Name</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Название подразделения не может быть пустым</source>
        <translation>The department name cannot be empty</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Номер</source>
        <translation>Number</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Описание</source>
        <translation>Description</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>Сохранение параметров подразделения %1</source>
        <translation>Saving the properties of department %1</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Ошибка сохранения параметров подразделения %1</source>
        <translation>Error saving the properties of department %1</translation>
    </message>
</context>
<context>
    <name>DepartmentSelectionDialog</name>
    <message>
        <location filename="../src/orgstructure/departmentselectiondialog.cpp" line="+33"/>
        <source>Выбор подразделения</source>
        <translation>Choose a department</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Название подразделения</source>
        <translation>Department name</translation>
    </message>
    <message>
        <location line="+141"/>
        <source>Выберите подразделение</source>
        <translation>Choose a department</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>«%1» не организация</source>
        <translation>“%1” is not a firm</translation>
    </message>
    <message>
        <location line="+1"/>
        <location line="+2"/>
        <source>«%1» нельзя выбрать</source>
        <translation>“%1” cannot be chosen</translation>
    </message>
</context>
<context>
    <name>DismissProgressWizardPage</name>
    <message>
        <location filename="../src/wizards/dismissprogresswizardpage.cpp" line="+4"/>
        <source>Увольнение %1</source>
        <translation>Dismissing %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>%1 уволен</source>
        <translation>%1 dismissed</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Ошибка увольнения %1</source>
        <translation>Failed to dismiss %1</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Идет увольнение</source>
        <translation>Dismissing</translation>
    </message>
</context>
<context>
    <name>DismissalParametersWizardPage</name>
    <message>
        <location filename="../src/wizards/dismissalparameterswizardpage.cpp" line="+16"/>
        <source>Параметры увольнения</source>
        <translation>Dismissal details</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Дата и причина увольнения сохраняются у каждого сотрудника.</source>
        <translation>The date and reason of dismissal are kept with each employee.</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Например: по собственному желанию</source>
        <translation>For example: at own request</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Дата увольнения</source>
        <translation>Dismissal date</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Причина увольнения</source>
        <translation>Dismissal reason</translation>
    </message>
    <message>
        <location line="+30"/>
        <source>Укажите дату увольнения</source>
        <translation>Enter the dismissal date</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Укажите причину увольнения</source>
        <translation>Enter the dismissal reason</translation>
    </message>
</context>
<context>
    <name>DismissalWizard</name>
    <message>
        <location filename="../src/wizards/dismissalwizard.cpp" line="+35"/>
        <source>Мастер увольнения</source>
        <translation>Dismissal wizard</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Выполнить</source>
        <translation>Run</translation>
    </message>
    <message>
        <location line="+22"/>
        <source>%1: не сотрудник</source>
        <translation>%1: not an employee</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>%1: уже уволен</source>
        <translation>%1: already dismissed</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Не будут уволены:</source>
        <translation>Will not be dismissed:</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Нет сотрудников для увольнения</source>
        <translation>No employees to dismiss</translation>
    </message>
    <message>
        <location line="+40"/>
        <source>Увольнение</source>
        <translation>Dismissal</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Состояние</source>
        <translation>State</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Работает</source>
        <translation>Employed</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Уволен</source>
        <translation>Dismissed</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Дата увольнения</source>
        <translation>Dismissal date</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Причина увольнения</source>
        <translation>Dismissal reason</translation>
    </message>
</context>
<context>
    <name>EmployeeCardsModel</name>
    <message>
        <location filename="../src/cards/employeecardsmodel.cpp" line="+60"/>
        <source>Срок действия истек</source>
        <translation>Expired</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Еще не действует</source>
        <translation>Not yet valid</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Действует</source>
        <translation>Valid</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>Профиль %1 удален</source>
        <translation>Profile %1 deleted</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Ключи по умолчанию</source>
        <translation>Default keys</translation>
    </message>
    <message>
        <location line="+38"/>
        <source>Номер карты</source>
        <translation>Card number</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Тип карты</source>
        <translation>Card type</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Состояние</source>
        <translation>State</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Действует с</source>
        <translation>Valid from</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Действует по</source>
        <translation>Valid to</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Профиль</source>
        <translation>Profile</translation>
    </message>
</context>
<context>
    <name>EmployeeCardsView</name>
    <message>
        <location filename="../src/cards/employeecardsview.cpp" line="+104"/>
        <source>Выберите карту</source>
        <translation>Select a card</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Карт нет</source>
        <translation>No cards</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Карта %1</source>
        <translation>Card %1</translation>
    </message>
</context>
<context>
    <name>FirmPropertyView</name>
    <message>
        <location filename="../src/orgstructure/firmpropertyview.cpp" line="+34"/>
        <source>Краткое название</source>
        <translation>Short name</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Краткое название организации не может быть пустым</source>
        <translation>The short name of the firm cannot be empty</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Полное название</source>
        <translation>Full name</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>ИНН</source>
        <translation>INN</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>ИНН организации состоит из 10 цифр с верной контрольной цифрой</source>
        <translation>A firm&apos;s INN has 10 digits with a correct check digit</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>10 цифр</source>
        <translation>10 digits</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>КПП</source>
        <translation>KPP</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КПП состоит из 9 цифр</source>
        <translation>A KPP has 9 digits</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>ОГРН</source>
        <translation>OGRN</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>ОГРН состоит из 13 цифр с верной контрольной цифрой</source>
        <translation>An OGRN has 13 digits with a correct check digit</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Адрес</source>
        <translation>Address</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Описание</source>
        <translation>Description</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>Сохранение параметров организации %1</source>
        <translation>Saving the properties of firm %1</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Ошибка сохранения параметров организации %1</source>
        <translation>Error saving the properties of firm %1</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <location filename="../app/mainwindow.cpp" line="+96"/>
        <source>Nivaro-Studio — %1</source>
        <translation>Nivaro-Studio — %1</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Несохраненные изменения</source>
        <translation>Unsaved changes</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Сохранить изменения?</source>
        <translation>Save the changes?</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Массовое изменение</source>
        <translation>Bulk update</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Выполнить оставшиеся</source>
        <translation>Run the rest</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Оставить как есть</source>
        <translation>Leave as it is</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>&amp;Файл</source>
        <translation>&amp;File</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Выход</source>
        <translation>Exit</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>&amp;Правка</source>
        <translation>&amp;Edit</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Массовое изменение…</source>
        <translation>Bulk update…</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>&amp;Организация</source>
        <translation>&amp;Organisation</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Организация</source>
        <translation>Organisation</translation>
    </message>
    <message>
        <location line="+28"/>
        <source>Фильтр по имени</source>
        <translation>Filter by name</translation>
    </message>
    <message>
        <location line="+28"/>
        <location line="+191"/>
        <source>Выберите одного или нескольких сотрудников в дереве организации</source>
        <translation>Select one or more employees in the organisation tree</translation>
    </message>
    <message>
        <location line="-187"/>
        <source>Личные данные</source>
        <translation>Personal data</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>График работ</source>
        <translation>Work schedule</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Отсутствия</source>
        <translation>Absences</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Карты</source>
        <translation>Cards</translation>
    </message>
    <message>
        <location line="+42"/>
        <source>Хранилище: %1</source>
        <translation>Store: %1</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Считыватели: PC/SC</source>
        <translation>Readers: PC/SC</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Считыватели: виртуальные</source>
        <translation>Readers: simulated</translation>
    </message>
    <message>
        <location line="+238"/>
        <source>Сохранить журнал…</source>
        <translation>Save log…</translation>
    </message>
    <message>
        <location line="+2"/>
        <location line="+6"/>
        <source>Сохранить журнал</source>
        <translation>Save log</translation>
    </message>
    <message>
        <location line="-5"/>
        <source>Текстовые файлы (*.txt)</source>
        <translation>Text files (*.txt)</translation>
    </message>
    <message>
        <location line="-64"/>
        <location line="+92"/>
        <location line="+63"/>
        <source>Только чтение: %1</source>
        <translation>Read only: %1</translation>
    </message>
    <message>
        <location line="-198"/>
        <source>Выбраны и организации, и подразделения: выберите что-то одно, чтобы изменить свойства</source>
        <translation>Both firms and departments are selected: choose one kind to edit their properties</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>«%1»: выберите сотрудников, подразделения или организации</source>
        <translation>“%1”: select employees, departments or firms</translation>
    </message>
    <message>
        <location line="+155"/>
        <source>Выбрано подразделений: %1</source>
        <translation>Departments selected: %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Выбрано организаций: %1</source>
        <translation>Firms selected: %1</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Выбрано сотрудников: %1</source>
        <translation>Employees selected: %1</translation>
    </message>
    <message>
        <location line="+53"/>
        <source>Массовое изменение прервано: обработано %1 из %2 объектов.</source>
        <translation>Bulk update interrupted: %1 of %2 objects processed.</translation>
    </message>
    <message>
        <location line="+33"/>
        <source>Найдено слишком много: уточните фильтр</source>
        <translation>Too many matches: narrow the filter</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Сотрудников: %1, уволенных: %2</source>
        <translation>Employees: %1, dismissed: %2</translation>
    </message>
</context>
<context>
    <name>NVDialogsUtils</name>
    <message>
        <location filename="../src/nvdialogsutils.cpp" line="+28"/>
        <source>АФГАНИСТАН</source>
        <translation>Afghanistan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АЛБАНИЯ</source>
        <translation>Albania</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АНТАРКТИДА</source>
        <translation>Antarctica</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АЛЖИР</source>
        <translation>Algeria</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АМЕРИКАНСКОЕ САМОА</source>
        <translation>American Samoa</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АНДОРРА</source>
        <translation>Andorra</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АНГОЛА</source>
        <translation>Angola</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АНТИГУА И БАРБУДА</source>
        <translation>Antigua and Barbuda</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АЗЕРБАЙДЖАН</source>
        <translation>Azerbaijan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АРГЕНТИНА</source>
        <translation>Argentina</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АВСТРАЛИЯ</source>
        <translation>Australia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АВСТРИЯ</source>
        <translation>Austria</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БАГАМЫ</source>
        <translation>Bahamas</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БАХРЕЙН</source>
        <translation>Bahrain</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БАНГЛАДЕШ</source>
        <translation>Bangladesh</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АРМЕНИЯ</source>
        <translation>Armenia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БАРБАДОС</source>
        <translation>Barbados</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БЕЛЬГИЯ</source>
        <translation>Belgium</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БЕРМУДЫ</source>
        <translation>Bermuda</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БУТАН</source>
        <translation>Bhutan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БОЛИВИЯ (МНОГОНАЦИОНАЛЬНОЕ ГОСУДАРСТВО)</source>
        <translation>Bolivia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БОСНИЯ И ГЕРЦЕГОВИНА</source>
        <translation>Bosnia and Herzegovina</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БОТСВАНА</source>
        <translation>Botswana</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ОСТРОВ БУВЕ</source>
        <translation>Bouvet Island</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БРАЗИЛИЯ</source>
        <translation>Brazil</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БЕЛИЗ</source>
        <translation>Belize</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БРИТАНСКАЯ ТЕРРИТОРИЯ В ИНДИЙСКОМ ОКЕАНЕ</source>
        <translation>British Indian Ocean Territory</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СОЛОМОНОВЫ ОСТРОВА</source>
        <translation>Solomon Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ВИРГИНСКИЕ ОСТРОВА, БРИТАНСКИЕ</source>
        <translation>British Virgin Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БРУНЕЙ-ДАРУССАЛАМ</source>
        <translation>Brunei Darussalam</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БОЛГАРИЯ</source>
        <translation>Bulgaria</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МЬЯНМА</source>
        <translation>Myanmar</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БУРУНДИ</source>
        <translation>Burundi</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БЕЛАРУСЬ</source>
        <translation>Belarus</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КАМБОДЖА</source>
        <translation>Cambodia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КАМЕРУН</source>
        <translation>Cameroon</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КАНАДА</source>
        <translation>Canada</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КАБО-ВЕРДЕ</source>
        <translation>Cabo Verde</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ОСТРОВА КАЙМАН</source>
        <translation>Cayman Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЦЕНТРАЛЬНО-АФРИКАНСКАЯ РЕСПУБЛИКА</source>
        <translation>Central African Republic</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ШРИ-ЛАНКА</source>
        <translation>Sri Lanka</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЧАД</source>
        <translation>Chad</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЧИЛИ</source>
        <translation>Chile</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КИТАЙ</source>
        <translation>China</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ТАЙВАНЬ (КИТАЙ)</source>
        <translation>Taiwan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ОСТРОВ РОЖДЕСТВА</source>
        <translation>Christmas Island</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КОКОСОВЫЕ (КИЛИНГ) ОСТРОВА</source>
        <translation>Cocos (Keeling) Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КОЛУМБИЯ</source>
        <translation>Colombia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КОМОРЫ</source>
        <translation>Comoros</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАЙОТТА</source>
        <translation>Mayotte</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КОНГО</source>
        <translation>Congo</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КОНГО, ДЕМОКРАТИЧЕСКАЯ РЕСПУБЛИКА</source>
        <translation>Democratic Republic of the Congo</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ОСТРОВА КУКА</source>
        <translation>Cook Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КОСТА-РИКА</source>
        <translation>Costa Rica</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ХОРВАТИЯ</source>
        <translation>Croatia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КУБА</source>
        <translation>Cuba</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КИПР</source>
        <translation>Cyprus</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЧЕХИЯ</source>
        <translation>Czechia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БЕНИН</source>
        <translation>Benin</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ДАНИЯ</source>
        <translation>Denmark</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ДОМИНИКА</source>
        <translation>Dominica</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ДОМИНИКАНСКАЯ РЕСПУБЛИКА</source>
        <translation>Dominican Republic</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЭКВАДОР</source>
        <translation>Ecuador</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЭЛЬ-САЛЬВАДОР</source>
        <translation>El Salvador</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЭКВАТОРИАЛЬНАЯ ГВИНЕЯ</source>
        <translation>Equatorial Guinea</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЭФИОПИЯ</source>
        <translation>Ethiopia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЭРИТРЕЯ</source>
        <translation>Eritrea</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЭСТОНИЯ</source>
        <translation>Estonia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ФАРЕРСКИЕ ОСТРОВА</source>
        <translation>Faroe Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ФОЛКЛЕНДСКИЕ ОСТРОВА (МАЛЬВИНСКИЕ)</source>
        <translation>Falkland Islands (Malvinas)</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЮЖНАЯ ДЖОРДЖИЯ И ЮЖНЫЕ САНДВИЧЕВЫ ОСТРОВА</source>
        <translation>South Georgia and the South Sandwich Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ФИДЖИ</source>
        <translation>Fiji</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ФИНЛЯНДИЯ</source>
        <translation>Finland</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЭЛАНДСКИЕ ОСТРОВА</source>
        <translation>Åland Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ФРАНЦИЯ</source>
        <translation>France</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ФРАНЦУЗСКАЯ ГВИАНА</source>
        <translation>French Guiana</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ФРАНЦУЗСКАЯ ПОЛИНЕЗИЯ</source>
        <translation>French Polynesia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ФРАНЦУЗСКИЕ ЮЖНЫЕ ТЕРРИТОРИИ</source>
        <translation>French Southern Territories</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ДЖИБУТИ</source>
        <translation>Djibouti</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГАБОН</source>
        <translation>Gabon</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГРУЗИЯ</source>
        <translation>Georgia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГАМБИЯ</source>
        <translation>Gambia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ПАЛЕСТИНА, ГОСУДАРСТВО</source>
        <translation>Palestine</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГЕРМАНИЯ</source>
        <translation>Germany</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГАНА</source>
        <translation>Ghana</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГИБРАЛТАР</source>
        <translation>Gibraltar</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КИРИБАТИ</source>
        <translation>Kiribati</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГРЕЦИЯ</source>
        <translation>Greece</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГРЕНЛАНДИЯ</source>
        <translation>Greenland</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГРЕНАДА</source>
        <translation>Grenada</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГВАДЕЛУПА</source>
        <translation>Guadeloupe</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГУАМ</source>
        <translation>Guam</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГВАТЕМАЛА</source>
        <translation>Guatemala</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГВИНЕЯ</source>
        <translation>Guinea</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГАЙАНА</source>
        <translation>Guyana</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГАИТИ</source>
        <translation>Haiti</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ОСТРОВ ХЕРД И ОСТРОВА МАКДОНАЛЬД</source>
        <translation>Heard Island and McDonald Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ПАПСКИЙ ПРЕСТОЛ (ГОСУДАРСТВО - ГОРОД ВАТИКАН)</source>
        <translation>Holy See (Vatican City)</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГОНДУРАС</source>
        <translation>Honduras</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГОНКОНГ</source>
        <translation>Hong Kong</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ВЕНГРИЯ</source>
        <translation>Hungary</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ИСЛАНДИЯ</source>
        <translation>Iceland</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ИНДИЯ</source>
        <translation>India</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ИНДОНЕЗИЯ</source>
        <translation>Indonesia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ИРАН (ИСЛАМСКАЯ РЕСПУБЛИКА)</source>
        <translation>Iran</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ИРАК</source>
        <translation>Iraq</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ИРЛАНДИЯ</source>
        <translation>Ireland</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ИЗРАИЛЬ</source>
        <translation>Israel</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ИТАЛИЯ</source>
        <translation>Italy</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КОТ Д&apos;ИВУАР</source>
        <translation>Côte d&apos;Ivoire</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЯМАЙКА</source>
        <translation>Jamaica</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЯПОНИЯ</source>
        <translation>Japan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КАЗАХСТАН</source>
        <translation>Kazakhstan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ИОРДАНИЯ</source>
        <translation>Jordan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КЕНИЯ</source>
        <translation>Kenya</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КОРЕЯ, НАРОДНО-ДЕМОКРАТИЧЕСКАЯ РЕСПУБЛИКА</source>
        <translation>North Korea</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КОРЕЯ, РЕСПУБЛИКА</source>
        <translation>South Korea</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КУВЕЙТ</source>
        <translation>Kuwait</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КИРГИЗИЯ</source>
        <translation>Kyrgyzstan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЛАОССКАЯ НАРОДНО-ДЕМОКРАТИЧЕСКАЯ РЕСПУБЛИКА</source>
        <translation>Laos</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЛИВАН</source>
        <translation>Lebanon</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЛЕСОТО</source>
        <translation>Lesotho</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЛАТВИЯ</source>
        <translation>Latvia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЛИБЕРИЯ</source>
        <translation>Liberia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЛИВИЯ</source>
        <translation>Libya</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЛИХТЕНШТЕЙН</source>
        <translation>Liechtenstein</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЛИТВА</source>
        <translation>Lithuania</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЛЮКСЕМБУРГ</source>
        <translation>Luxembourg</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАКАО</source>
        <translation>Macao</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАДАГАСКАР</source>
        <translation>Madagascar</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАЛАВИ</source>
        <translation>Malawi</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАЛАЙЗИЯ</source>
        <translation>Malaysia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАЛЬДИВЫ</source>
        <translation>Maldives</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАЛИ</source>
        <translation>Mali</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАЛЬТА</source>
        <translation>Malta</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАРТИНИКА</source>
        <translation>Martinique</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАВРИТАНИЯ</source>
        <translation>Mauritania</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАВРИКИЙ</source>
        <translation>Mauritius</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МЕКСИКА</source>
        <translation>Mexico</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МОНАКО</source>
        <translation>Monaco</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МОНГОЛИЯ</source>
        <translation>Mongolia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МОЛДОВА, РЕСПУБЛИКА</source>
        <translation>Moldova</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЧЕРНОГОРИЯ</source>
        <translation>Montenegro</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МОНТСЕРРАТ</source>
        <translation>Montserrat</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАРОККО</source>
        <translation>Morocco</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МОЗАМБИК</source>
        <translation>Mozambique</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ОМАН</source>
        <translation>Oman</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>НАМИБИЯ</source>
        <translation>Namibia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>НАУРУ</source>
        <translation>Nauru</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>НЕПАЛ</source>
        <translation>Nepal</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>НИДЕРЛАНДЫ</source>
        <translation>Netherlands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КЮРАСАО</source>
        <translation>Curaçao</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АРУБА</source>
        <translation>Aruba</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЕН-МАРТЕН (НИДЕРЛАНДСКАЯ ЧАСТЬ)</source>
        <translation>Sint Maarten (Dutch part)</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БОНЭЙР, СИНТ-ЭСТАТИУС И САБА</source>
        <translation>Bonaire, Sint Eustatius and Saba</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>НОВАЯ КАЛЕДОНИЯ</source>
        <translation>New Caledonia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ВАНУАТУ</source>
        <translation>Vanuatu</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>НОВАЯ ЗЕЛАНДИЯ</source>
        <translation>New Zealand</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>НИКАРАГУА</source>
        <translation>Nicaragua</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>НИГЕР</source>
        <translation>Niger</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>НИГЕРИЯ</source>
        <translation>Nigeria</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>НИУЭ</source>
        <translation>Niue</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ОСТРОВ НОРФОЛК</source>
        <translation>Norfolk Island</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>НОРВЕГИЯ</source>
        <translation>Norway</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЕВЕРНЫЕ МАРИАНСКИЕ ОСТРОВА</source>
        <translation>Northern Mariana Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАЛЫЕ ТИХООКЕАНСКИЕ ОТДАЛЕННЫЕ ОСТРОВА СОЕДИНЕННЫХ ШТАТОВ</source>
        <translation>United States Minor Outlying Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МИКРОНЕЗИЯ, ФЕДЕРАТИВНЫЕ ШТАТЫ</source>
        <translation>Micronesia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>МАРШАЛЛОВЫ ОСТРОВА</source>
        <translation>Marshall Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ПАЛАУ</source>
        <translation>Palau</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ПАКИСТАН</source>
        <translation>Pakistan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ПАНАМА</source>
        <translation>Panama</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ПАПУА-НОВАЯ ГВИНЕЯ</source>
        <translation>Papua New Guinea</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ПАРАГВАЙ</source>
        <translation>Paraguay</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ПЕРУ</source>
        <translation>Peru</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ФИЛИППИНЫ</source>
        <translation>Philippines</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ПИТКЕРН</source>
        <translation>Pitcairn</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ПОЛЬША</source>
        <translation>Poland</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ПОРТУГАЛИЯ</source>
        <translation>Portugal</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГВИНЕЯ-БИСАУ</source>
        <translation>Guinea-Bissau</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ТИМОР-ЛЕСТЕ</source>
        <translation>Timor-Leste</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ПУЭРТО-РИКО</source>
        <translation>Puerto Rico</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>КАТАР</source>
        <translation>Qatar</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>РЕЮНЬОН</source>
        <translation>Réunion</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>РУМЫНИЯ</source>
        <translation>Romania</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>РОССИЯ</source>
        <translation>Russian Federation</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>РУАНДА</source>
        <translation>Rwanda</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЕН-БАРТЕЛЕМИ</source>
        <translation>Saint Barthélemy</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СВЯТАЯ ЕЛЕНА, ОСТРОВ ВОЗНЕСЕНИЯ, ТРИСТАН-ДА-КУНЬЯ</source>
        <translation>Saint Helena, Ascension and Tristan da Cunha</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЕНТ-КИТС И НЕВИС</source>
        <translation>Saint Kitts and Nevis</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АНГВИЛЛА</source>
        <translation>Anguilla</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЕНТ-ЛЮСИЯ</source>
        <translation>Saint Lucia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЕН-МАРТЕН (ФРАНЦУЗСКАЯ ЧАСТЬ)</source>
        <translation>Saint Martin (French part)</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЕН-ПЬЕР И МИКЕЛОН</source>
        <translation>Saint Pierre and Miquelon</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЕНТ-ВИНСЕНТ И ГРЕНАДИНЫ</source>
        <translation>Saint Vincent and the Grenadines</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>САН-МАРИНО</source>
        <translation>San Marino</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>САН-ТОМЕ И ПРИНСИПИ</source>
        <translation>Sao Tome and Principe</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>САУДОВСКАЯ АРАВИЯ</source>
        <translation>Saudi Arabia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЕНЕГАЛ</source>
        <translation>Senegal</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЕРБИЯ</source>
        <translation>Serbia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЕЙШЕЛЫ</source>
        <translation>Seychelles</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЬЕРРА-ЛЕОНЕ</source>
        <translation>Sierra Leone</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СИНГАПУР</source>
        <translation>Singapore</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЛОВАКИЯ</source>
        <translation>Slovakia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ВЬЕТНАМ</source>
        <translation>Vietnam</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЛОВЕНИЯ</source>
        <translation>Slovenia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СОМАЛИ</source>
        <translation>Somalia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЮЖНАЯ АФРИКА</source>
        <translation>South Africa</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЗИМБАБВЕ</source>
        <translation>Zimbabwe</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ИСПАНИЯ</source>
        <translation>Spain</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЮЖНЫЙ СУДАН</source>
        <translation>South Sudan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СУДАН</source>
        <translation>Sudan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЗАПАДНАЯ САХАРА</source>
        <translation>Western Sahara</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СУРИНАМ</source>
        <translation>Suriname</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ШПИЦБЕРГЕН И ЯН МАЙЕН</source>
        <translation>Svalbard and Jan Mayen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЭСВАТИНИ</source>
        <translation>Eswatini</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ШВЕЦИЯ</source>
        <translation>Sweden</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ШВЕЙЦАРИЯ</source>
        <translation>Switzerland</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СИРИЙСКАЯ АРАБСКАЯ РЕСПУБЛИКА</source>
        <translation>Syria</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ТАДЖИКИСТАН</source>
        <translation>Tajikistan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ТАИЛАНД</source>
        <translation>Thailand</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ТОГО</source>
        <translation>Togo</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ТОКЕЛАУ</source>
        <translation>Tokelau</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ТОНГА</source>
        <translation>Tonga</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ТРИНИДАД И ТОБАГО</source>
        <translation>Trinidad and Tobago</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ОБЪЕДИНЕННЫЕ АРАБСКИЕ ЭМИРАТЫ</source>
        <translation>United Arab Emirates</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ТУНИС</source>
        <translation>Tunisia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ТУРЦИЯ</source>
        <translation>Türkiye</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ТУРКМЕНИСТАН</source>
        <translation>Turkmenistan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ОСТРОВА ТЕРКС И КАЙКОС</source>
        <translation>Turks and Caicos Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ТУВАЛУ</source>
        <translation>Tuvalu</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>УГАНДА</source>
        <translation>Uganda</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>УКРАИНА</source>
        <translation>Ukraine</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СЕВЕРНАЯ МАКЕДОНИЯ</source>
        <translation>North Macedonia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЕГИПЕТ</source>
        <translation>Egypt</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СОЕДИНЕННОЕ КОРОЛЕВСТВО</source>
        <translation>United Kingdom</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ГЕРНСИ</source>
        <translation>Guernsey</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ДЖЕРСИ</source>
        <translation>Jersey</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ОСТРОВ МЭН</source>
        <translation>Isle of Man</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ТАНЗАНИЯ, ОБЪЕДИНЕННАЯ РЕСПУБЛИКА</source>
        <translation>Tanzania</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>СОЕДИНЕННЫЕ ШТАТЫ</source>
        <translation>United States</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ВИРГИНСКИЕ ОСТРОВА, США</source>
        <translation>U.S. Virgin Islands</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>БУРКИНА-ФАСО</source>
        <translation>Burkina Faso</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>УРУГВАЙ</source>
        <translation>Uruguay</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>УЗБЕКИСТАН</source>
        <translation>Uzbekistan</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ВЕНЕСУЭЛА (БОЛИВАРИАНСКАЯ РЕСПУБЛИКА)</source>
        <translation>Venezuela</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>УОЛЛИС И ФУТУНА</source>
        <translation>Wallis and Futuna</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>САМОА</source>
        <translation>Samoa</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЙЕМЕН</source>
        <translation>Yemen</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЗАМБИЯ</source>
        <translation>Zambia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>АБХАЗИЯ</source>
        <translation>Abkhazia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЮЖНАЯ ОСЕТИЯ</source>
        <translation>South Ossetia</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ДНР</source>
        <translation>Donetsk People&apos;s Republic</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>ЛНР</source>
        <translation>Luhansk People&apos;s Republic</translation>
    </message>
    <message numerus="yes">
        <location line="+57"/>
        <source>Не более %n символов</source>
        <translation>
            <numerusform>At most %n character</numerusform>
            <numerusform>At most %n characters</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>NVGlobals</name>
    <message>
        <location filename="../platform/nvglobals/nvglobals.cpp" line="+122"/>
        <source>Правый большой</source>
        <translation>Right thumb</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Правый указательный</source>
        <translation>Right index finger</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Правый средний</source>
        <translation>Right middle finger</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Правый безымянный</source>
        <translation>Right ring finger</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Правый мизинец</source>
        <translation>Right little finger</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Левый большой</source>
        <translation>Left thumb</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Левый указательный</source>
        <translation>Left index finger</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Левый средний</source>
        <translation>Left middle finger</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Левый безымянный</source>
        <translation>Left ring finger</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Левый мизинец</source>
        <translation>Left little finger</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Правая ладонь</source>
        <translation>Right palm</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Левая ладонь</source>
        <translation>Left palm</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Лицо</source>
        <translation>Face</translation>
    </message>
</context>
<context>
    <name>NVSpec</name>
    <message>
        <location filename="../src/custodyregimes.cpp" line="+8"/>
        <source>Общий</source>
        <translation>General</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Строгий</source>
        <translation>Strict</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Особый</source>
        <translation>Special</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Колония поселения</source>
        <translation>Settlement colony</translation>
    </message>
</context>
<context>
    <name>NewDepartmentParametersPage</name>
    <message>
        <location filename="../src/wizards/newdepartmentparameterspage.cpp" line="+39"/>
        <source>Выбрать...</source>
        <translation>Choose...</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Подразделение</source>
        <translation>Department</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Название и место в структуре обязательны, номер можно задать позже.</source>
        <translation>The name and the place in the structure are required; the number can be set later.</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Выбор вышестоящего подразделения</source>
        <translation>Choose the parent department</translation>
    </message>
    <message>
        <location line="+13"/>
        <location line="+42"/>
        <source>Название</source>
        <translation>Name</translation>
    </message>
    <message>
        <location line="-41"/>
        <location line="+42"/>
        <source>Номер</source>
        <translation>Number</translation>
    </message>
    <message>
        <location line="-41"/>
        <location line="+43"/>
        <source>Входит в</source>
        <translation>Part of</translation>
    </message>
    <message>
        <location line="-24"/>
        <source>(не выбрано)</source>
        <translation>(not chosen)</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>Укажите название подразделения</source>
        <translation>Enter the department&apos;s name</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Выберите организацию или подразделение, в которое входит новое</source>
        <translation>Choose the firm or department the new one belongs to</translation>
    </message>
</context>
<context>
    <name>NewDepartmentWizard</name>
    <message>
        <location filename="../src/wizards/newdepartmentwizard.cpp" line="+16"/>
        <source>Мастер создания подразделения</source>
        <translation>New department wizard</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Сохранение</source>
        <translation>Saving</translation>
    </message>
    <message>
        <location line="+14"/>
        <source>Создание подразделения %1</source>
        <translation>Creating department %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Ошибка создания подразделения %1</source>
        <translation>Failed to create department %1</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Создание</source>
        <translation>Creation</translation>
    </message>
</context>
<context>
    <name>NewFirmParametersPage</name>
    <message>
        <location filename="../src/wizards/newfirmparameterspage.cpp" line="+22"/>
        <source>Организация</source>
        <translation>Firm</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Название обязательно, остальное можно заполнить позже.</source>
        <translation>The name is required; the rest can be filled in later.</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>10 цифр</source>
        <translation>10 digits</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>9 цифр</source>
        <translation>9 digits</translation>
    </message>
    <message>
        <location line="+5"/>
        <location line="+35"/>
        <source>Название</source>
        <translation>Name</translation>
    </message>
    <message>
        <location line="-34"/>
        <location line="+35"/>
        <source>Полное название</source>
        <translation>Full name</translation>
    </message>
    <message>
        <location line="-34"/>
        <location line="+35"/>
        <source>ИНН</source>
        <translation>INN</translation>
    </message>
    <message>
        <location line="-34"/>
        <location line="+35"/>
        <source>КПП</source>
        <translation>KPP</translation>
    </message>
    <message>
        <location line="-17"/>
        <source>Укажите название организации</source>
        <translation>Enter the firm&apos;s name</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>ИНН организации: 10 цифр с верной контрольной цифрой</source>
        <translation>A firm&apos;s INN: 10 digits with a correct check digit</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>КПП: 9 цифр</source>
        <translation>KPP: 9 digits</translation>
    </message>
</context>
<context>
    <name>NewFirmWizard</name>
    <message>
        <location filename="../src/wizards/newfirmwizard.cpp" line="+14"/>
        <source>Мастер создания организации</source>
        <translation>New firm wizard</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Сохранение</source>
        <translation>Saving</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Создание организации %1</source>
        <translation>Creating firm %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Ошибка создания организации %1</source>
        <translation>Failed to create firm %1</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Создание</source>
        <translation>Creation</translation>
    </message>
</context>
<context>
    <name>NewObjectWizard</name>
    <message>
        <location filename="../src/wizards/newobjectwizard.cpp" line="+11"/>
        <source>Создать</source>
        <translation>Create</translation>
    </message>
    <message>
        <location line="+65"/>
        <source>Операция отменена</source>
        <translation>Operation cancelled</translation>
    </message>
</context>
<context>
    <name>NewWorkerCardPage</name>
    <message>
        <location filename="../src/wizards/newworkercardpage.cpp" line="+39"/>
        <source>Считать карту</source>
        <translation>Read card</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Карта</source>
        <translation>Card</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Необязательно: приложите карту к считывателю или введите ее номер.</source>
        <translation>Optional: put the card on the reader or type its number.</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>Считыватель</source>
        <translation>Reader</translation>
    </message>
    <message>
        <location line="+1"/>
        <location line="+127"/>
        <source>Номер карты</source>
        <translation>Card number</translation>
    </message>
    <message>
        <location line="-91"/>
        <source>Нет подключенных считывателей</source>
        <translation>No readers connected</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>Считыватель не может прочитать карту</source>
        <translation>The reader cannot read the card</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Приложите карту к считывателю</source>
        <translation>Put the card on the reader</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>Не удалось определить номер карты по ее идентификатору</source>
        <translation>Could not determine the card number from its identifier</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Прочитана карта %1</source>
        <translation>Card %1 read</translation>
    </message>
    <message>
        <location line="+29"/>
        <source>Идет чтение карты</source>
        <translation>Reading the card</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Номер карты &quot;%1&quot; не распознан</source>
        <translation>Card number &quot;%1&quot; not recognised</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Карта %1 уже выдана: %2</source>
        <translation>Card %1 is already issued: %2</translation>
    </message>
    <message>
        <location line="+17"/>
        <source>Тип карты</source>
        <translation>Card type</translation>
    </message>
</context>
<context>
    <name>NewWorkerJobPage</name>
    <message>
        <location filename="../src/wizards/newworkerjobpage.cpp" line="+41"/>
        <source>Выбрать...</source>
        <translation>Choose...</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Место работы</source>
        <translation>Place of work</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Подразделение обязательно, табельный номер не должен повторяться.</source>
        <translation>The department is required; the personnel number must not repeat.</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Выбор подразделения</source>
        <translation>Choose a department</translation>
    </message>
    <message>
        <location line="+22"/>
        <location line="+85"/>
        <source>Подразделение</source>
        <translation>Department</translation>
    </message>
    <message>
        <location line="-84"/>
        <location line="+87"/>
        <source>Должность</source>
        <translation>Position</translation>
    </message>
    <message>
        <location line="-86"/>
        <location line="+87"/>
        <source>Табельный номер</source>
        <translation>Personnel number</translation>
    </message>
    <message>
        <location line="-86"/>
        <location line="+89"/>
        <source>График работы</source>
        <translation>Work schedule</translation>
    </message>
    <message>
        <location line="-88"/>
        <location line="+92"/>
        <source>Действует с</source>
        <translation>Valid from</translation>
    </message>
    <message>
        <location line="-91"/>
        <location line="+91"/>
        <source>Действует по</source>
        <translation>Valid to</translation>
    </message>
    <message>
        <location line="-63"/>
        <source>Не задана</source>
        <translation>Not set</translation>
    </message>
    <message>
        <location line="+14"/>
        <source>Не задан</source>
        <translation>Not set</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>(не выбрано)</source>
        <translation>(not chosen)</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Выберите подразделение или организацию сотрудника</source>
        <translation>Choose the employee&apos;s department or firm</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Табельный номер %1 уже есть у сотрудника: %2</source>
        <translation>Personnel number %1 is already held by: %2</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Дата окончания (%1) раньше даты начала (%2)</source>
        <translation>The end date (%1) is before the start date (%2)</translation>
    </message>
</context>
<context>
    <name>NewWorkerPhotoPage</name>
    <message>
        <location filename="../src/wizards/newworkerphotopage.cpp" line="+17"/>
        <location line="+29"/>
        <source>Фотография</source>
        <translation>Photo</translation>
    </message>
    <message>
        <location line="-28"/>
        <source>Необязательно: фотографию можно добавить позже.</source>
        <translation>Optional: a photo can be added later.</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Хранение фотографий сотрудников запрещено настройками базы данных</source>
        <translation>The database settings forbid storing employee photos</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>%1 x %2</source>
        <translation>%1 x %2</translation>
    </message>
</context>
<context>
    <name>NewWorkerProgressWizardPage</name>
    <message>
        <location filename="../src/wizards/newprogresswizardpages.cpp" line="+10"/>
        <source>Сохранение</source>
        <translation>Saving</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Операция отменена</source>
        <translation>Operation cancelled</translation>
    </message>
</context>
<context>
    <name>NewWorkerWizard</name>
    <message>
        <location filename="../src/wizards/newworkerwizard.cpp" line="+21"/>
        <source>Мастер создания сотрудника</source>
        <translation>New employee wizard</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>Создание сотрудника %1</source>
        <translation>Creating employee %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Ошибка создания сотрудника %1</source>
        <translation>Failed to create employee %1</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Сохранение карты %1 сотрудника %2</source>
        <translation>Saving card %1 of employee %2</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Ошибка сохранения карты %1 сотрудника %2</source>
        <translation>Failed to save card %1 of employee %2</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Сохранение фотографии сотрудника %1</source>
        <translation>Saving the photo of employee %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Ошибка сохранения фотографии сотрудника %1</source>
        <translation>Failed to save the photo of employee %1</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Создание</source>
        <translation>Creation</translation>
    </message>
</context>
<context>
    <name>NewWorkerWizardParametersPage</name>
    <message>
        <location filename="../src/wizards/newworkerwizardparameterspage.cpp" line="+56"/>
        <location line="+16"/>
        <source>Личные данные</source>
        <translation>Personal data</translation>
    </message>
    <message>
        <location line="-15"/>
        <source>Фамилия обязательна, остальное можно заполнить позже.</source>
        <translation>The surname is required; the rest can be filled in later.</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Не задан</source>
        <translation>Not set</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Мужской</source>
        <translation>Male</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Женский</source>
        <translation>Female</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>12 цифр</source>
        <translation>12 digits</translation>
    </message>
    <message>
        <location line="+5"/>
        <location line="+117"/>
        <source>Фамилия</source>
        <translation>Surname</translation>
    </message>
    <message>
        <location line="-116"/>
        <location line="+117"/>
        <source>Имя</source>
        <translation>First name</translation>
    </message>
    <message>
        <location line="-116"/>
        <location line="+117"/>
        <source>Отчество</source>
        <translation>Patronymic</translation>
    </message>
    <message>
        <location line="-116"/>
        <location line="+120"/>
        <source>Пол</source>
        <translation>Sex</translation>
    </message>
    <message>
        <location line="-119"/>
        <location line="+122"/>
        <source>Дата рождения</source>
        <translation>Date of birth</translation>
    </message>
    <message>
        <location line="-121"/>
        <location line="+125"/>
        <source>Гражданство</source>
        <translation>Citizenship</translation>
    </message>
    <message>
        <location line="-124"/>
        <source>Документ</source>
        <translation>Document</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Вид</source>
        <translation>Type</translation>
    </message>
    <message>
        <location line="+1"/>
        <location line="+123"/>
        <source>Серия</source>
        <translation>Series</translation>
    </message>
    <message>
        <location line="-122"/>
        <location line="+123"/>
        <source>Номер</source>
        <translation>Number</translation>
    </message>
    <message>
        <location line="-122"/>
        <location line="+123"/>
        <source>СНИЛС</source>
        <translation>SNILS</translation>
    </message>
    <message>
        <location line="-122"/>
        <location line="+123"/>
        <source>ИНН</source>
        <translation>INN</translation>
    </message>
    <message>
        <location line="-83"/>
        <source>Не задано</source>
        <translation>Not set</translation>
    </message>
    <message>
        <location line="+19"/>
        <source>Укажите фамилию сотрудника</source>
        <translation>Enter the employee&apos;s surname</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>ИНН сотрудника: 12 цифр с верными контрольными цифрами</source>
        <translation>An employee&apos;s INN: 12 digits with correct check digits</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>СНИЛС неполон или с неверной контрольной суммой</source>
        <translation>The SNILS is incomplete or its check sum is wrong</translation>
    </message>
    <message>
        <location line="+54"/>
        <source>Вид документа</source>
        <translation>Document type</translation>
    </message>
</context>
<context>
    <name>ObjectsProgressWizardPage</name>
    <message>
        <location filename="../src/wizards/objectsprogresswizardpage.cpp" line="+22"/>
        <source>Повторить неудачные</source>
        <translation>Retry failed</translation>
    </message>
    <message>
        <location line="+78"/>
        <source>Успешно завершено</source>
        <translation>Completed successfully</translation>
    </message>
    <message>
        <location line="+33"/>
        <source>Ошибка</source>
        <translation>Error</translation>
    </message>
    <message>
        <location line="+33"/>
        <source>Повтор неудачных: объектов %1</source>
        <translation>Retrying failed: %1 objects</translation>
    </message>
</context>
<context>
    <name>OrgPropertyView</name>
    <message>
        <location filename="../src/orgstructure/orgpropertyview.cpp" line="+26"/>
        <source>(разные значения)</source>
        <translation>(various values)</translation>
    </message>
    <message>
        <location line="+22"/>
        <source>Идентификатор БД</source>
        <translation>Database ID</translation>
    </message>
    <message>
        <location line="+173"/>
        <source>Только чтение: изменения не могут быть сохранены</source>
        <translation>Read only: the changes cannot be saved</translation>
    </message>
    <message>
        <location line="+100"/>
        <source>Параметры сохранены</source>
        <translation>Data saved</translation>
    </message>
</context>
<context>
    <name>OrganisationActions</name>
    <message>
        <location filename="../app/organisationactions.cpp" line="+28"/>
        <source>Новый сотрудник…</source>
        <translation>New employee…</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Новое подразделение…</source>
        <translation>New department…</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Новая организация…</source>
        <translation>New firm…</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Перевести…</source>
        <translation>Transfer…</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Уволить…</source>
        <translation>Dismiss…</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Удалить…</source>
        <translation>Delete…</translation>
    </message>
    <message>
        <location line="+58"/>
        <source>Выберите сотрудников или подразделения (не вместе)</source>
        <translation>Select employees or departments (not both)</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Выберите работающих сотрудников</source>
        <translation>Select employees in service</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Выберите сотрудников, подразделения или организации</source>
        <translation>Select employees, departments or firms</translation>
    </message>
</context>
<context>
    <name>PhotoWidget</name>
    <message>
        <location filename="../platform/nvwidgets/photowidget.cpp" line="+27"/>
        <source>Загрузить</source>
        <translation>Load</translation>
    </message>
    <message>
        <location line="+1"/>
        <location line="+72"/>
        <location line="+6"/>
        <source>Загрузить фотографию</source>
        <translation>Load a photo</translation>
    </message>
    <message>
        <location line="-76"/>
        <source>Очистить</source>
        <translation>Clear</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Удалить фотографию</source>
        <translation>Remove the photo</translation>
    </message>
    <message>
        <location line="+58"/>
        <source>Файл %1 не является изображением или поврежден</source>
        <translation>File %1 is not an image or is damaged</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>Изображения (*.png *.jpg *.jpeg *.bmp)</source>
        <translation>Images (*.png *.jpg *.jpeg *.bmp)</translation>
    </message>
</context>
<context>
    <name>PropertyFrame</name>
    <message>
        <location filename="../app/propertyframe.cpp" line="+17"/>
        <source>Сохранить</source>
        <translation>Save</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Отменить</source>
        <translation>Cancel</translation>
    </message>
    <message>
        <location line="+83"/>
        <source>Изменений нет</source>
        <translation>No changes</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Сохранение...</source>
        <translation>Saving...</translation>
    </message>
    <message>
        <location line="+56"/>
        <source>Проверьте заполнение полей</source>
        <translation>Check the fields</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <location filename="../app/studiostartup.cpp" line="+130"/>
        <source>Не удалось записать файл %1: %2</source>
        <translation>Could not write file %1: %2</translation>
    </message>
</context>
<context>
    <name>RunJournal</name>
    <message>
        <location filename="../platform/localstorage/runjournal.cpp" line="+71"/>
        <source>Не удалось открыть журнал массовых изменений: %1</source>
        <translation>Could not open the bulk update log: %1</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>нет файла хранилища %1</source>
        <translation>no store file %1</translation>
    </message>
    <message>
        <location line="+41"/>
        <source>Журнал массовых изменений не открыт</source>
        <translation>The bulk update log is not open</translation>
    </message>
    <message>
        <location line="+25"/>
        <source>Не удалось записать в журнал массовых изменений: %1</source>
        <translation>Could not write to the bulk update log: %1</translation>
    </message>
</context>
<context>
    <name>SchedulePage</name>
    <message>
        <location filename="../app/schedulepage.cpp" line="+87"/>
        <source>Годы с</source>
        <translation>Years from</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>по</source>
        <translation>to</translation>
    </message>
    <message>
        <location line="+77"/>
        <source>График работ не назначен</source>
        <translation>No work schedule assigned</translation>
    </message>
</context>
<context>
    <name>SearchPage</name>
    <message>
        <location filename="../app/searchpage.cpp" line="+29"/>
        <source>Сотрудник</source>
        <translation>Employee</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Номер шкафчика</source>
        <translation>Locker number</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Госномер автомобиля</source>
        <translation>Car plate</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Размер обуви</source>
        <translation>Shoe size</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>Поиск сотрудника…</source>
        <translation>Find employee…</translation>
    </message>
    <message>
        <location line="+44"/>
        <source>Не удалось сохранить снимок окна в %1</source>
        <translation>Could not save the window picture to %1</translation>
    </message>
</context>
<context>
    <name>SnilsEdit</name>
    <message>
        <location filename="../platform/nvwidgets/snilsedit.cpp" line="+36"/>
        <source>Неверный СНИЛС: контрольное число не совпадает</source>
        <translation>Invalid SNILS: the check number does not match</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Неполный СНИЛС: нужно 11 цифр</source>
        <translation>Incomplete SNILS: 11 digits needed</translation>
    </message>
</context>
<context>
    <name>StoreFile</name>
    <message>
        <location filename="../platform/localstorage/storefile.cpp" line="+106"/>
        <source>Недостаточно места на диске: изменения не записаны</source>
        <translation>Not enough disk space: the changes were not written</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Файл хранилища доступен только для чтения: изменения не записаны</source>
        <translation>The store file is read-only: the changes were not written</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Ошибка ввода-вывода при записи в файл хранилища: изменения не записаны</source>
        <translation>I/O error writing the store file: the changes were not written</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Хранилище занято другим клиентом: изменения не записаны, повторите попытку</source>
        <translation>The store is busy with another client: the changes were not written, try again</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Не удалось открыть файл хранилища: изменения не записаны</source>
        <translation>Could not open the store file: the changes were not written</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Файл хранилища поврежден: изменения не записаны</source>
        <translation>The store file is damaged: the changes were not written</translation>
    </message>
    <message>
        <location line="+2"/>
        <location line="+765"/>
        <source>Не удалось записать изменения в хранилище</source>
        <translation>Could not write the changes to the store</translation>
    </message>
    <message>
        <location line="-752"/>
        <location line="+3"/>
        <source>Недостаточно места на диске: хранилище не открыть</source>
        <translation>Not enough disk space: the store cannot be opened</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Ошибка ввода-вывода при чтении файла хранилища</source>
        <translation>I/O error reading the store file</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Хранилище занято другим клиентом, повторите попытку</source>
        <translation>The store is busy with another client, try again</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Нет доступа к файлу хранилища</source>
        <translation>No access to the store file</translation>
    </message>
    <message>
        <location line="+37"/>
        <source>Нет доступа к файлу: %1</source>
        <translation>No access to file: %1</translation>
    </message>
    <message>
        <location line="+6"/>
        <location line="+31"/>
        <location line="+80"/>
        <source>Это не файл хранилища Nivaro-Studio</source>
        <translation>This is not a Nivaro-Studio store file</translation>
    </message>
    <message>
        <location line="-75"/>
        <source>Файл создан более новой версией программы (формат %1, поддерживается %2)</source>
        <translation>The file was made by a newer version of the program (format %1, supported %2)</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Файл хранилища поврежден: неизвестная версия формата</source>
        <translation>The store file is damaged: unknown format version</translation>
    </message>
    <message>
        <location line="+28"/>
        <source>Не удалось открыть файл: %1</source>
        <translation>Could not open file: %1</translation>
    </message>
    <message>
        <location line="+20"/>
        <source>Нет прав на запись в папку хранилища, а другой клиент держит его открытым: прочитать его можно будет, когда он закроет хранилище</source>
        <translation>No write permission for the store folder, and another client holds the store open: it can be read once that client closes it</translation>
    </message>
    <message>
        <location line="+45"/>
        <location line="+6"/>
        <source>Нет прав на запись в папку хранилища</source>
        <translation>No write permission for the store folder</translation>
    </message>
    <message>
        <location line="-2"/>
        <source>Нет прав на запись в файл хранилища</source>
        <translation>No write permission for the store file</translation>
    </message>
    <message>
        <location line="+236"/>
        <location line="+133"/>
        <source>Файл хранилища поврежден (%1): %2</source>
        <translation>The store file is damaged (%1): %2</translation>
    </message>
    <message>
        <location line="+195"/>
        <source>В хранилище не осталось свободных идентификаторов</source>
        <translation>The store has no free IDs left</translation>
    </message>
    <message>
        <location line="+44"/>
        <source>Объект %1 не найден в хранилище</source>
        <translation>Object %1 not found in the store</translation>
    </message>
</context>
<context>
    <name>StudioStartup</name>
    <message>
        <location filename="../app/studiostartup.cpp" line="-96"/>
        <source>Не удалось создать папку %1</source>
        <translation>Could not create folder %1</translation>
    </message>
    <message>
        <location line="+57"/>
        <location line="+6"/>
        <source>Считыватель смарт-карт</source>
        <translation>Smart card reader</translation>
    </message>
    <message>
        <location line="-4"/>
        <location line="+6"/>
        <source>Считыватель HID</source>
        <translation>HID reader</translation>
    </message>
    <message>
        <location line="+18"/>
        <source>Не удалось сохранить снимок окна в %1</source>
        <translation>Could not save the window picture to %1</translation>
    </message>
</context>
<context>
    <name>TransferDepartmentWizardProgressPage</name>
    <message>
        <location filename="../src/wizards/transferprogresswizardpages.cpp" line="+224"/>
        <source>Перевод подразделений</source>
        <translation>Transfer of departments</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>подразделение</source>
        <translation>department</translation>
    </message>
</context>
<context>
    <name>TransferProgressWizardPage</name>
    <message>
        <location line="-165"/>
        <source>Операция отменена</source>
        <translation>Operation cancelled</translation>
    </message>
    <message>
        <location line="+15"/>
        <source>Не выбраны объекты для перевода</source>
        <translation>No objects chosen for the transfer</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Не выбрано подразделение, в которое выполняется перевод</source>
        <translation>No department chosen to transfer to</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Объект %1 не найден</source>
        <translation>Object %1 not found</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>%1 не является объектом вида «%2»</source>
        <translation>%1 is not an object of kind “%2”</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Нельзя перевести %1 в %2</source>
        <translation>Cannot transfer %1 to %2</translation>
    </message>
    <message>
        <location line="+21"/>
        <source>Перевод %1 в %2</source>
        <translation>Transferring %1 to %2</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Ошибка перевода %1</source>
        <translation>Failed to transfer %1</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Неизвестная ошибка</source>
        <translation>Unknown error</translation>
    </message>
    <message>
        <location line="+27"/>
        <source>Перевод сотрудников завершен!</source>
        <translation>Employee transfer finished!</translation>
    </message>
    <message>
        <location line="+32"/>
        <source>Повтор неудачных задач: %1</source>
        <translation>Retrying failed tasks: %1</translation>
    </message>
</context>
<context>
    <name>TransferTargetWizardPage</name>
    <message>
        <location filename="../src/wizards/transfertargetwizardpage.cpp" line="+24"/>
        <source>Выбрать…</source>
        <translation>Choose…</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Куда перевести</source>
        <translation>Transfer to</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Выберите подразделение, в которое переводятся выбранные объекты.</source>
        <translation>Choose the department the selected objects are transferred to.</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Подразделение:</source>
        <translation>Department:</translation>
    </message>
    <message>
        <location line="+29"/>
        <source>Выбор подразделения</source>
        <translation>Choose a department</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Нельзя выбрать «%1»: подразделение не переводится в само себя или в подразделение внутри него</source>
        <translation>“%1” cannot be chosen: a department cannot be transferred into itself or into a department within it</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>не выбрано</source>
        <translation>not chosen</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Выберите подразделение или организацию</source>
        <translation>Choose a department or a company</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>%1 нельзя перевести в само себя или в подразделение внутри него</source>
        <translation>%1 cannot be transferred into itself or into a department within it</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Все выбранные объекты уже находятся в «%1»: переводить нечего</source>
        <translation>All selected objects are already in “%1”: nothing to transfer</translation>
    </message>
</context>
<context>
    <name>TransferWizard</name>
    <message>
        <location filename="../src/wizards/transferwizard.cpp" line="+24"/>
        <source>Мастер перевода</source>
        <translation>Transfer wizard</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Выполнить</source>
        <translation>Run</translation>
    </message>
    <message>
        <location line="+46"/>
        <source>%1 нельзя перевести: переводятся только сотрудники и подразделения</source>
        <translation>%1 cannot be transferred: only employees and departments can be</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Выбраны и сотрудники, и подразделения: переведите их по отдельности</source>
        <translation>Both employees and departments are selected: transfer them separately</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Не выбраны объекты для перевода</source>
        <translation>No objects selected for transfer</translation>
    </message>
    <message>
        <location line="+43"/>
        <source>Перевод</source>
        <translation>Transfer</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Подразделение</source>
        <translation>Department</translation>
    </message>
</context>
<context>
    <name>TransferWorkerWizardProgressPage</name>
    <message>
        <location filename="../src/wizards/transferprogresswizardpages.cpp" line="+20"/>
        <source>Перевод сотрудников</source>
        <translation>Employee transfer</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>сотрудник</source>
        <translation>employee</translation>
    </message>
</context>
<context>
    <name>USBCardReaderManager</name>
    <message>
        <location filename="../src/cards/usbcardreadermanager.cpp" line="+47"/>
        <source>Ошибка. Уберите карту со считывателя и повторите операцию.</source>
        <translation>Error. Take the card off the reader and try again.</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Ошибка чтения идентификатора карты.</source>
        <translation>Could not read the card identifier.</translation>
    </message>
    <message>
        <location line="+116"/>
        <source>Идет чтение карты. Осталось %1 сек.</source>
        <translation>Reading the card. %1 s left.</translation>
    </message>
    <message>
        <location line="+58"/>
        <source>Авторизация на карте</source>
        <translation>Authorising on the card</translation>
    </message>
    <message>
        <location line="+25"/>
        <source>Авторизация на карте не удалась. Выберите другой профиль карты.</source>
        <translation>Authorisation on the card failed. Choose another card profile.</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>Форматирование карты. Ожидайте...</source>
        <translation>Formatting the card. Please wait...</translation>
    </message>
    <message>
        <location line="+13"/>
        <source>Ошибка форматирования карты.</source>
        <translation>Could not format the card.</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>Ошибка авторизации при записи ключа на карту.</source>
        <translation>Authorisation failed while writing the key to the card.</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Ошибка записи ключа авторизации на карту (%1).</source>
        <translation>Could not write the authorisation key to the card (%1).</translation>
    </message>
    <message>
        <location line="+40"/>
        <source>Прочитан идентификатор карты.</source>
        <translation>The card identifier has been read.</translation>
    </message>
    <message>
        <location line="+19"/>
        <location line="+57"/>
        <source>Прочитан идентификатор карты</source>
        <translation>Card identifier read</translation>
    </message>
    <message>
        <location line="-38"/>
        <source>Данные очищены.</source>
        <translation>The data has been cleared.</translation>
    </message>
    <message>
        <location line="+32"/>
        <source>Слишком много данных для карты данного типа.</source>
        <translation>Too much data for a card of this type.</translation>
    </message>
    <message>
        <location line="+16"/>
        <source>Запись данных. Ожидайте...</source>
        <translation>Writing data. Please wait...</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Ошибка авторизации при записи данных на карту.</source>
        <translation>Authorisation failed while writing data to the card.</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Ошибка записи данных на карту (%1).</source>
        <translation>Could not write data to the card (%1).</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Обновление ключа авторизации карты</source>
        <translation>Updating the card&apos;s authorisation key</translation>
    </message>
    <message>
        <location line="+59"/>
        <source>Данные записаны.</source>
        <translation>The data has been written.</translation>
    </message>
    <message>
        <location line="+181"/>
        <source>Запись данных. %1 из %2</source>
        <translation>Writing data. %1 of %2</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Форматирование карты. %1 из %2</source>
        <translation>Formatting the card. %1 of %2</translation>
    </message>
</context>
<context>
    <name>UpdateObjectWizard</name>
    <message>
        <location filename="../src/wizards/updateobjectwizard.cpp" line="+24"/>
        <source>Мастер обновления объектов</source>
        <translation>Object update wizard</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>Выполнить</source>
        <translation>Run</translation>
    </message>
</context>
<context>
    <name>UpdateProgressWizardPage</name>
    <message>
        <location line="-29"/>
        <source>Обработка %1</source>
        <translation>Processing %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>%1 обработан</source>
        <translation>%1 processed</translation>
    </message>
    <message>
        <location line="+0"/>
        <source>Ошибка обработки %1</source>
        <translation>Failed to process %1</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Обновление объектов</source>
        <translation>Updating objects</translation>
    </message>
</context>
<context>
    <name>WorkerAbsenceReasonModel</name>
    <message>
        <location filename="../src/absence/workerabsencereasonmodel.cpp" line="+105"/>
        <source>??? %1</source>
        <translation>??? %1</translation>
    </message>
    <message>
        <location line="+33"/>
        <source>Метка</source>
        <translation>Mark</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Причина</source>
        <translation>Reason</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>с</source>
        <translation>from</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>по</source>
        <translation>to</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Дата создания</source>
        <translation>Created on</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Примечание</source>
        <translation>Note</translation>
    </message>
</context>
<context>
    <name>WorkerPropertyView</name>
    <message>
        <location filename="../src/workerpropertyview.ui" line="+6"/>
        <location line="+4"/>
        <source>Личные данные</source>
        <translation>Personal data</translation>
    </message>
    <message>
        <location line="+4"/>
        <location filename="../src/workerpropertyview.cpp" line="+869"/>
        <source>Фамилия</source>
        <translation>Surname</translation>
    </message>
    <message>
        <location line="+9"/>
        <location filename="../src/workerpropertyview.cpp" line="+1"/>
        <source>Имя</source>
        <translation>First name</translation>
    </message>
    <message>
        <location line="+9"/>
        <location filename="../src/workerpropertyview.cpp" line="+1"/>
        <source>Отчество</source>
        <translation>Patronymic</translation>
    </message>
    <message>
        <location line="+9"/>
        <location filename="../src/workerpropertyview.cpp" line="+1"/>
        <source>Пол</source>
        <translation>Sex</translation>
    </message>
    <message>
        <location line="+9"/>
        <location filename="../src/workerpropertyview.cpp" line="+1"/>
        <source>Дата рождения</source>
        <translation>Date of birth</translation>
    </message>
    <message>
        <location line="+9"/>
        <location filename="../src/workerpropertyview.cpp" line="+1"/>
        <source>Гражданство</source>
        <translation>Citizenship</translation>
    </message>
    <message>
        <location line="+17"/>
        <location filename="../src/workerpropertyview.cpp" line="+31"/>
        <source>Печать документов</source>
        <translation>Print documents</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Печать</source>
        <translation>Print</translation>
    </message>
    <message>
        <location line="+13"/>
        <location filename="../src/workerpropertyview.cpp" line="-30"/>
        <source>Документ</source>
        <translation>Document</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Вид</source>
        <translation>Type</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Серия</source>
        <translation>Series</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Номер</source>
        <translation>Number</translation>
    </message>
    <message>
        <location line="+9"/>
        <location filename="../src/workerpropertyview.cpp" line="+1"/>
        <source>СНИЛС</source>
        <translation>SNILS</translation>
    </message>
    <message>
        <location line="+9"/>
        <location filename="../src/workerpropertyview.cpp" line="+1"/>
        <source>ИНН</source>
        <translation>INN</translation>
    </message>
    <message>
        <location line="+5"/>
        <location filename="../src/workerpropertyview.cpp" line="-601"/>
        <location line="+328"/>
        <source>12 цифр</source>
        <translation>12 digits</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Данные БД</source>
        <translation>Database data</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Идентификатор БД</source>
        <translation>Database ID</translation>
    </message>
    <message>
        <location line="+9"/>
        <source>Внешний идентификатор</source>
        <translation>External ID</translation>
    </message>
    <message>
        <location line="+12"/>
        <location filename="../src/workerpropertyview.cpp" line="+275"/>
        <source>Дополнительные сведения</source>
        <translation>Additional information</translation>
    </message>
    <message>
        <location filename="../src/workerpropertyview.cpp" line="-846"/>
        <source>(разные значения)</source>
        <translation>(various values)</translation>
    </message>
    <message>
        <location line="+77"/>
        <source>Не задан</source>
        <translation>Not set</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Мужской</source>
        <translation>Male</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Женский</source>
        <translation>Female</translation>
    </message>
    <message>
        <location line="+63"/>
        <source>Не задано</source>
        <translation>Not set</translation>
    </message>
    <message>
        <location line="+167"/>
        <source>Дата рождения должна быть не раньше %1 и не позже сегодняшнего дня</source>
        <translation>The date of birth must be no earlier than %1 and no later than today</translation>
    </message>
    <message>
        <location line="+125"/>
        <source>Сохранение невозможно: фамилия не может быть пустой</source>
        <translation>Cannot save: the surname cannot be empty</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Сохранение невозможно: ИНН сотрудника состоит из 12 цифр с верными контрольными цифрами</source>
        <translation>Cannot save: an employee&apos;s INN is 12 digits with valid check digits</translation>
    </message>
    <message numerus="yes">
        <location line="+116"/>
        <source>Не более %n символов</source>
        <translation>
            <numerusform>At most %n character</numerusform>
            <numerusform>At most %n characters</numerusform>
        </translation>
    </message>
    <message>
        <location line="+133"/>
        <source>Сохранение параметров сотрудника %1</source>
        <translation>Saving the data of employee %1</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Ошибка сохранения параметров сотрудника %1</source>
        <translation>Failed to save the data of employee %1</translation>
    </message>
    <message>
        <location line="+64"/>
        <source>Параметры сохранены</source>
        <translation>Data saved</translation>
    </message>
    <message>
        <location line="+57"/>
        <source>Сотрудник с таким табельным номером уже существует</source>
        <translation>An employee with this personnel number already exists</translation>
    </message>
    <message>
        <location line="+38"/>
        <source>Табельный номер</source>
        <translation>Personnel number</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Личные данные сотрудника</source>
        <translation>Employee personal data</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Идентификатор БД: %1</source>
        <translation>Database ID: %1</translation>
    </message>
</context>
<context>
    <name>WorkerScheduleModel</name>
    <message>
        <location filename="../src/schedule/workerschedulemodel.cpp" line="+413"/>
        <source>Не назначен</source>
        <translation>Not assigned</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>График работ: %1</source>
        <translation>Work schedule: %1</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Причина отсутствия: %1</source>
        <translation>Absence reason: %1</translation>
    </message>
</context>
<context>
    <name>WorkerSearchDialog</name>
    <message>
        <location filename="../src/search/workersearchdialog.ui" line="+6"/>
        <source>Поиск</source>
        <translation>Search</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Параметры поиска</source>
        <translation>Search parameters</translation>
    </message>
    <message>
        <location line="+14"/>
        <location filename="../src/search/workersearchdialog.cpp" line="+661"/>
        <source>%v сек</source>
        <translation>%v s</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Считать</source>
        <translation>Read</translation>
    </message>
    <message>
        <location filename="../src/search/workersearchdialog.cpp" line="-473"/>
        <source>Перейти</source>
        <translation>Go to</translation>
    </message>
    <message>
        <location line="+74"/>
        <source>ФИО или табельный номер</source>
        <translation>Full name or personnel number</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Номер карты</source>
        <translation>Card number</translation>
    </message>
    <message>
        <location line="+33"/>
        <source>Нет подключенных считывателей</source>
        <translation>No readers connected</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Выберите считыватель</source>
        <translation>Choose a reader</translation>
    </message>
    <message>
        <location line="+306"/>
        <source>Считыватель занят или недоступен.</source>
        <translation>The reader is busy or unavailable.</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Идет чтение карты...</source>
        <translation>Reading the card...</translation>
    </message>
    <message>
        <location line="+6"/>
        <source>Чтение карты</source>
        <translation>Reading the card</translation>
    </message>
    <message>
        <location line="+10"/>
        <source>Идет чтение карты. Осталось %1 сек.</source>
        <translation>Reading the card. %1 s left.</translation>
    </message>
    <message>
        <location line="+22"/>
        <source>Время ожидания истекло.</source>
        <translation>The wait has timed out.</translation>
    </message>
    <message>
        <location line="+30"/>
        <source>Номер прочитанной карты не распознан.</source>
        <translation>The number of the card read was not recognized.</translation>
    </message>
</context>
<context>
    <name>WorkerUniqueParamChecker</name>
    <message>
        <location filename="../src/workeruniqueparamchecker.cpp" line="+37"/>
        <source> и еще сотрудников: %1</source>
        <translation> and %1 more employees</translation>
    </message>
</context>
<context>
    <name>main</name>
    <message>
        <location filename="../app/main.cpp" line="+127"/>
        <source>--generate ждет число сотрудников от 1 до 5000000</source>
        <translation>--generate expects a number of employees from 1 to 5000000</translation>
    </message>
    <message>
        <location line="+2"/>
        <source>Файл %1 уже существует: для нового хранилища укажите другой --store</source>
        <translation>File %1 already exists: give another --store for a new store</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>--page ждет одно из: %1</source>
        <translation>--page expects one of: %1</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Не удалось открыть хранилище %1: %2</source>
        <translation>Could not open store %1: %2</translation>
    </message>
</context>
<context>
    <name>nivaro::LocalStorage</name>
    <message>
        <location filename="../platform/localstorage/localstorage.cpp" line="+809"/>
        <source>Объект без идентификатора не может быть сохранен</source>
        <translation>An object without an ID cannot be saved</translation>
    </message>
    <message>
        <location line="+63"/>
        <source>Объект %1 не найден в хранилище</source>
        <translation>Object %1 not found in the store</translation>
    </message>
</context>
<context>
    <name>nivaro::TaskExecutor</name>
    <message>
        <location filename="../platform/serverinterface/taskexecutor.cpp" line="+49"/>
        <location line="+268"/>
        <source>Объект %1 не найден</source>
        <translation>Object %1 not found</translation>
    </message>
    <message>
        <location line="-246"/>
        <source>Организация может находиться только в корне оргструктуры, а не в объекте %1</source>
        <translation>A firm can only be at the top of the organisation, not in object %1</translation>
    </message>
    <message>
        <location line="+7"/>
        <source>Подразделение %1 нельзя перенести в само себя</source>
        <translation>Department %1 cannot be moved into itself</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Родительский объект %1 не найден</source>
        <translation>Parent object %1 not found</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Подразделение может находиться только в организации или в другом подразделении, а %1 не организация и не подразделение</source>
        <translation>A department can only be in a firm or in another department, and %1 is neither</translation>
    </message>
    <message>
        <location line="+3"/>
        <source>Сотрудник может находиться только в организации или в подразделении, а %1 не организация и не подразделение</source>
        <translation>An employee can only be in a firm or in a department, and %1 is neither</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>Подразделение %1 нельзя перенести в подчиненное ему подразделение %2</source>
        <translation>Department %1 cannot be moved into its own sub-department %2</translation>
    </message>
    <message>
        <location line="+83"/>
        <source>Тип объекта %1 (%2) не совпадает с типом в задаче (%3)</source>
        <translation>The type of object %1 (%2) does not match the type in the task (%3)</translation>
    </message>
    <message>
        <location line="+33"/>
        <source>Объект не создан: не указан тип объекта</source>
        <translation>Object not created: no object type given</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Объект не создан: объекты типа %1 так не создаются</source>
        <translation>Object not created: objects of type %1 cannot be created this way</translation>
    </message>
    <message>
        <location line="+8"/>
        <source>Организация не создана: не задано название</source>
        <translation>Firm not created: no name given</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Подразделение не создано: не задано название</source>
        <translation>Department not created: no name given</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Сотрудник не создан: не задана фамилия</source>
        <translation>Employee not created: no surname given</translation>
    </message>
    <message>
        <location line="+5"/>
        <source>Объект не создан: не указан родительский объект</source>
        <translation>Object not created: no parent object given</translation>
    </message>
    <message>
        <location line="+28"/>
        <source>Карта не создана: неверный номер карты &quot;%1&quot;</source>
        <translation>Card not created: invalid card number &quot;%1&quot;</translation>
    </message>
    <message>
        <location line="+12"/>
        <source>Карта не создана: сотрудник %1 не найден</source>
        <translation>Card not created: employee %1 not found</translation>
    </message>
    <message>
        <location line="+11"/>
        <source>Карта с номером %1 уже выдана: %2. Одну карту нельзя выдать дважды</source>
        <translation>A card with number %1 is already issued: %2. One card cannot be issued twice</translation>
    </message>
    <message>
        <location line="+17"/>
        <source>Сотрудник не уволен: не указана дата увольнения</source>
        <translation>Employee not dismissed: no dismissal date given</translation>
    </message>
    <message>
        <location line="+1"/>
        <source>Сотрудник не уволен: неверная дата увольнения &quot;%1&quot;</source>
        <translation>Employee not dismissed: invalid dismissal date &quot;%1&quot;</translation>
    </message>
    <message>
        <location line="+17"/>
        <source>Объект %1 не сотрудник: уволить можно только сотрудника</source>
        <translation>Object %1 is not an employee: only employees can be dismissed</translation>
    </message>
    <message>
        <location line="+4"/>
        <source>Сотрудник %1 уже уволен</source>
        <translation>Employee %1 is already dismissed</translation>
    </message>
    <message>
        <location line="+26"/>
        <source>Подразделение %1 не пусто: сначала удалите или переведите сотрудников</source>
        <translation>Department %1 is not empty: delete or transfer its employees first</translation>
    </message>
    <message>
        <location line="+54"/>
        <source>Неизвестная команда: %1</source>
        <translation>Unknown command: %1</translation>
    </message>
</context>
</TS>
