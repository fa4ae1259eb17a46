<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="ru" sourcelanguage="en">
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
        <source>1 or 2 is expected.</source>
        <translation>Введите 1 или 2.</translation>
    </message>
    <message>
        <source>input</source>
        <translation>ввод</translation>
    </message>
    <message>
        <source>At most %1 characters are expected.</source>
        <translation>Не больше %1 символов.</translation>
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
        <source>No receipt is open.</source>
        <translation>Открытого чека нет.</translation>
    </message>
    <message>
        <source>Receipt %1 is open; commit or cancel it first.</source>
        <translation>Открыт чек %1: сначала закройте его (commit) или аннулируйте (cancel).</translation>
    </message>
    <message>
        <source>There is no position %1.</source>
        <translation>В чеке нет позиции %1.</translation>
    </message>
    <message>
        <source>The receipt has no positions.</source>
        <translation>В чеке нет позиций.</translation>
    </message>
    <message>
        <source>A receipt&apos;s sum must not be above %1.</source>
        <translation>Сумма чека не может быть больше %1.</translation>
    </message>
    <message>
        <source>The discount is larger than the position&apos;s sum, %1.</source>
        <translation>Скидка больше суммы позиции, %1.</translation>
    </message>
    <message>
        <source>The position would cost less than its discounts.</source>
        <translation>Позиция стоила бы меньше своих скидок.</translation>
    </message>
    <message>
        <source>The loyalty system does not take this number.</source>
        <translation>Система лояльности не принимает этот номер.</translation>
    </message>
    <message>
        <source>The loyalty system forbids it.</source>
        <translation>Система лояльности не разрешает этого.</translation>
    </message>
    <message>
        <source>There is no committed receipt %1.</source>
        <translation>Закрытого чека %1 нет.</translation>
    </message>
    <message>
        <source>Done.</source>
        <translation>Выполнено.</translation>
    </message>
    <message>
        <source>Failed.</source>
        <translation>Не удалось.</translation>
    </message>
    <message>
        <source>Nothing was done.</source>
        <translation>Ничего не изменено.</translation>
    </message>
    <message>
        <source>Nothing serves action %1.</source>
        <translation>Действие %1 не поддерживается.</translation>
    </message>
    <message>
        <source> The service did not take its order; &quot;till receipts --refused&quot; says why.</source>
        <translation> Сервис не принял его заказ; причину покажет «till receipts --refused».</translation>
    </message>
    <message>
        <source>%1. %2 is removed.</source>
        <translation>%1. %2 — удалено.</translation>
    </message>
    <message>
        <source>[not saved] %1</source>
        <translation>[не сохранено] %1</translation>
    </message>
    <message>
        <source>Receipt %1 is only in memory. Do not stop the till before there is room.</source>
        <translation>Чек %1 есть только в памяти. Не выключайте кассу, пока на диске нет места.</translation>
    </message>
    <message>
        <source>Receipt %1 is open again: %2 positions, total %3.</source>
        <translation>Чек %1 снова открыт: позиций — %2, итого %3.</translation>
    </message>
    <message>
        <source>The holder cannot be identified.</source>
        <translation>Покупатель не определён.</translation>
    </message>
    <message>
        <source>There is no card on the receipt.</source>
        <translation>Карты в чеке нет.</translation>
    </message>
    <message>
        <source>Receipt %1 is open.</source>
        <translation>Открыт чек %1.</translation>
    </message>
    <message>
        <source>The loyalty data is cleared.</source>
        <translation>Данные лояльности убраны из чека.</translation>
    </message>
    <message>
        <source>Receipt %1 is committed, total %2.</source>
        <translation>Чек %1 закрыт, итого %2.</translation>
    </message>
    <message>
        <source>Receipt %1 is not reported.</source>
        <translation>Заказ по чеку %1 не передан.</translation>
    </message>
    <message>
        <source>Receipt %1 is reported.</source>
        <translation>Заказ по чеку %1 передан.</translation>
    </message>
    <message>
        <source>Receipt %1 is cancelled.</source>
        <translation>Чек %1 аннулирован.</translation>
    </message>
    <message>
        <source>Shift %1 is closed, shift %2 begins.</source>
        <translation>Смена %1 закрыта, начата смена %2.</translation>
    </message>
    <message>
        <source>Receipt %1 is on the disk now.</source>
        <translation>Чек %1 теперь сохранён на диске.</translation>
    </message>
    <message>
        <source>Receipts still to be reported: %1; some go with each commit.</source>
        <translation>Чеков, о которых ещё не сообщено: %1; они уходят с каждым закрытым чеком.</translation>
    </message>
    <message>
        <source>The receipt of row %1 in the store cannot be read: %2; it stays there.</source>
        <translation>Чек в строке %1 хранилища не читается: %2; он остаётся там.</translation>
    </message>
    <message>
        <source>Messages waiting: %1, parked: %2; receipts refused: %3.</source>
        <translation>Сообщений в очереди: %1, отложено: %2; отклонено чеков: %3.</translation>
    </message>
    <message>
        <source>The oldest has waited since %1.</source>
        <translation>Самое старое ждёт с %1.</translation>
    </message>
    <message>
        <source>A date such as 31.12.1990 is expected.</source>
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
        <source>A number from 1 to %1 is expected.</source>
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
        <translation>Не подходит под образец %1.</translation>
    </message>
    <message>
        <source>The text is not of the form expected here.</source>
        <translation>Здесь ожидается другая запись.</translation>
    </message>
    <message>
        <source>Return %1, shift %2, shop %3, register %4, begun %5</source>
        <translation>Возврат %1, смена %2, магазин %3, касса %4, начат %5</translation>
    </message>
    <message>
        <source>Sale %1, shift %2, shop %3, register %4, begun %5</source>
        <translation>Продажа %1, смена %2, магазин %3, касса %4, начата %5</translation>
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
        <translation>Количество</translation>
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
        <source>Card %1, holder unknown.</source>
        <translation>Карта %1, владелец неизвестен.</translation>
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
</context>
<context>
    <name>Office</name>
    <message>
        <source>%1 %2, order %3, age %4, tries %5</source>
        <translation>%1 %2, заказ %3, возраст %4, попыток %5</translation>
    </message>
    <message>
        <source>the first %1 of %2; &quot;export&quot; writes all</source>
        <translation>первые %1 из %2; все запишет «export»</translation>
    </message>
    <message>
        <source>parked: %1</source>
        <translation>отложено: %1</translation>
    </message>
    <message>
        <source>Expected a message&apos;s number, not &quot;%1&quot;.</source>
        <translation>Ожидается номер сообщения, а не «%1».</translation>
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
        <source>%1: expected a new file</source>
        <translation>%1: ожидается новый файл</translation>
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
        <source>
