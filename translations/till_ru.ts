<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru" sourcelanguage="en">
<context>
    <name>Config</name>
    <message>
        <source>expected text, found a null character</source>
        <translation>ожидается текст, найден нулевой символ</translation>
    </message>
    <message>
        <source>expected UTF-8</source>
        <translation>ожидается UTF-8</translation>
    </message>
    <message>
        <source>expected no byte order mark</source>
        <translation>метки порядка байтов быть не должно</translation>
    </message>
    <message>
        <source>expected the line to end with a line feed alone, found a carriage return before it</source>
        <translation>строка должна кончаться одним переводом строки, перед ним стоит возврат каретки</translation>
    </message>
    <message>
        <source>expected key=value</source>
        <translation>ожидается ключ=значение</translation>
    </message>
    <message>
        <source>expected no blank around the key</source>
        <translation>вокруг ключа не должно быть пробелов</translation>
    </message>
    <message>
        <source>expected no blank at the ends of the value of &quot;%1&quot;</source>
        <translation>по краям значения «%1» не должно быть пробелов</translation>
    </message>
    <message>
        <source>the settings cannot be read: %1</source>
        <translation>настройки не читаются: %1</translation>
    </message>
    <message>
        <source>expected each key once, &quot;%1&quot; already stands in line %2</source>
        <translation>каждый ключ ожидается один раз, «%1» уже есть в строке %2</translation>
    </message>
</context>
<context>
    <name>ConsoleText</name>
    <message>
        <source>The line is not UTF-8 text.</source>
        <translation>Строка не в кодировке UTF-8.</translation>
    </message>
    <message>
        <source>The line holds control characters.</source>
        <translation>В строке есть управляющие символы.</translation>
    </message>
    <message>
        <source>The line is longer than %1 bytes.</source>
        <translation>Строка длиннее %1 байт.</translation>
    </message>
    <message>
        <source> (/cancel leaves)</source>
        <translation> (/cancel — отказаться)</translation>
    </message>
    <message>
        <source>error</source>
        <translation>ошибка</translation>
    </message>
    <message>
        <source>message</source>
        <translation>сообщение</translation>
    </message>
    <message>
        <source>question</source>
        <translation>вопрос</translation>
    </message>
    <message>
        <source>Type 1 or 2.</source>
        <translation>Введите 1 или 2.</translation>
    </message>
    <message>
        <source>input</source>
        <translation>ввод</translation>
    </message>
    <message>
        <source>Type at most %1 characters.</source>
        <translation>Введите не больше %1 символов.</translation>
    </message>
    <message>
        <source>form</source>
        <translation>форма</translation>
    </message>
    <message>
        <source>This cannot be cancelled.</source>
        <translation>Отказаться здесь нельзя.</translation>
    </message>
    <message>
        <source>Type a date such as 31.12.1990.</source>
        <translation>Введите дату, например 31.12.1990.</translation>
    </message>
    <message>
        <source>The date must not be before %1.</source>
        <translation>Дата не может быть раньше %1.</translation>
    </message>
    <message>
        <source>The date must not be after %1.</source>
        <translation>Дата не может быть позже %1.</translation>
    </message>
    <message>
        <source>Type a number from 1 to %1.</source>
        <translation>Введите число от 1 до %1.</translation>
    </message>
    <message>
        <source>This field must be filled in.</source>
        <translation>Это поле нужно заполнить.</translation>
    </message>
    <message>
        <source>from %1</source>
        <translation>с %1</translation>
    </message>
    <message>
        <source>to %1</source>
        <translation>по %1</translation>
    </message>
    <message>
        <source>may be empty</source>
        <translation>можно не заполнять</translation>
    </message>
    <message>
        <source>The text does not fit %1.</source>
        <translation>Введите по образцу %1.</translation>
    </message>
    <message>
        <source>The text is not in the expected format.</source>
        <translation>Проверьте, нет ли ошибки.</translation>
    </message>
