#include "cashier.h"

#include "till/core/catalogue.h"

#include <host/privatefile.h>

#include <QApplication>
#include <QJsonArray>
#include <QJsonDocument>
#include <QListWidget>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QPushButton>
#include <QTableView>

#include <algorithm>

using namespace Qt::StringLiterals;

Service::Service()
{
    start();
}

Service::~Service()
{
    stop();
}

Service &Service::instance()
{
    static Service service;
    return service;
}

void Service::start()
{
    const auto portFile = directory.filePath(u"port"_s);
    QFile::remove(portFile);
    process.start(QStringLiteral(SIMULATOR),
                  {u"--port"_s, QString::number(port), u"--port-file"_s, portFile, u"--state"_s,
                   directory.filePath(u"state.db"_s)});
    QFile file(portFile);
    ASSERT_TRUE(QTest::qWaitFor([&] { return file.exists() && file.size() > 0; }, 10'000));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    port = file.readAll().trimmed().toInt();
}

void Service::stop()
{
    process.kill();
    process.waitForFinished();
}

void Service::reset()
{
    send("DELETE", u"faults"_s, {});
    send("POST", u"reset"_s, {});
}

QString Service::code() const
{
    return dump().value("codes"_L1).toArray().first()["code"_L1].toString();
}

QJsonObject Service::send(const char *verb, const QString &path, const QJsonObject &body) const
{
    QNetworkAccessManager network;
    QNetworkRequest request(QUrl(url() + u"/simulator/"_s + path));
    request.setHeader(QNetworkRequest::ContentTypeHeader, u"application/json"_s);
    const auto json = QJsonDocument(body).toJson();
    auto *const reply =
        network.sendCustomRequest(request, verb, body.isEmpty() ? QByteArray() : json);
    EXPECT_TRUE(QTest::qWaitFor([&] { return reply->isFinished(); }, 10'000));
    EXPECT_EQ(reply->error(), QNetworkReply::NoError) << reply->errorString().toStdString();
    return QJsonDocument::fromJson(reply->readAll()).object();
}

WindowTest::WindowTest()
{
    service.reset();
    QFile goods(fileName("goods.csv"));
    EXPECT_TRUE(goods.open(QIODevice::WriteOnly));
    goods.write("code;name;price\n4600;Молоко 3,2%;89,90\n4601;Хлеб ржаной;45,50\n"
                "4602;Сыр «Костромской», весовой;310\n");
    QFile settings(fileName("till.conf"));
    EXPECT_TRUE(settings.open(QIODevice::WriteOnly) &&
                settings.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
    settings.write(u"LmMindbox:url=%1/v3/operations/sync\n"
                   "LmMindbox:endpoint=till-demo\n"
                   "LmMindbox:secretKey=demo-secret\n"
                   "Till:shopCode=12\nTill:cashCode=3\nHttp:retryFirst=100\n"
                   "Till:dataDir=%2/data\n"
                   "Till:goodsFile=%2/goods.csv\n"
                   "Till:scanGap=200\n"_s // a busy machine delivers keys late
                       .arg(service.url(), directory.path())
                       .toUtf8());
}

WindowTest::~WindowTest() = default;

void WindowTest::openWindow(const QString &chosen)
{
    closeWindow();
    const auto language = chosen.isEmpty() ? u"ru"_s : chosen;
    const auto settings =
        till::loadSettings({fileName("till.conf"), QStringLiteral(PLUGIN), {}, language, {}});
    ASSERT_TRUE(settings) << settings.error().text().toStdString();
    ASSERT_TRUE(till::installLanguage(language));
    ASSERT_TRUE(privatefile::createDirectory(settings->dataDirectory));
    window = std::make_unique<till::MainWindow>(*settings);
    const auto size = qEnvironmentVariable("WINDOW_SIZE", u"1024x768"_s).split(u'x');
    window->resize(size.at(0).toInt(), size.at(1).toInt());
    window->show();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    window->start();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !window->isBusy(); }, 10'000));
}

std::string WindowTest::text(const char *name) const
{
    if (const auto *const list = find<QListWidget>(name)) {
        QStringList lines;
        for (int row = 0; row < list->count(); ++row)
            lines.append(list->item(row)->text());
        return lines.join(u'\n').toStdString();
    }
    const auto *const label = find<QLabel>(name);
    return label ? label->text().toStdString() : std::string("there is no such label");
}

void WindowTest::expectText(const char *name, const char *words)
{
    const auto holds = [&] { return text(name).find(words) != std::string::npos; };
    EXPECT_TRUE(QTest::qWaitFor(holds, 10'000)) << name << ": " << text(name) << "\n     " << words;
}

void WindowTest::type(const char *keys, Qt::Key last, const char *shown)
{
    for (const auto character : QString::fromUtf8(keys)) {
        QKeyEvent event(QEvent::KeyPress, 0, Qt::NoModifier, QString(character));
        QApplication::sendEvent(QApplication::focusWidget(), &event);
    }
    if (last != Qt::Key_unknown)
        press(last, shown);
}

void WindowTest::press(Qt::Key key, const char *shown)
{
    QTest::keyClick(QApplication::focusWidget(), key);
    if (shown)
        await(shown);
}

void WindowTest::scan(const char *code, Qt::Key end, int gap)
{
    for (const auto character : QString::fromUtf8(code)) {
        strike(Qt::Key(character.toUpper().unicode()), character);
        if (gap > 0)
            QTest::qWait(gap);
    }
    strike(end, end == Qt::Key_Tab ? u"\t"_s : u"\r"_s);
}

void WindowTest::strike(Qt::Key key, const QString &text)
{
    QTest::sendKeyEvent(QTest::Click, window->windowHandle(), key, text, Qt::NoModifier);
}

void WindowTest::enter(const char *line)
{
    type(line, Qt::Key_Return);
    awaitRest();
}

void WindowTest::pressAndRest(Qt::Key key)
{
    press(key);
    awaitRest();
}

void WindowTest::click(const char *name)
{
    auto *const button = await<QAbstractButton>(name);
    ASSERT_TRUE(button && button->isEnabled()) << name;
    QTest::mouseClick(button, Qt::LeftButton);
}

void WindowTest::awaitRest()
{
    const auto rests = [&] { return !window->isBusy() && find("body")->isEnabled(); };
    EXPECT_TRUE(QTest::qWaitFor(rests, 10'000));
}

void WindowTest::expectNoText(const QRegularExpression &letters) const
{
    const auto check = [&](const QWidget *widget, const QString &text) {
        EXPECT_FALSE(widget->isVisible() && letters.match(text).hasMatch()) << text.toStdString();
    };
    for (const auto *const label : window->findChildren<QLabel *>())
        check(label, label->text());
    constexpr int finger = 44;
    for (const auto *const button : window->findChildren<QAbstractButton *>()) {
        check(button, button->text());
        EXPECT_TRUE(!button->isVisible() || std::min(button->width(), button->height()) >= finger)
            << button->objectName().toStdString();
    }
    for (const auto *const widget : window->findChildren<QWidget *>()) {
        check(widget, widget->accessibleName() + widget->accessibleDescription());
        const auto isNamed = !widget->accessibleName().isEmpty() ||
                             qobject_cast<const QAbstractButton *>(widget) != nullptr;
        EXPECT_TRUE(widget->focusPolicy() == Qt::NoFocus || !widget->isVisible() || isNamed)
            << widget->objectName().toStdString();
    }
}

std::string WindowTest::cell(int row, int column) const
{
    const auto *const model = find<QTableView>("positions")->model();
    return model->index(row, column).data().toString().toStdString();
}