next: %1 %2, age %3, tries %4</source>
        <translation>
следующее: %1 %2, возраст %3, попыток %4</translation>
    </message>
    <message>
        <source>
last error: %1</source>
        <translation>
последняя ошибка: %1</translation>
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
        <source>The latest %1 only; --since chooses.</source>
        <translation>Только последние %1; остальные — с --since.</translation>
    </message>
    <message>
        <source>shop %1, register %2, shift %3</source>
        <translation>магазин %1, касса %2, смена %3</translation>
    </message>
    <message>
        <source>the service&apos;s answer: %1</source>
        <translation>ответ сервиса: %1</translation>
    </message>
    <message>
        <source>The receipt cannot be read: %1</source>
        <translation>Чек не читается: %1</translation>
    </message>
    <message>
        <source>total %1</source>
        <translation>итого %1</translation>
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
        <source>expected a whole number, %1</source>
        <translation>ожидается целое число, %1</translation>
    </message>
    <message>
        <source>expected one of %1</source>
        <translation>ожидается одно из: %1</translation>
    </message>
    <message>
        <source>expected a URL such as %1</source>
        <translation>ожидается адрес вида %1</translation>
    </message>
    <message>
        <source>expected the path %1</source>
        <translation>ожидается путь %1</translation>
    </message>
    <message>
        <source>the secret key goes unencrypted, expected %1</source>
        <translation>секретный ключ передаётся открыто, ожидается %1</translation>
    </message>
    <message>
        <source>the quotation marks are part of the value, expected none</source>
        <translation>кавычки входят в значение, они не нужны</translation>
    </message>
    <message>
        <source>&quot;~&quot; means nothing here, expected the whole path</source>
        <translation>«~» здесь ничего не значит, ожидается полный путь</translation>
    </message>
    <message>
        <source>expected a file</source>
        <translation>ожидается файл</translation>
    </message>
    <message>
        <source>expected at least the value of %1</source>
        <translation>ожидается не меньше значения %1</translation>
    </message>
    <message>
        <source>not set, taken as 1; two such tills give one number to two orders</source>
        <translation>не задан, принят за 1; две такие кассы дадут один номер двум заказам</translation>
    </message>
    <message>
        <source>%1: others may read the secret key</source>
        <translation>%1: секретный ключ могут прочитать другие</translation>
    </message>
    <message>
        <source>chmod 600 %1</source>
        <translation>chmod 600 %1</translation>
    </message>
    <message>
        <source>Correct Till:language.</source>
        <translation>Исправьте Till:language.</translation>
    </message>
    <message>
        <source>Correct the line, or name another file with --config.</source>
        <translation>Исправьте строку или укажите другой файл ключом --config.</translation>
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
        <source>Give it to the till&apos;s user, or correct Till:log.</source>
        <translation>Отдайте его пользователю кассы или исправьте Till:log.</translation>
    </message>
    <message>
        <source>%1 cannot be written</source>
        <translation>%1: запись невозможна</translation>
    </message>
    <message>
        <source>Give the directory to the till&apos;s user, or correct Till:dataDir.</source>
        <translation>Отдайте каталог пользователю кассы или исправьте Till:dataDir.</translation>
    </message>
    <message>
        <source>%1 belongs to the user %2</source>
        <translation>%1 принадлежит пользователю %2</translation>
    </message>
    <message>
        <source>Run the till&apos;s programs as that user: runuser -u %1 till check</source>
        <translation>Запускайте программы кассы от имени этого пользователя: runuser -u %1 till check</translation>
    </message>
    <message>
        <source>%1 is open to other users</source>
        <translation>%1 доступен другим пользователям</translation>
    </message>
    <message>
        <source>chmod 700 %1</source>
        <translation>chmod 700 %1</translation>
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
        <source>%1, whole, version %2</source>
        <translation>%1, цело, версия %2</translation>
    </message>
    <message>
        <source>Install the newer version, or another Till:dataDir.</source>
        <translation>Установите более новую версию или укажите другой Till:dataDir.</translation>
    </message>
    <message>
        <source>See who holds or locks the file, and its rights.</source>
        <translation>Проверьте, кто держит или блокирует файл, и права на него.</translation>
    </message>
    <message>
        <source>Start the till: it puts the file aside, into &quot;damaged&quot;, and begins a new one.</source>
        <translation>Запустите кассу: она отложит файл в «damaged» и начнёт новый.</translation>
    </message>
    <message>
        <source>%1 messages wait, the oldest for %2 s</source>
        <translation>ждут сообщений: %1, самое старое %2 с</translation>
    </message>
    <message>
        <source>&quot;till queue&quot; says what keeps it; &quot;till deliver&quot; must run.</source>
        <translation>Что мешает, покажет «till queue»; должен работать «till deliver».</translation>
    </message>
    <message>
        <source>%1 messages are parked</source>
        <translation>отложено сообщений: %1</translation>
    </message>
    <message>
        <source>&quot;till queue parked&quot; says why, &quot;till queue retry&quot; sends again.</source>
        <translation>Причину покажет «till queue parked», снова отправит «till queue retry».</translation>
    </message>
    <message>
        <source>none</source>
        <translation>нет</translation>
    </message>
    <message>
        <source>%1 receipts are refused</source>
        <translation>отклонено чеков: %1</translation>
    </message>
    <message>
        <source>&quot;till receipts --refused&quot; says why, &quot;till report&quot; reports again.</source>
        <translation>Причину покажет «till receipts --refused», сообщит снова «till report».</translation>
    </message>
    <message>
        <source>none yet; the first start makes it</source>
        <translation>ещё нет; появится при первом запуске</translation>
    </message>
    <message>
        <source>one is selling here; a second one does not start</source>
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
        <source>none is at work at this moment</source>
        <translation>сейчас не работает</translation>
    </message>
    <message>
        <source>The environment of a service is another one: set Http:proxy, or no_proxy.</source>
        <translation>У службы другое окружение: задайте Http:proxy или no_proxy.</translation>
    </message>
    <message>
        <source>%1, by %2, until %3 (%4 days)</source>
        <translation>%1, выдан %2, до %3 (дней: %4)</translation>
    </message>
    <message>
        <source>The certificate has expired: the service, or this clock, must be put right.</source>
        <translation>Срок сертификата истёк: надо исправить сервис или часы кассы.</translation>
    </message>
    <message>
        <source>The certificate is for another host: correct LmMindbox:url.</source>
        <translation>Сертификат выдан другому узлу: исправьте LmMindbox:url.</translation>
    </message>
    <message>
        <source>Nobody is trusted without this file: install ca-certificates, or correct Http:caFile.</source>
        <translation>Без этого файла доверять некому: установите ca-certificates или исправьте Http:caFile.</translation>
    </message>
    <message>
        <source>Its authority is not trusted: name its PEM file in Http:caFile.</source>
        <translation>Удостоверяющему центру нет доверия: укажите его PEM-файл в Http:caFile.</translation>
    </message>
    <message>
        <source>Its owner must renew it before that day.</source>
        <translation>Владелец должен обновить его до этого дня.</translation>
    </message>
    <message>
        <source>the service does not tell the time</source>
        <translation>сервис не сообщает времени</translation>
    </message>
    <message>
        <source>%1 s ahead of the service&apos;s</source>
        <translation>впереди часов сервиса на %1 с</translation>
    </message>
    <message>
        <source>Put the clock right and keep it so: systemd-timesyncd or chrony.</source>
        <translation>Выставьте часы и поддерживайте их: systemd-timesyncd или chrony.</translation>
    </message>
    <message>
        <source>Correct the proxy, or do without.</source>
        <translation>Исправьте прокси или обойдитесь без него.</translation>
    </message>
    <message>
        <source>Correct the host in LmMindbox:url, or the name server.</source>
        <translation>Исправьте узел в LmMindbox:url или сервер имён.</translation>
    </message>
    <message>
        <source>Correct the port in LmMindbox:url, or let the till through the firewall.</source>
        <translation>Исправьте порт в LmMindbox:url или пропустите кассу через межсетевой экран.</translation>
    </message>
    <message>
        <source>%1 in %2 ms</source>
        <translation>%1 за %2 мс</translation>
    </message>
    <message>
        <source>There is no TLS at this port: correct scheme and port in LmMindbox:url.</source>
        <translation>На этом порту нет TLS: исправьте схему и порт в LmMindbox:url.</translation>
    </message>
    <message>
        <source>The service hangs; ask its owner.</source>
        <translation>Сервис не отвечает; обратитесь к его владельцу.</translation>
    </message>
    <message>
        <source>Begin LmMindbox:url with https: what answers at this port does not speak http.</source>
        <translation>Начните LmMindbox:url с https: на этом порту отвечают не по http.</translation>
    </message>
    <message>
        <source>The service hangs, or LmMindbox:timeout is too short.</source>
        <translation>Сервис не отвечает, или LmMindbox:timeout слишком мал.</translation>
    </message>
    <message>
        <source>Correct LmMindbox:secretKey.</source>
        <translation>Исправьте LmMindbox:secretKey.</translation>
    </message>
    <message>
        <source>Correct LmMindbox:endpoint; its rights are given at the service.</source>
        <translation>Исправьте LmMindbox:endpoint; права ему даёт сервис.</translation>
    </message>
    <message>
        <source>Correct the path in LmMindbox:url.</source>
        <translation>Исправьте путь в LmMindbox:url.</translation>
    </message>
    <message>
        <source>The service has too much to do; try again later.</source>
        <translation>Сервис перегружен; повторите позже.</translation>
    </message>
    <message>
        <source>Something else than the service has answered: correct LmMindbox:url, or log in to the network.</source>
        <translation>Ответил не сервис: исправьте LmMindbox:url или войдите в сеть.</translation>
    </message>
    <message>
        <source>The service&apos;s own words say what it does not like.</source>
        <translation>Что не так, говорят слова самого сервиса.</translation>
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
        <source>HTTP code %1 in %2 ms</source>
        <translation>код HTTP %1 за %2 мс</translation>
    </message>
    <message>
        <source>, no JSON object</source>
        <translation>, не объект JSON</translation>
    </message>
    <message>
        <source>not asked</source>
        <translation>не спрашивали</translation>
    </message>
    <message>
        <source>Set LmMindbox:url to the service&apos;s URL.</source>
        <translation>Укажите в LmMindbox:url адрес сервиса.</translation>
    </message>
    <message>
        <source>two receipts get one identifier, %1: the service would lose one</source>
        <translation>два чека получают один идентификатор, %1: один из них сервис потеряет</translation>
    </message>
    <message>
        <source>Put shop, register, shift and number into %1, each with its width; docs/masks.md says how.</source>
        <translation>Внесите в %1 магазин, кассу, смену и номер, каждый со своей шириной; как, говорит docs/masks.md.</translation>
    </message>
    <message>
        <source>an order&apos;s identifier: %1</source>
        <translation>идентификатор заказа: %1</translation>
    </message>
    <message>
        <source>two products get one identifier, &quot;%1&quot;</source>
        <translation>два товара получают один идентификатор, «%1»</translation>
    </message>
    <message>
        <source>Put the position&apos;s code into LmMindbox:productIdMask.</source>
        <translation>Внесите код позиции в LmMindbox:productIdMask.</translation>
    </message>
    <message>
        <source>a product&apos;s identifier: %1</source>
        <translation>идентификатор товара: %1</translation>
    </message>
    <message>
        <source>Correct the mask; docs/masks.md lists what it can hold.</source>
        <translation>Исправьте маску; что в ней может быть, перечисляет docs/masks.md.</translation>
    </message>
    <message>
        <source>%1 is not set: the usual mask</source>
        <translation>%1 не задан: обычная маска</translation>
    </message>
    <message>
        <source>Correct %1 in the settings file.</source>
        <translation>Исправьте %1 в файле настроек.</translation>
    </message>
    <message>
        <source>every key is known and every value possible</source>
        <translation>все ключи известны, все значения возможны</translation>
    </message>
    <message>
        <source>Install the plugin of this version, or correct Till:plugin.</source>
        <translation>Установите плагин этой версии или исправьте Till:plugin.</translation>
    </message>
    <message>
        <source>not recorded</source>
        <translation>не записано</translation>
    </message>