</context>
<context>
    <name>Office</name>
    <message>
        <source>the first %1 of %2; &quot;export&quot; writes them all</source>
        <translation>первые %1 из %2; все запишет «export»</translation>
    </message>
    <message>
        <source>parked: %1</source>
        <translation>отложено: %1</translation>
    </message>
    <message>
        <source>There is no parked message %1.</source>
        <translation>Отложенного сообщения %1 нет.</translation>
    </message>
    <message>
        <source>put back: %1</source>
        <translation>возвращено в очередь: %1</translation>
    </message>
    <message>
        <source>%1: cannot be written: %2</source>
        <translation>%1: не записывается: %2</translation>
    </message>
    <message>
        <source>exported: %1 waiting, %2 parked</source>
        <translation>записано: ждут — %1, отложены — %2</translation>
    </message>
    <message>
        <source>waiting: %1, parked: %2</source>
        <translation>ждут: %1, отложены: %2</translation>
    </message>
    <message>
        <source>Expected: till queue [list | parked | park ID | retry ID | retry all | export FILE]</source>
        <translation>Ожидается: till queue [list | parked | park НОМЕР | retry НОМЕР | retry all | export ФАЙЛ]</translation>
    </message>
    <message>
        <source>open</source>
        <translation>открыт</translation>
    </message>
    <message>
        <source>being committed</source>
        <translation>закрывается</translation>
    </message>
    <message>
        <source>committed</source>
        <translation>закрыт</translation>
    </message>
    <message>
        <source>cancelled</source>
        <translation>аннулирован</translation>
    </message>
    <message>
        <source>nothing to report</source>
        <translation>сообщать нечего</translation>
    </message>
    <message>
        <source>reported</source>
        <translation>передан</translation>
    </message>
    <message>
        <source>waiting in the queue</source>
        <translation>ждёт в очереди</translation>
    </message>
    <message>
        <source>refused</source>
        <translation>отклонён</translation>
    </message>
    <message>
        <source>sale</source>
        <translation>продажа</translation>
    </message>
    <message>
        <source>return</source>
        <translation>возврат</translation>
    </message>
    <message>
        <source>Only the latest %1 are listed; --since narrows the list.</source>
        <translation>Показаны последние %1; --since сокращает список.</translation>
    </message>
    <message>
        <source>the service's answer: %1</source>
        <translation>ответ сервиса: %1</translation>
    </message>
    <message>
        <source>The receipt cannot be read: %1</source>
        <translation>Чек не читается: %1</translation>
    </message>
    <message>
        <source>There is no receipt %1.</source>
        <translation>Чека %1 нет.</translation>
    </message>
    <message>
        <source>Expected: till receipts [--refused] [--since DATE] [--json] or till receipts show NUMBER [--json]</source>
        <translation>Ожидается: till receipts [--refused] [--since ДАТА] [--json] или till receipts show НОМЕР [--json]</translation>
    </message>
    <message>
        <source>unknown key</source>
        <translation>неизвестный ключ</translation>
    </message>
    <message>
        <source>unknown key, did you mean %1?</source>
        <translation>неизвестный ключ, возможно, %1?</translation>
    </message>
    <message>
        <source>not set; the loyalty system does not work without it</source>
        <translation>не задан; без него система лояльности не работает</translation>
    </message>
    <message>
        <source>expected the path %1</source>
        <translation>ожидается путь %1</translation>
    </message>
    <message>
        <source>the quotation marks are part of the value, expected none</source>
        <translation>кавычки входят в значение, они не нужны</translation>
    </message>
    <message>
        <source>%1: other users may read the secret key</source>
        <translation>%1: секретный ключ могут прочитать другие пользователи</translation>
    </message>
    <message>
        <source>Name a file in a directory that this user may write.</source>
        <translation>Укажите файл в каталоге, в который этот пользователь может писать.</translation>
    </message>
    <message>
        <source>standard error</source>
        <translation>стандартный поток ошибок</translation>
    </message>
    <message>
        <source>%1 cannot be written</source>
        <translation>%1: запись невозможна</translation>
    </message>
    <message>
        <source>%1 belongs to the user %2</source>
        <translation>%1 принадлежит пользователю %2</translation>
    </message>
    <message>
        <source>%1 is open to other users</source>
        <translation>%1 доступен другим пользователям</translation>
    </message>
    <message>
        <source>%1 free</source>
        <translation>свободно %1</translation>
    </message>
    <message>
        <source>Make room on the file system of %1.</source>
        <translation>Освободите место в файловой системе, где лежит %1.</translation>
    </message>
    <message>
        <source>Check which program locks the file, and the file's rights.</source>
        <translation>Проверьте, какая программа блокирует файл, и права на него.</translation>
    </message>
    <message>
        <source>Start the till: it moves the file into &quot;damaged&quot; and begins a new one.</source>
        <translation>Запустите кассу: она перенесёт файл в «damaged» и начнёт новый.</translation>
    </message>
    <message>
        <source>no message waits</source>
        <translation>ни одно сообщение не ждёт</translation>
    </message>
    <message>
        <source>%1 messages wait, the oldest for %2 s</source>
        <translation>ждут сообщений: %1, самое старое %2 с</translation>
    </message>
    <message>
        <source>&quot;till queue&quot; tells the reason; &quot;till deliver&quot; must run.</source>
        <translation>Причину покажет «till queue»; должен работать «till deliver».</translation>
    </message>
    <message>
        <source>&quot;till queue parked&quot; tells the reason, &quot;till queue retry&quot; sends them again.</source>
        <translation>Причину покажет «till queue parked», снова отправит «till queue retry».</translation>
    </message>
    <message>
        <source>none</source>
        <translation>нет</translation>
    </message>
    <message>
        <source>&quot;till receipts --refused&quot; tells the reason, &quot;till report&quot; reports them again.</source>
        <translation>Причину покажет «till receipts --refused», передаст снова «till report».</translation>
    </message>
    <message>
        <source>none yet; the first start creates it</source>
        <translation>ещё нет; появится при первом запуске</translation>
    </message>
    <message>
        <source>one is selling here; a second one will not start</source>
        <translation>здесь уже продаёт касса; вторая не запустится</translation>
    </message>
    <message>
        <source>none is selling here</source>
        <translation>здесь никто не продаёт</translation>
    </message>
    <message>
        <source>one is at work</source>
        <translation>работает</translation>
    </message>
    <message>
        <source>none is at work now</source>
        <translation>сейчас не работает</translation>
    </message>
    <message>
        <source>A system service has another environment: set Http:proxy, or no_proxy.</source>
        <translation>У системной службы другое окружение: задайте Http:proxy или no_proxy.</translation>
    </message>
    <message>
        <source>%1, by %2, until %3 (%4 days)</source>
        <translation>%1, выдан %2, до %3 (дней: %4)</translation>
    </message>
    <message>
        <source>The certificate has expired: its owner must renew it, or this clock is wrong.</source>
        <translation>Срок сертификата истёк: его должен обновить владелец, или неверны часы кассы.</translation>
    </message>
    <message>
        <source>Its owner must renew it before that day.</source>
        <translation>Владелец должен обновить сертификат до этого дня.</translation>
    </message>
    <message>
        <source>the service does not tell the time</source>
        <translation>сервис не сообщает времени</translation>
    </message>
    <message>
        <source>%1 s ahead of the service's clock</source>
        <translation>впереди часов сервиса на %1 с</translation>
    </message>
    <message>
        <source>Set the clock, and keep it right with systemd-timesyncd or chrony.</source>
        <translation>Выставьте часы и сверяйте их службой systemd-timesyncd или chrony.</translation>
    </message>
    <message>
        <source>%1 in %2 ms</source>
        <translation>%1 за %2 мс</translation>
    </message>
    <message>
        <source>The service hangs; ask its owner.</source>
        <translation>Сервис не отвечает; обратитесь к его владельцу.</translation>
    </message>
    <message>
        <source>The service is overloaded; try again later.</source>
        <translation>Сервис перегружен; повторите позже.</translation>
    </message>
    <message>
        <source>The service's message says what is wrong.</source>
        <translation>Что не так, сказано в ответе сервиса.</translation>
    </message>
    <message>
        <source>answered in %1 ms: %2</source>
        <translation>ответил за %1 мс: %2</translation>
    </message>
    <message>
        <source>customer found</source>
        <translation>клиент найден</translation>
    </message>
    <message>
        <source>no such customer</source>
        <translation>такого клиента нет</translation>
    </message>
    <message>
        <source>all keys are known, all values valid</source>
        <translation>все ключи известны, все значения верны</translation>
    </message>
    <message>
        <source>Correct the line.</source>
        <translation>Исправьте строку.</translation>
    </message>
    <message>
        <source>Give the file to the till's user, or name another one with --config.</source>
        <translation>Отдайте файл пользователю кассы или назовите другой: --config.</translation>
    </message>
    <message>
        <source>Correct %1: see docs/masks.md.</source>
        <translation>Исправьте %1: см. docs/masks.md.</translation>
    </message>
    <message>
        <source>two share the identifier &quot;%1&quot;: the service would lose one of them</source>
        <translation>у двух один идентификатор «%1»: один из них сервис потеряет</translation>
    </message>
    <message>
        <source>wider than the mask, %1, in &quot;%2&quot;: two may share an identifier</source>
        <translation>шире маски: %1, в «%2»: у двух может оказаться один идентификатор</translation>
    </message>
    <message>
        <source>Install the plugin of this version, or correct %1.</source>
        <translation>Установите плагин этой версии или исправьте %1.</translation>
    </message>
    <message>
        <source>%1: the file is cut off</source>
        <translation>%1: файл обрезан</translation>
    </message>
    <message>
        <source>Give the directory to the till's user, or correct %1.</source>
        <translation>Отдайте каталог пользователю кассы или исправьте %1.</translation>
    </message>
    <message>
        <source>Give it to the till's user, or correct %1.</source>
        <translation>Отдайте его пользователю кассы или исправьте %1.</translation>
    </message>
    <message>
        <source>Install the newer version again.</source>
        <translation>Снова установите более новую версию.</translation>
    </message>
    <message>
        <source>%1 lacks %2</source>
        <translation>%1: не хватает %2</translation>
    </message>
    <message>
        <source>Restore the file, or move it away: the till begins a new one.</source>
        <translation>Восстановите файл или уберите его: касса начнёт новый.</translation>
    </message>
    <message>
        <source>Correct the host in %1, or the name server.</source>
        <translation>Исправьте узел в %1 или сервер имён.</translation>
    </message>
    <message>
        <source>Correct the port in %1, or let the till through the firewall.</source>
        <translation>Исправьте порт в %1 или пропустите кассу через межсетевой экран.</translation>
    </message>
    <message>
        <source>Correct the proxy %1, or remove it.</source>
        <translation>Исправьте прокси %1 или уберите его.</translation>
    </message>
    <message>
        <source>Put the proxy's user and password into %1.</source>
        <translation>Впишите имя и пароль для прокси в %1.</translation>
    </message>
    <message>
        <source>The port does not speak TLS: correct scheme and port in %1.</source>
        <translation>На этом порту нет TLS: исправьте схему и порт в %1.</translation>
    </message>
    <message>
        <source>The service's TLS is too old: its owner must enable 1.2.</source>
        <translation>TLS сервиса слишком старый: его владелец должен включить 1.2.</translation>
    </message>
    <message>
        <source>Without this file no certificate is trusted: install ca-certificates, or correct %1.</source>
        <translation>Без этого файла не проверить ни одного сертификата: установите ca-certificates или исправьте %1.</translation>
    </message>
    <message>
        <source>The certificate's authority is not trusted: name its PEM file in %1.</source>
        <translation>Центру сертификации нет доверия: укажите его файл PEM в %1.</translation>
    </message>
    <message>
        <source>The certificate is for another host: correct %1.</source>
        <translation>Сертификат для другого узла: исправьте %1.</translation>
    </message>
    <message>
        <source>The service hangs during the TLS handshake; ask its owner.</source>
        <translation>Сервис зависает, не показав сертификата; обратитесь к его владельцу.</translation>
    </message>
    <message>
        <source>The port does not speak http: begin %1 with https.</source>
        <translation>Этот порт не понимает http: начните %1 с https.</translation>
    </message>
    <message>
        <source>The service hangs, or %1 is too short.</source>
        <translation>Сервис зависает, или %1 слишком мал.</translation>
    </message>
    <message>
        <source>Correct %1.</source>
        <translation>Исправьте %1.</translation>
    </message>
    <message>
        <source>Correct %1, or have the service grant it the rights.</source>
        <translation>Исправьте %1 или запросите для него права у сервиса.</translation>
    </message>
    <message>
        <source>Correct the path in %1.</source>
        <translation>Исправьте путь в %1.</translation>
    </message>
    <message>
        <source>The answer is not the service's: correct %1, or log in to the network.</source>
        <translation>Ответил не сервис: исправьте %1 или войдите в сеть.</translation>
    </message>
    <message>
        <source>%1: expected %2</source>
        <translation>%1: ожидается %2</translation>
    </message>
    <message>
        <source>not set, so it is %1; two such tills give two orders the same number</source>
        <translation>не задано, поэтому %1; две такие кассы дадут двум заказам один номер</translation>
    </message>
    <message>
        <source>empty, which means the default %1</source>
        <translation>пусто, то есть по умолчанию %1</translation>
    </message>
    <message>
        <source>%1: expected at least %2, which is %3</source>
        <translation>%1: нужно не меньше, чем %2, а это %3</translation>
    </message>
    <message>
        <source>%1: no phone number can be typed, expected room for %2 digits</source>
        <translation>%1: номер телефона не ввести, нужно место для %2 цифр</translation>
    </message>
    <message>
        <source>There is no waiting message %1.</source>
        <translation>Ждущего сообщения %1 нет.</translation>
    </message>
    <message>
        <source>Run the till's programs as that user.</source>
        <translation>Запускайте программы кассы от имени этого пользователя.</translation>
    </message>
    <message>
        <source>Another program's file: name another directory in Till:dataDir.</source>
        <translation>Это файл другой программы: укажите в Till:dataDir другой каталог.</translation>
    </message>
    <message>
        <source>%1, whole</source>
        <translation>%1, цело</translation>
    </message>
    <message>
        <source>parked messages: %1</source>
        <translation>отложено сообщений: %1</translation>
    </message>
    <message>
        <source>refused receipts: %1</source>
        <translation>отклонено чеков: %1</translation>
    </message>
    <message>
        <source>no connection: &quot;%1&quot;</source>
        <translation>нет связи: «%1»</translation>
    </message>
    <message>
        <source>no answer in %1 ms</source>
        <translation>ответа нет, прошло %1 мс</translation>
    </message>
    <message>
        <source>the whole path of a file that can be read</source>
        <translation>полный путь к файлу, который можно прочитать</translation>
    </message>
    <message>
        <source>the whole path, because &quot;~&quot; is not expanded</source>
        <translation>полный путь, «~» не раскрывается</translation>
    </message>
    <message>
        <source>LmMindbox:url: the secret key is sent unencrypted, expected https</source>
        <translation>LmMindbox:url: секретный ключ передаётся открыто, ожидается https</translation>
    </message>
    <message>
        <source>Begin LmMindbox:url with https.</source>
        <translation>Начните LmMindbox:url с https.</translation>
    </message>
    <message>
        <source>UTF-8</source>
        <translation>UTF-8</translation>
    </message>
    <message>
        <source>goods</source>
        <translation>товары</translation>
    </message>
    <message>
        <source>a first line with code, name and price</source>
        <translation>первая строка с code, name и price</translation>
    </message>
    <message>
        <source>%1: expected a regular file</source>
        <translation>%1: ожидается обычный файл</translation>
    </message>
    <message>
        <source>%1 %2, order %3, since %4, tries %5</source>
        <translation>%1 %2, заказ %3, с %4, попыток: %5</translation>
    </message>
    <message>
        <source>%1: expected a new file that can be written: %2</source>
        <translation>%1: ожидается новый файл, доступный для записи: %2</translation>
    </message>
    <message>
        <source>the mask does not fit: &quot;%1&quot;</source>
        <translation>маска не подходит: «%1»</translation>
    </message>
    <message>
        <source>it cannot be used: &quot;%1&quot;</source>
        <translation>использовать нельзя: «%1»</translation>
    </message>
    <message>
        <source>HTTP code %1, message: &quot;%2&quot;</source>
        <translation>код HTTP %1, сообщение: «%2»</translation>
    </message>
    <message>
        <source>the proxy asks for a user and a password</source>
        <translation>прокси требует имя и пароль</translation>
    </message>