</context>
<context>
    <name>WindowText</name>
    <message>
        <source>Quantity</source>
        <translation>Количество</translation>
    </message>
    <message>
        <source>up to three decimals: 0.350</source>
        <translation>до трёх знаков, например 0,350</translation>
    </message>
    <message>
        <source>No receipt is open. Scan goods to open one.</source>
        <translation>Открытого чека нет. Он откроется с первым товаром.</translation>
    </message>
    <message>
        <source>Receipt %1 is open: close or abandon it first.</source>
        <translation>Открыт чек %1: сначала закройте или аннулируйте его.</translation>
    </message>
    <message>
        <source>There is no position %1 on the receipt.</source>
        <translation>В чеке нет позиции %1.</translation>
    </message>
    <message>
        <source>The receipt is empty. Scan goods, or abandon it.</source>
        <translation>Чек пуст. Отсканируйте товар или аннулируйте чек.</translation>
    </message>
    <message>
        <source>A receipt must not come to more than %1. Close this one and sell the rest on another.</source>
        <translation>Сумма чека не может быть больше %1. Закройте этот чек, а остальное продайте в следующем.</translation>
    </message>
    <message>
        <source>The position costs only %1: enter a smaller discount.</source>
        <translation>Позиция стоит только %1: укажите скидку меньше.</translation>
    </message>
    <message>
        <source>So few would cost less than their discount. Remove the position and sell it anew.</source>
        <translation>Столько стоило бы меньше своей скидки. Удалите позицию и продайте товар заново.</translation>
    </message>
    <message>
        <source>This number is not taken. Check it.</source>
        <translation>Этот номер не подходит. Проверьте его.</translation>
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
        <source>The customer&apos;s data was changed.</source>
        <translation>Данные покупателя изменены.</translation>
    </message>
    <message>
        <source>The customer&apos;s data was not changed.</source>
        <translation>Данные покупателя не изменены.</translation>
    </message>
    <message>
        <source>Nothing was changed.</source>
        <translation>Ничего не изменено.</translation>
    </message>
    <message>
        <source>This loyalty system cannot change the customer&apos;s data.</source>
        <translation>Эта система лояльности не умеет менять данные покупателя.</translation>
    </message>
    <message>
        <source>The service did not take the order of receipt %1. The line below shows why.</source>
        <translation>Сервис не принял заказ по чеку %1. Причина — в строке состояния внизу.</translation>
    </message>
    <message>
        <source>Receipt %1 is open again, as it was left.</source>
        <translation>Чек %1 снова открыт, ничего не потеряно.</translation>
    </message>
    <message>
        <source>Removed: %1</source>
        <translation>Удалено: %1</translation>
    </message>
    <message>
        <source>No customer on the receipt. %1</source>
        <translation>Покупателя в чеке нет. %1</translation>
    </message>
    <message>
        <source>The customer is off the receipt.</source>
        <translation>Покупатель убран из чека.</translation>
    </message>
    <message>
        <source>Receipt %1 is closed: %2. %3</source>
        <translation>Чек %1 закрыт: %2. %3</translation>
    </message>
    <message>
        <source>Receipt %1 is abandoned.</source>
        <translation>Чек %1 аннулирован.</translation>
    </message>
    <message>
        <source>Shift %1 is closed, the next one has begun.</source>
        <translation>Смена %1 закрыта, начата следующая.</translation>
    </message>
    <message>
        <source>What was done is not on the disk. Sell on, but do not switch the till off; call the one who looks after it.</source>
        <translation>Сделанное не сохраняется на диск. Продавать можно, выключать кассу нельзя; позовите того, кто её обслуживает.</translation>
    </message>
    <message>
        <source>Receipt %1 is on the disk now.</source>
        <translation>Чек %1 теперь сохранён на диске.</translation>
    </message>
    <message numerus="yes">
        <source>%n receipt(s) of before are still to be reported; that happens by itself.</source>
        <translation>
            <numerusform>%n прежний чек ещё не передан; он уйдёт сам.</numerusform>
            <numerusform>%n прежних чека ещё не переданы; они уйдут сами.</numerusform>
            <numerusform>%n прежних чеков ещё не переданы; они уйдут сами.</numerusform>
        </translation>
    </message>
    <message>
        <source>A stored receipt cannot be read. Call the one who looks after the till.</source>
        <translation>Один из сохранённых чеков не читается. Позовите того, кто обслуживает кассу.</translation>
    </message>
    <message>
        <source>The file cannot be read.</source>
        <translation>Файл не читается.</translation>
    </message>
    <message>
        <source>Line 1: it must name the columns code, name and price; &quot;%1&quot; is missing.</source>
        <translation>Строка 1: в ней должны быть столбцы code, name и price; нет «%1».</translation>
    </message>
    <message>
        <source>Line %1: not UTF-8, or a quotation mark is missing.</source>
        <translation>Строка %1: не UTF-8 или не хватает кавычки.</translation>
    </message>
    <message>
        <source>Line %1: no code.</source>
        <translation>Строка %1: нет кода.</translation>
    </message>
    <message>
        <source>Line %1: no name.</source>
        <translation>Строка %1: нет названия.</translation>
    </message>
    <message>
        <source>Line %1: &quot;%2&quot; is no price.</source>
        <translation>Строка %1: «%2» — не цена.</translation>
    </message>
    <message>
        <source>Line %1: the code %2 is there already.</source>
        <translation>Строка %1: код %2 уже есть.</translation>
    </message>
    <message>
        <source>The order of receipt %1 is on its way.</source>
        <translation>Заказ по чеку %1 передан.</translation>
    </message>
</context>
<context>
    <name>till::CustomerPanel</name>
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
        <source>Customer</source>
        <translation>Покупатель</translation>
    </message>
    <message>
        <source>No customer. F2 finds one by the phone.</source>
        <translation>Покупателя нет. F2 — найти по телефону.</translation>
    </message>
    <message>
        <source>%1
confirmed</source>
        <translation>%1
подтверждён</translation>
    </message>
    <message>
        <source>not given</source>
        <translation>не указано</translation>
    </message>
    <message>
        <source>electronic</source>
        <translation>электронные</translation>
    </message>
    <message>
        <source>on paper</source>
        <translation>бумажные</translation>
    </message>
</context>
<context>
    <name>till::DateEditor</name>
    <message>
        <source>Calendar</source>
        <translation>Календарь</translation>
    </message>
    <message>
        <source>There is no such day</source>
        <translation>Такого дня нет</translation>
    </message>
    <message>
        <source>Day, month and year: %1</source>
        <translation>День, месяц и год: %1</translation>
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
</context>
<context>
    <name>till::FormDialog</name>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
    </message>
</context>
<context>
    <name>till::InputDialog</name>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Отмена</translation>
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
        <source>No goods have this code. Scan again; or say what it is, to sell it all the same.</source>
        <translation>Товара с таким кодом нет. Отсканируйте ещё раз или укажите, что это, чтобы всё же продать.</translation>
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
        <translation>Покупатель</translation>
    </message>
    <message>
        <source>Phone of the customer</source>
        <translation>Телефон покупателя</translation>
    </message>
    <message>
        <source>Find</source>
        <translation>Найти</translation>
    </message>
    <message>
        <source>Quantity</source>
        <translation>Кол-во</translation>
    </message>
    <message>
        <source>Number of the promotion</source>
        <translation>Номер акции</translation>
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
        <source>%1, costs %2</source>
        <translation>%1, стоит %2</translation>
    </message>
    <message>
        <source>Cheaper by</source>
        <translation>Дешевле на</translation>
    </message>
    <message>
        <source>such as 10.50</source>
        <translation>например 10,50</translation>
    </message>
    <message>
        <source>Abandon receipt %1, %2? Nothing of it is sold then.</source>
        <translation>Аннулировать чек %1 на %2? Ничего из него не будет продано.</translation>
    </message>
    <message>
        <source>Abandon</source>
        <translation>Аннулировать</translation>
    </message>
    <message>
        <source>Close the shift? The next one begins at once.</source>
        <translation>Закрыть смену? Следующая начнётся сразу.</translation>
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
        <source>Not on the disk: %n receipt(s), %1. They are lost when the till ends now. Make room on the disk first.</source>
        <translation>
            <numerusform>Не сохранён на диск %n чек: %1. Если выйти сейчас, он будет потерян. Сначала освободите место на диске.</numerusform>
            <numerusform>Не сохранены на диск %n чека: %1. Если выйти сейчас, они будут потеряны. Сначала освободите место на диске.</numerusform>
            <numerusform>Не сохранено на диск %n чеков: %1. Если выйти сейчас, они будут потеряны. Сначала освободите место на диске.</numerusform>
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
        <source>Leave</source>
        <translation>Выход</translation>
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