</context>
<context>
    <name>SaleText</name>
    <message>
        <source>Receipt %1 is open, too. Close this receipt and restart the till to open it.</source>
        <translation>Чек %1 тоже открыт. Чтобы открыть его, закройте текущий чек и перезапустите кассу.</translation>
    </message>
    <message>
        <source>No receipt is open.</source>
        <translation>Открытого чека нет.</translation>
    </message>
    <message>
        <source>Receipt %1 is open: close or cancel it first.</source>
        <translation>Открыт чек %1: сначала закройте или аннулируйте его.</translation>
    </message>
    <message>
        <source>The receipt is empty. Sell something, or cancel it.</source>
        <translation>Чек пуст. Продайте что-нибудь или аннулируйте чек.</translation>
    </message>
    <message>
        <source>The discount would be larger than the sum. Remove the position and sell it again.</source>
        <translation>Скидка станет больше суммы. Удалите позицию и продайте товар снова.</translation>
    </message>
    <message>
        <source>This number is not accepted. Check it.</source>
        <translation>Этот номер не принят. Проверьте его.</translation>
    </message>
    <message>
        <source>The loyalty system does not allow this now.</source>
        <translation>Система лояльности сейчас этого не разрешает.</translation>
    </message>
    <message>
        <source>There is no closed receipt %1.</source>
        <translation>Закрытого чека %1 нет.</translation>
    </message>
    <message>
        <source>Done: the customer's data is changed.</source>
        <translation>Данные клиента изменены.</translation>
    </message>
    <message>
        <source>Failed: the customer's data is not changed.</source>
        <translation>Не удалось: данные клиента не изменены.</translation>
    </message>
    <message>
        <source>Nothing was changed.</source>
        <translation>Ничего не изменено.</translation>
    </message>
    <message>
        <source>The till has no action %1.</source>
        <translation>Действия %1 нет.</translation>
    </message>
    <message>
        <source>Receipt %1 is closed: %2.</source>
        <translation>Чек %1 закрыт: %2.</translation>
    </message>
    <message>
        <source>The sale is done. The service refused its order; support will send it again.</source>
        <translation>Продажа состоялась. Сервис отклонил заказ; служба поддержки передаст его ещё раз.</translation>
    </message>
    <message>
        <source>Receipt %1 is not reported: its order was refused.</source>
        <translation>Заказ по чеку %1 не передан: он отклонён.</translation>
    </message>
    <message>
        <source>Receipt %1 is reported.</source>
        <translation>Заказ по чеку %1 передан.</translation>
    </message>
    <message>
        <source>Receipt %1 is only in memory. You can go on selling, but do not switch the till off. Call support.</source>
        <translation>Чек %1 не сохранён. Продавать можно, но не выключайте кассу. Позовите поддержку.</translation>
    </message>
    <message>
        <source>The last step is not saved. You can go on selling, but do not switch the till off. Call support.</source>
        <translation>Последнее действие не сохранено. Продавать можно, но не выключайте кассу. Позовите поддержку.</translation>
    </message>
    <message>
        <source>Receipt %1 is on the disk now.</source>
        <translation>Чек %1 теперь сохранён.</translation>
    </message>
    <message>
        <source>Receipts still to be reported: %1. The till reports them by itself.</source>
        <translation>Ещё не передано чеков: %1. Касса передаст их сама.</translation>
    </message>
    <message>
        <source>A stored receipt cannot be read. Call support.</source>
        <translation>Один из сохранённых чеков не читается. Позовите поддержку.</translation>
    </message>
    <message>
        <source>Receipt %1 is open.</source>
        <translation>Открыт чек %1.</translation>
    </message>
    <message>
        <source>Receipt %1 is cancelled.</source>
        <translation>Чек %1 аннулирован.</translation>
    </message>
    <message>
        <source>There is no customer on the receipt.</source>
        <translation>Клиента в чеке нет.</translation>
    </message>
    <message>
        <source>The customer is removed from the receipt.</source>
        <translation>Клиент убран из чека.</translation>
    </message>
    <message>
        <source>Sale %1, shift %2, shop %3, register %4, begun %5</source>
        <translation>Продажа %1, смена %2, магазин %3, касса %4, начата %5</translation>
    </message>
    <message>
        <source>Return %1, shift %2, shop %3, register %4, begun %5</source>
        <translation>Возврат %1, смена %2, магазин %3, касса %4, начат %5</translation>
    </message>
    <message>
        <source>discount, campaign %1, mode %2, source %3</source>
        <translation>скидка, акция %1, режим %2, источник %3</translation>
    </message>
    <message>
        <source>Code</source>
        <translation>Код</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Название</translation>
    </message>
    <message>
        <source>Quantity</source>
        <translation>Кол-во</translation>
    </message>
    <message>
        <source>Price</source>
        <translation>Цена</translation>
    </message>
    <message>
        <source>Sum</source>
        <translation>Сумма</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>Итого</translation>
    </message>
    <message>
        <source>No card.</source>
        <translation>Карты нет.</translation>
    </message>
    <message>
        <source>Card %1, customer unknown.</source>
        <translation>Карта %1, клиент неизвестен.</translation>
    </message>
    <message>
        <source>male</source>
        <translation>мужчина</translation>
    </message>
    <message>
        <source>female</source>
        <translation>женщина</translation>
    </message>
    <message>
        <source>born %1</source>
        <translation>день рождения %1</translation>
    </message>
    <message>
        <source>electronic receipts</source>
        <translation>электронные чеки</translation>
    </message>
    <message>
        <source>Card %1: %2.</source>
        <translation>Карта %1: %2.</translation>
    </message>
    <message>
        <source>There is no position %3.</source>
        <translation>В чеке нет позиции %3.</translation>
    </message>
    <message>
        <source>A receipt cannot exceed %2. Close this receipt and sell the rest on another one.</source>
        <translation>Сумма чека не может быть больше %2. Закройте этот чек и продайте остальное другим.</translation>
    </message>
    <message>
        <source>The discount is larger than the position's sum, %2.</source>
        <translation>Скидка больше суммы позиции, %2.</translation>
    </message>
    <message>
        <source>Receipt %1 is open again: %4 positions, total %2.</source>
        <translation>Чек %1 снова открыт: позиций — %4, итого %2.</translation>
    </message>
    <message>
        <source>Shift %1 is closed, shift %5 begins.</source>
        <translation>Смена %1 закрыта, начата смена %5.</translation>
    </message>
    <message>
        <source>%1 is removed.</source>
        <translation>%1 — удалено.</translation>
    </message>
</context>
<context>
    <name>till::FieldEditor</name>
    <message>
        <source>%1 *</source>
        <comment>the label of a field that must be filled in</comment>
        <translation>%1 *</translation>
    </message>
    <message>
        <source>Must be filled in</source>
        <translation>Нужно заполнить</translation>
    </message>
    <message>
        <source>Cannot be changed</source>
        <translation>Изменить нельзя</translation>
    </message>
    <message>
        <source>May be left empty</source>
        <translation>Можно не заполнять</translation>
    </message>
    <message>
        <source>DD.MM.YYYY</source>
        <translation>ДД.ММ.ГГГГ</translation>
    </message>
    <message>
        <source>Not complete: %1</source>
        <translation>Заполните до конца: %1</translation>
    </message>
    <message>
        <source>Not in the expected format</source>
        <translation>Проверьте, нет ли ошибки</translation>
    </message>
    <message>
        <source>Day, month and year, such as %1</source>
        <translation>День, месяц и год, например %1</translation>
    </message>
    <message>
        <source>There is no such day</source>
        <translation>Такого дня нет</translation>
    </message>
    <message>
        <source>Not before %1</source>
        <translation>Не раньше %1</translation>
    </message>
    <message>
        <source>Not after %1</source>
        <translation>Не позже %1</translation>
    </message>