F2 — найти покупателя по телефону.</translation>
    </message>
    <message>
        <source>Edit</source>
        <translation>Изменить</translation>
    </message>
    <message>
        <source>Take off</source>
        <translation>Убрать</translation>
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
        <source>Undo</source>
        <translation>Вернуть как было</translation>
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
        <source>Something was found wrong at the start. Sell on, and call the one who looks after the till: its log says what.</source>
        <translation>При запуске найдена неисправность. Продавать можно; позовите того, кто обслуживает кассу: подробности в её журнале.</translation>
    </message>
    <message>
        <source>The till cannot open: something is wrong with its settings or its disk. Call the one who looks after it; &quot;till check&quot; says what to mend.
%1</source>
        <translation>Касса не открывается: что-то не так с её настройками или диском. Позовите того, кто её обслуживает: команда «till check» скажет, что исправить.
%1</translation>
    </message>
    <message>
        <source>The till cannot sell.</source>
        <translation>Касса не может продавать.</translation>
    </message>
    <message>
        <source>The till cannot sell. Perhaps it is open in another window already; else call the one who looks after it. Its log says why:
%1</source>
        <translation>Касса не может продавать. Возможно, она уже открыта в другом окне; если нет, позовите того, кто её обслуживает. Причина — в журнале:
%1</translation>
    </message>
    <message>
        <source>Not all goods can be sold by their code. In %1:</source>
        <translation>Не все товары можно продать по коду. В файле %1:</translation>
    </message>
    <message numerus="yes">
        <source>and %n more line(s)</source>
        <translation>
            <numerusform>и ещё %n строка</numerusform>
            <numerusform>и ещё %n строки</numerusform>
            <numerusform>и ещё %n строк</numerusform>
        </translation>
    </message>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
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
</context>
<context>
    <name>till::MessageDialog</name>
    <message>
        <source>Error</source>
        <translation>Ошибка</translation>
    </message>
    <message>
        <source>Message</source>
        <translation>Сообщение</translation>
    </message>
    <message>
        <source>Question</source>
        <translation>Вопрос</translation>
    </message>