</context>
<context>
    <name>till::MainWindow</name>
    <message>
        <source>&quot;%1&quot; is neither a code nor a quantity and a code, such as 3*4601.</source>
        <translation>«%1» — не код и не количество с кодом, например 3*4601.</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Название</translation>
    </message>
    <message>
        <source>Unknown code %1</source>
        <translation>Неизвестный код %1</translation>
    </message>
    <message>
        <source>Price</source>
        <translation>Цена</translation>
    </message>
    <message>
        <source>such as 89.90</source>
        <translation>например 89,90</translation>
    </message>
    <message>
        <source>Customer</source>
        <translation>Клиент</translation>
    </message>
    <message>
        <source>Quantity</source>
        <translation>Кол-во</translation>
    </message>
    <message>
        <source>digits only</source>
        <translation>только цифры</translation>
    </message>
    <message>
        <source>Discount</source>
        <translation>Скидка</translation>
    </message>
    <message>
        <source>such as 10.50</source>
        <translation>например 10,50</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>Закрыть</translation>
    </message>
    <message>
        <source>The till is being closed ...</source>
        <translation>Касса завершает работу…</translation>
    </message>
    <message numerus="yes">
        <source>Not saved: %n receipt(s), %1. They will be lost if you leave now. Make room on the disk first.</source>
        <translation>
            <numerusform>Не сохранён %n чек: %1. Если выйти сейчас, он будет потерян. Сначала освободите место на диске.</numerusform>
            <numerusform>Не сохранены %n чека: %1. Если выйти сейчас, они будут потеряны. Сначала освободите место на диске.</numerusform>
            <numerusform>Не сохранено %n чеков: %1. Если выйти сейчас, они будут потеряны. Сначала освободите место на диске.</numerusform>
        </translation>
    </message>
    <message>
        <source>Leave and lose them</source>
        <translation>Выйти и потерять их</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Назад</translation>
    </message>
    <message>
        <source>Till</source>
        <translation>Касса</translation>
    </message>
    <message>
        <source>The till is being opened ...</source>
        <translation>Касса открывается…</translation>
    </message>
    <message>
        <source>Close the shift</source>
        <translation>Закрыть смену</translation>
    </message>
    <message>
        <source>Goods</source>
        <translation>Товар</translation>
    </message>
    <message>
        <source>Scan, or type a code and Enter; 3*4601 sells three</source>
        <translation>Сканер или код и Enter; 3*4601 — три штуки</translation>
    </message>
    <message>
        <source>Receipt</source>
        <translation>Чек</translation>
    </message>
    <message>
        <source>Scan the first goods, or type a code and press Enter.
The receipt opens by itself.

F2 finds the customer by the phone.</source>
        <translation>Отсканируйте первый товар
или введите код и нажмите Enter.
Чек откроется сам.

F2 — найти клиента по телефону.</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Изменить</translation>
    </message>
    <message>
        <source>Total</source>
        <translation>Итого</translation>
    </message>
    <message>
        <source>Remove</source>
        <translation>Удалить</translation>
    </message>
    <message>
        <source>Return</source>
        <translation>Возврат</translation>
    </message>
    <message>
        <source>Close the receipt</source>
        <translation>Закрыть чек</translation>
    </message>
    <message>
        <source>The till cannot sell.</source>
        <translation>Касса не может продавать.</translation>
    </message>
    <message>
        <source>No receipt is open</source>
        <translation>Чек не открыт</translation>
    </message>
    <message>
        <source>Return %1</source>
        <translation>Возврат %1</translation>
    </message>
    <message>
        <source>Sale %1</source>
        <translation>Продажа %1</translation>
    </message>
    <message>
        <source>shop %1, till %2</source>
        <translation>магазин %1, касса %2</translation>
    </message>
    <message>
        <source>No goods have the code %1.</source>
        <translation>Товара с кодом %1 нет.</translation>
    </message>
    <message>
        <source>Enter the name and the price to sell it.</source>
        <translation>Чтобы продать, введите название и цену.</translation>
    </message>
    <message>
        <source>Sell %1 pieces?</source>
        <translation>Продать %1 шт.?</translation>
    </message>
    <message>
        <source>Sell</source>
        <translation>Продать</translation>
    </message>
    <message>
        <source>Sell at the price of %1?</source>
        <translation>Продать по цене %1?</translation>
    </message>
    <message>
        <source>Remove position %1?</source>
        <translation>Удалить позицию %1?</translation>
    </message>
    <message>
        <source>%1, %2</source>
        <translation>%1, %2</translation>
    </message>
    <message>
        <source>The total is %1. None of the goods will be sold.</source>
        <translation>Сумма — %1. Товары из чека проданы не будут.</translation>
    </message>
    <message>
        <source>Leave and lose receipts?</source>
        <translation>Выйти и потерять чеки?</translation>
    </message>
    <message>
        <source>The till cannot sell</source>
        <translation>Касса не может продавать</translation>
    </message>
    <message>
        <source>Sell it all the same</source>
        <translation>Всё равно продать</translation>
    </message>
    <message>
        <source>Selling %1</source>
        <translation>Продаётся: %1</translation>
    </message>
    <message>
        <source>Customer's phone</source>
        <translation>Телефон клиента</translation>
    </message>
    <message>
        <source>Looking for the customer</source>
        <translation>Поиск клиента</translation>
    </message>
    <message>
        <source>Changing the quantity</source>
        <translation>Меняется количество</translation>
    </message>
    <message>
        <source>Promotion number</source>
        <translation>Номер акции</translation>
    </message>
    <message>
        <source>%1, price %2</source>
        <translation>%1, стоит %2</translation>
    </message>
    <message>
        <source>Discount amount</source>
        <translation>Сумма скидки</translation>
    </message>
    <message>
        <source>Giving the discount</source>
        <translation>Применяется скидка</translation>
    </message>
    <message>
        <source>Removing the position</source>
        <translation>Удаляется позиция</translation>
    </message>
    <message>
        <source>Cancel receipt %1?</source>
        <translation>Аннулировать чек %1?</translation>
    </message>
    <message>
        <source>Cancel the receipt</source>
        <translation>Аннулировать</translation>
    </message>
    <message>
        <source>Cancelling the receipt</source>
        <translation>Чек аннулируется</translation>
    </message>
    <message>
        <source>Closing the shift</source>
        <translation>Смена закрывается</translation>
    </message>
    <message>
        <source>Closing the till</source>
        <translation>Касса завершает работу</translation>
    </message>
    <message>
        <source>Opening the till</source>
        <translation>Касса открывается</translation>
    </message>
    <message>
        <source>These lines of %1 cannot be sold by their code:</source>
        <translation>Эти строки файла %1 не продать по коду:</translation>
    </message>
    <message>
        <source>Goods file</source>
        <translation>Файл товаров</translation>
    </message>
    <message>
        <source>Close the return</source>
        <translation>Закрыть возврат</translation>
    </message>
    <message>
        <source>Give back</source>
        <translation>Верните</translation>
    </message>
    <message>
        <source>Return %1 is closed.
Give back</source>
        <translation>Возврат %1 закрыт.
Верните</translation>
    </message>
    <message>
        <source>Receipt %1
is closed</source>
        <translation>Чек %1