</context>
<context>
    <name>till::NumberPad</name>
    <message>
        <source>Delete the last character</source>
        <translation>Стереть последний символ</translation>
    </message>
</context>
<context>
    <name>till::ProgressCard</name>
    <message>
        <source>One moment, please ...</source>
        <translation>Подождите…</translation>
    </message>
    <message>
        <source>%1 s</source>
        <extracomment>Seconds that the till has waited.</extracomment>
        <translation>%1 с</translation>
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
    <name>till::RefusedDialog</name>
    <message>
        <source>Refused orders</source>
        <translation>Отклонённые заказы</translation>
    </message>
    <message>
        <source>The service did not take these. When the reason is mended, report the order again.</source>
        <translation>Сервис не принял эти заказы. Когда причина устранена, передайте заказ ещё раз.</translation>
    </message>
    <message>
        <source>Receipt</source>
        <translation>Чек</translation>
    </message>
    <message>
        <source>Sold</source>
        <translation>Продан</translation>
    </message>
    <message>
        <source>Reason</source>
        <translation>Причина</translation>
    </message>
    <message>
        <source>Report again</source>
        <translation>Передать ещё раз</translation>
    </message>
    <message>
        <source>Back</source>
        <translation>Назад</translation>
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
        <source>takes a position off: remove 2</source>
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
        <source>card NUMBER</source>
        <translation>card НОМЕР</translation>
    </message>
    <message>
        <source>identifies the customer: card +7 916 123-45-67</source>
        <translation>находит покупателя: card +7 916 123-45-67</translation>
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
        <source>action CODE</source>
        <translation>action КОД</translation>
    </message>
    <message>
        <source>triggers an action: action 170</source>
        <translation>выполняет действие: action 170</translation>
    </message>
    <message>
        <source>edits the customer&apos;s data, as action 170 does</source>
        <translation>меняет данные покупателя, как действие 170</translation>
    </message>
    <message>
        <source>takes card and loyalty data off the receipt</source>
        <translation>убирает из чека карту и данные лояльности</translation>
    </message>
    <message>
        <source>closes the receipt</source>
        <translation>закрывает чек</translation>
    </message>
    <message>
        <source>abandons the receipt</source>
        <translation>аннулирует чек</translation>
    </message>
    <message>
        <source>report NUMBER</source>
        <translation>report НОМЕР</translation>
    </message>
    <message>
        <source>reports a committed receipt once more: report 17</source>
        <translation>сообщает о закрытом чеке ещё раз: report 17</translation>
    </message>
    <message>
        <source>shows how delivery stands</source>
        <translation>показывает состояние очереди</translation>
    </message>
    <message>
        <source>closes the shift</source>
        <translation>закрывает смену</translation>
    </message>
    <message>
        <source>shows what is loaded</source>
        <translation>показывает, что загружено</translation>
    </message>
    <message>
        <source>shows this list</source>
        <translation>показывает этот список</translation>
    </message>
    <message>
        <source>quit [now]</source>
        <translation>quit [now]</translation>
    </message>
    <message>
        <source>ends the till; an open receipt stays open</source>
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
        <source>a code and a name</source>
        <translation>код и название</translation>
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
        <source>a whole number, not &quot;%1&quot;</source>
        <translation>целое число, а не «%1»</translation>
    </message>
    <message>
        <source>No receipt is open.</source>
        <translation>Открытого чека нет.</translation>
    </message>
    <message>
        <source>Abandon receipt %1, total %2?</source>
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
        <source>Only in memory: receipt %1.</source>
        <translation>Только в памяти: чек %1.</translation>
    </message>
    <message>
        <source>&quot;quit&quot; or &quot;quit now&quot;</source>
        <translation>«quit» или «quit now»</translation>
    </message>
    <message>
        <source>The till goes on. Make room on the disk and quit again; &quot;quit now&quot; ends it all the same.</source>
        <translation>Касса работает дальше. Освободите место на диске и повторите quit; «quit now» завершит работу всё равно.</translation>
    </message>
</context>
<context>
    <name>till::StateLine</name>
    <message>
        <source>Orders waiting: none</source>
        <translation>Заказов в очереди нет</translation>
    </message>
    <message>
        <source>Orders waiting: %1, since %2</source>
        <translation>Заказов в очереди: %1, с %2</translation>
    </message>
    <message>
        <source>Orders refused: %1</source>
        <translation>Отклонено заказов: %1</translation>
    </message>
    <message>
        <source>Receipts not on the disk: %1</source>
        <translation>Чеков не на диске: %1</translation>
    </message>
    <message>
        <source>Orders waiting: %1</source>
        <translation>Заказов в очереди: %1</translation>
    </message>
    <message>
        <source>Orders: the disk does not answer</source>
        <translation>Заказы: диск не отвечает</translation>
    </message>
    <message>
        <source>Loyalty: not asked yet</source>
        <translation>Лояльность: ещё не спрашивали</translation>
    </message>
    <message>
        <source>Loyalty: answers</source>
        <translation>Лояльность: отвечает</translation>
    </message>
    <message>
        <source>Loyalty: no answer since %1</source>
        <translation>Лояльность: нет ответа с %1</translation>
    </message>
</context>
<context>
    <name>till::TextEditor</name>
    <message>
        <source>That does not fit in here</source>
        <translation>Сюда это не помещается</translation>
    </message>
    <message>
        <source>To be filled in to the end: %1</source>
        <translation>Заполните до конца: %1</translation>
    </message>
    <message>
        <source>Not of the form that is expected here</source>
        <translation>Здесь ожидается другая запись</translation>
    </message>
</context>
<context>
    <name>till::WindowPresenter</name>
    <message>
        <source>OK</source>
        <translation>ОК</translation>
    </message>
</context>
</TS>