закрыт</translation>
    </message>
    <message>
        <source>Exit</source>
        <translation>Выход</translation>
    </message>
    <message>
        <source>Asking for the customer's data</source>
        <translation>Запрашиваются данные клиента</translation>
    </message>
    <message>
        <source>Removing the customer</source>
        <translation>Клиент убирается из чека</translation>
    </message>
    <message>
        <source>Opening a return</source>
        <translation>Открывается возврат</translation>
    </message>
    <message>
        <source>Closing the receipt</source>
        <translation>Чек закрывается</translation>
    </message>
    <message>
        <source>Remove</source>
        <comment>the customer</comment>
        <translation>Убрать</translation>
    </message>
    <message>
        <source>Cancel receipt</source>
        <translation>Аннулировать</translation>
    </message>
    <message>
        <source>Something is wrong with the till's settings or its disk. Call support: &quot;till check&quot; says what to mend.</source>
        <translation>Что-то не так с настройками кассы или её диском. Позовите поддержку: команда «till check» скажет, что исправить.</translation>
    </message>
    <message>
        <source>Log: %1</source>
        <translation>Журнал: %1</translation>
    </message>
    <message>
        <source>The till found a fault when it started. You can go on selling. Call support.</source>
        <translation>При запуске найдена неисправность. Продавать можно. Позовите поддержку.</translation>
    </message>
    <message>
        <source>The loyalty plugin is missing. Call support: it must be installed again.</source>
        <translation>Нет плагина лояльности. Позовите поддержку: его нужно установить снова.</translation>
    </message>
    <message>
        <source>The disk is full. Make room on it, and start the till again.</source>
        <translation>На диске нет места. Освободите его и запустите кассу снова.</translation>
    </message>
    <message>
        <source>The stored receipts are of a newer version of this till. Call support: that version must be installed.</source>
        <translation>Сохранённые чеки записаны более новой версией кассы. Позовите поддержку: нужно установить ту версию.</translation>
    </message>
    <message>
        <source>up to three decimals: 0.350</source>
        <translation>до трёх знаков, например 0,350</translation>
    </message>
    <message>
        <source>The setting %1 is missing or cannot be used. Call support: &quot;till check&quot; says what to mend.</source>
        <translation>Настройка %1 не задана или не годится. Позовите поддержку: команда «till check» скажет, что исправить.</translation>
    </message>
    <message>
        <source>Adding up the shift</source>
        <translation>Подсчитывается смена</translation>
    </message>
    <message>
        <source>Receipts: %1, %2</source>
        <translation>Чеков: %1 на %2</translation>
    </message>
    <message>
        <source>Returns: %1, %2</source>
        <translation>Возвратов: %1 на %2</translation>
    </message>
    <message>
        <source>Messages waiting: %1</source>
        <translation>Сообщений в очереди: %1</translation>
    </message>
    <message>
        <source>Orders refused: %1</source>
        <translation>Отклонено заказов: %1</translation>
    </message>
    <message>
        <source>Close shift %1?</source>
        <translation>Закрыть смену %1?</translation>
    </message>
    <message>
        <source>Reading the refused orders</source>
        <translation>Читаются отклонённые заказы</translation>
    </message>
    <message>
        <source>These sales are done, but the service refused their orders. When support has mended the reason, send the orders again.</source>
        <translation>Эти продажи состоялись, но сервис отклонил их заказы. Когда поддержка устранит причину, передайте заказы ещё раз.</translation>
    </message>
    <message>
        <source>Receipt %1</source>
        <translation>Чек %1</translation>
    </message>
    <message>
        <source>Refused orders</source>
        <translation>Отклонённые заказы</translation>
    </message>
    <message>
        <source>Send again</source>
        <translation>Передать ещё раз</translation>
    </message>
    <message>
        <source>Sending the orders again</source>
        <translation>Передача заказов</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>This till is selling already, in another window or at a terminal. Go on there.</source>
        <translation>Эта касса уже торгует, в другом окне или в терминале. Продолжайте там.</translation>
    </message>
    <message>
        <source>No customer.</source>
        <translation>Клиента нет.</translation>
    </message>
    <message>
        <source>F2 finds one by the phone.</source>
        <translation>F2 — найти по телефону.</translation>
    </message>
    <message>
        <source>not given</source>
        <translation>не указано</translation>
    </message>
    <message>
        <source>Phone</source>
        <translation>Телефон</translation>
    </message>
    <message>
        <source>E-mail</source>
        <translation>Почта</translation>
    </message>
    <message>
        <source>Birthday</source>
        <translation>Дата рождения</translation>
    </message>
    <message>
        <source>Receipts</source>
        <translation>Чеки</translation>
    </message>
    <message>
        <source>electronic</source>
        <translation>электронные</translation>
    </message>
    <message>
        <source>on paper</source>
        <translation>бумажные</translation>
    </message>
    <message>
        <source>no code</source>
        <translation>нет кода</translation>
    </message>
    <message>
        <source>no name</source>
        <translation>нет названия</translation>
    </message>
    <message>
        <source>&quot;%1&quot; is no price</source>
        <translation>«%1» — не цена</translation>
    </message>
    <message>
        <source>the code %1 is there already</source>
        <translation>код %1 уже есть</translation>
    </message>
    <message>
        <source>The file cannot be read: %1</source>
        <translation>Файл не читается: %1</translation>
    </message>
    <message>
        <source>Line 1: the columns code, name and price are expected; &quot;%1&quot; is missing</source>
        <translation>Строка 1: нужны столбцы code, name и price, не хватает «%1»</translation>
    </message>
    <message>
        <source>not UTF-8</source>
        <translation>не UTF-8</translation>
    </message>
    <message>
        <source>a quotation mark is missing</source>
        <translation>не хватает кавычки</translation>
    </message>
    <message>
        <source>Line %1: %2</source>
        <translation>Строка %1: %2</translation>
    </message>
</context>
<context>
    <name>till::MessageDialog</name>
    <message>
        <source>Details</source>
        <translation>Подробности</translation>
    </message>
    <message>
        <source>Scanned %1: finish this first.</source>
        <translation>Отсканировано %1: сначала закончите это.</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
</context>
<context>
    <name>till::NumberPad</name>
    <message>
        <source>Delete the last character</source>
        <translation>Стереть последний символ</translation>
    </message>
    <message>
        <source>Capital letters</source>
        <translation>Заглавные буквы</translation>
    </message>
    <message>
        <source>Other letters</source>
        <translation>Другие буквы</translation>
    </message>
    <message>
        <source>Space</source>
        <translation>Пробел</translation>
    </message>
</context>
<context>
    <name>till::ProgressCard</name>
    <message>
        <source>%1, %2 s</source>
        <extracomment>What the till waits for, and the seconds that it has waited.</extracomment>
        <translation>%1, %2 с</translation>
    </message>
    <message>
        <source>Waiting behind it: %1</source>
        <translation>За этим ждут: %1</translation>
    </message>
</context>
<context>
    <name>till::ReceiptModel</name>
    <message>
        <source>No.</source>
        <translation>№</translation>
    </message>
    <message>
        <source>Name</source>
        <translation>Название</translation>
    </message>
    <message>
        <source>Quantity</source>
        <translation>Кол-во</translation>
    </message>
    <message>
        <source>Price</source>
        <translation>Цена</translation>
    </message>
    <message>
        <source>Discount</source>
        <translation>Скидка</translation>
    </message>
    <message>
        <source>Sum</source>
        <translation>Сумма</translation>
    </message>
</context>
<context>
    <name>till::SaleCommands</name>
    <message>
        <source>open [KIND]</source>
        <translation>open [ВИД]</translation>
    </message>
    <message>
        <source>opens a sale (1) or a return (2): open 2</source>
        <translation>открывает продажу (1) или возврат (2): open 2</translation>
    </message>
    <message>
        <source>add CODE NAME PRICE [QUANTITY]</source>
        <translation>add КОД НАЗВАНИЕ ЦЕНА [КОЛИЧЕСТВО]</translation>
    </message>
    <message>
        <source>sells goods: add 4601 &quot;Fresh milk&quot; 89.90 2</source>
        <translation>продаёт товар: add 4601 &quot;Молоко&quot; 89.90 2</translation>
    </message>
    <message>
        <source>quantity POSITION QUANTITY</source>
        <translation>quantity ПОЗИЦИЯ КОЛИЧЕСТВО</translation>
    </message>
    <message>
        <source>changes a quantity: quantity 1 3</source>
        <translation>меняет количество: quantity 1 3</translation>
    </message>
    <message>
        <source>remove POSITION</source>
        <translation>remove ПОЗИЦИЯ</translation>
    </message>
    <message>
        <source>removes a position: remove 2</source>
        <translation>убирает позицию: remove 2</translation>
    </message>
    <message>
        <source>discount POSITION SUM CAMPAIGN [MODE [SOURCE]]</source>
        <translation>discount ПОЗИЦИЯ СУММА АКЦИЯ [РЕЖИМ [ИСТОЧНИК]]</translation>
    </message>
    <message>
        <source>makes a position cheaper: discount 1 10.00 77</source>
        <translation>даёт скидку на позицию: discount 1 10.00 77</translation>
    </message>
    <message>
        <source>identifies the customer: card +7 916 123-45-67</source>
        <translation>находит клиента: card +7 916 123-45-67</translation>
    </message>
    <message>
        <source>shows the receipt</source>
        <translation>показывает чек</translation>
    </message>
    <message>
        <source>shows the card and its holder</source>
        <translation>показывает карту и её владельца</translation>
    </message>
    <message>
        <source>triggers an action: action 170</source>
        <translation>выполняет действие: action 170</translation>
    </message>
    <message>
        <source>edits the customer's data, as action 170 does</source>
        <translation>меняет данные клиента, как действие 170</translation>
    </message>
    <message>
        <source>removes card and loyalty data from the receipt</source>
        <translation>убирает из чека карту и данные лояльности</translation>
    </message>
    <message>
        <source>closes the receipt</source>
        <translation>закрывает чек</translation>
    </message>
    <message>
        <source>cancels the receipt</source>
        <translation>аннулирует чек</translation>
    </message>
    <message>
        <source>report NUMBER</source>
        <translation>report НОМЕР</translation>
    </message>
    <message>
        <source>reports a committed receipt again: report 17</source>
        <translation>передаёт закрытый чек ещё раз: report 17</translation>
    </message>
    <message>
        <source>shows the state of the delivery</source>
        <translation>показывает состояние очереди</translation>
    </message>
    <message>
        <source>closes the shift</source>
        <translation>закрывает смену</translation>
    </message>
    <message>
        <source>shows the loaded plugin</source>
        <translation>показывает загруженный плагин</translation>
    </message>
    <message>
        <source>shows this list</source>
        <translation>показывает этот список</translation>
    </message>
    <message>
        <source>quits the till; an open receipt stays open</source>
        <translation>завершает работу; открытый чек остаётся открытым</translation>
    </message>
    <message>
        <source>Expected: %1</source>
        <translation>Ожидается: %1</translation>
    </message>
    <message>
        <source>Unknown command &quot;%1&quot;; &quot;help&quot; lists the commands.</source>
        <translation>Неизвестная команда «%1»; список команд — help.</translation>
    </message>
    <message>
        <source>Expected %1.</source>
        <translation>Ожидается %1.</translation>
    </message>
    <message>
        <source>1 for a sale or 2 for a return</source>
        <translation>1 (продажа) или 2 (возврат)</translation>
    </message>
    <message>
        <source>a price from 0 to %1 with at most two decimals</source>
        <translation>цена от 0 до %1, не больше двух знаков после точки</translation>
    </message>
    <message>
        <source>a quantity from 0.001 to %1 with at most three decimals</source>
        <translation>количество от 0.001 до %1, не больше трёх знаков после точки</translation>
    </message>
    <message>
        <source>a sum above 0 with at most two decimals</source>
        <translation>сумма больше 0, не больше двух знаков после точки</translation>
    </message>
    <message>
        <source>No receipt is open.</source>
        <translation>Открытого чека нет.</translation>
    </message>
    <message>
        <source>Cancel receipt %1, total %2?</source>
        <translation>Аннулировать чек %1 на %2?</translation>
    </message>
    <message>
        <source>Close shift %1?</source>
        <translation>Закрыть смену %1?</translation>
    </message>
    <message>
        <source>yes</source>
        <translation>да</translation>
    </message>
    <message>
        <source>no</source>
        <translation>нет</translation>
    </message>
    <message>
        <source>Not saved: receipt %1.</source>
        <translation>Не сохранено: чек %1.</translation>
    </message>
    <message>
        <source>The till keeps running. Make room on the disk and quit again; &quot;quit now&quot; quits without saving.</source>
        <translation>Касса работает дальше. Освободите место на диске и повторите quit; «quit now» завершит работу без сохранения.</translation>
    </message>
    <message>
        <source>Messages waiting: %1, parked: %2; receipts refused: %3. Oldest: %4.</source>
        <translation>Сообщений в очереди: %1, отложено: %2; отклонено чеков: %3. Самое старое: %4.</translation>
    </message>
    <message>
        <source>a whole number above 0</source>
        <translation>целое число больше 0</translation>
    </message>
    <message>
        <source>a whole number</source>
        <translation>целое число</translation>
    </message>
    <message>
        <source>card PHONE</source>
        <translation>card ТЕЛЕФОН</translation>
    </message>
    <message>
        <source>action NUMBER</source>
        <translation>action НОМЕР</translation>
    </message>
    <message>
        <source>[not saved] %1</source>
        <translation>[не сохранено] %1</translation>
    </message>
    <message>
        <source>[not readable] row %1: %2</source>
        <translation>[не читается] строка %1: %2</translation>
    </message>
    <message>
        <source>Receipts to report again: %1. Report them?</source>
        <translation>Чеков для повторной передачи: %1. Передать?</translation>
    </message>
    <message>
        <source>expected a receipt's number, not &quot;%1&quot;</source>
        <translation>ожидается номер чека, а не «%1»</translation>
    </message>
</context>
<context>
    <name>till::StateLine</name>
    <message>
        <source>Receipts not saved: %1</source>
        <translation>Не сохранено чеков: %1</translation>
    </message>
    <message>
        <source>Loyalty service: not asked yet</source>
        <translation>Лояльность: нет данных</translation>
    </message>
    <message>
        <source>Loyalty service: online</source>
        <translation>Лояльность: на связи</translation>
    </message>
    <message>
        <source>Loyalty service: offline since %1</source>
        <translation>Лояльность: нет связи с %1</translation>
    </message>
    <message>
        <source>Orders refused: %1 ▸</source>
        <translation>Отклонено заказов: %1 ▸</translation>
    </message>
    <message>
        <source>Messages: the disk cannot be read</source>
        <translation>Очередь: диск не читается</translation>
    </message>
    <message>
        <source>Messages waiting: %1, since %2</source>
        <translation>Сообщений в очереди: %1, с %2</translation>
    </message>
    <message>
        <source>Goods file errors: %1 ▸</source>
        <translation>Ошибок в товарах: %1 ▸</translation>
    </message>
</context>
<context>
    <name>till::WindowPresenter</name>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
    <message>
        <source>Attempt %1</source>
        <translation>Попытка %1</translation>
    </message>
</context>
</TS>
