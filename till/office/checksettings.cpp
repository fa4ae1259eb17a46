#include "till/office/finding.h"

#include "till/core/inputmask.h"
#include "till/core/settingtable.h"
#include "till/office/answer.h"

#include <host/config.h>

#include <QFile>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace till {

namespace {

using enum Finding::Level;

void tell(Findings &findings, Finding::Level level, const QString &key, const QString &text)
{
    findings.add(level, "settings.values", u"%1: %2"_s.arg(key, text), key);
}

/// Whether a key was meant as the known one: it lacks the prefix, has other capitals, or differs in
/// one place by a few letters.
bool isMeant(const QString &key, const QString &known)
{
    constexpr qsizetype few = 2;
    const auto left = key.toLower();
    const auto right = known.toLower();
    const auto front = std::ranges::mismatch(left, right).in1 - left.begin();
    const auto back = std::mismatch(left.rbegin(), left.rend(), right.rbegin(), right.rend());
    const auto same = front + (back.first - left.rbegin());
    return left == right.section(u':', 1) || same + few >= std::max(left.size(), right.size());
}

/// Warns of an unknown key that was meant as a known one or begins like ours. Does not tell its
/// value, which may be the secret key.
void checkUnknown(const QString &key, Findings &findings)
{
    const auto table = settingTable();
    const auto meant = std::ranges::find_if(
        table, [&key](const Setting &setting) { return isMeant(key, setting.key); });
    const auto isOurs = std::ranges::any_of(table, [&key](const Setting &setting) {
        return key.startsWith(setting.key.first(setting.key.indexOf(u':') + 1));
    });
    if (meant != table.end())
        tell(findings, Warning, key, Office::tr("unknown key, did you mean %1?").arg(meant->key));
    else if (isOurs)
        tell(findings, Warning, key, Office::tr("unknown key"));
}

void checkProblem(const SettingProblem &problem, Findings &findings)
{
    using Type = Setting::Type;
    auto expected = problem.setting->values();
    if (problem.setting->type == Type::File)
        expected = Office::tr("the whole path of a file that can be read");
    else if (problem.setting->type == Type::Place)
        expected = Office::tr("the whole path, because \"~\" is not expanded");
    tell(findings, Failed, problem.setting->key,
         Office::tr("%1: expected %2").arg(problem.value, expected));
}

/// Checks whether a setting is set, empty or quoted, whatever its type.
void checkPresence(const Setting &setting, Findings &findings)
{
    using Need = Setting::Need;
    const auto &config = *Singleton<Config>::instance();
    const auto value = config.getText(setting.key);
    const QLatin1StringView usual(setting.usual);
    if (value.isEmpty() && setting.need == Need::Required)
        tell(findings, Failed, setting.key,
             Office::tr("not set; the loyalty system does not work without it"));
    else if (value.isEmpty() && setting.need == Need::Own)
        tell(findings, Warning, setting.key,
             Office::tr("not set, so it is %1; two such tills give two orders the same number")
                 .arg(usual));
    else if (value.isEmpty() && config.keys().contains(setting.key) && !usual.isEmpty())
        tell(findings, Warning, setting.key,
             Office::tr("empty, which means the default %1").arg(usual));
    else if (value.size() > 1 && value.front() == value.back() && u"\"'"_s.contains(value.front()))
        tell(findings, Warning, setting.key,
             Office::tr("the quotation marks are part of the value, expected none"));
}

void checkUrl(Findings &findings)
{
    const auto key = "LmMindbox:url"_L1;
    const QUrl url(settingText(key));
    if (findings.hasFailed(key))
        return;
    if (const auto path = u"/v3/operations/sync"_s; url.path() != path)
        tell(findings, Warning, key, Office::tr("expected the path %1").arg(path));
    if (url.scheme() == "http"_L1 && !isLoopback(url.host()))
        findings.add(
            Warning, "settings.values",
            Office::tr("LmMindbox:url: the secret key is sent unencrypted, expected https"), {},
            Office::tr("Begin LmMindbox:url with https."));
}

void checkRetry(Findings &findings)
{
    const auto first = "Http:retryFirst"_L1;
    const auto longest = "Http:retryMax"_L1;
    if (!findings.hasFailed(first) && !findings.hasFailed(longest) &&
        settingNumber(longest) < settingNumber(first))
        tell(findings, Failed, longest,
             Office::tr("%1: expected at least %2, which is %3")
                 .arg(settingNumber(longest))
                 .arg(first)
                 .arg(settingNumber(first)));
}

/// The mask must have room for a whole phone number, with or without the country's code.
void checkPhoneMask(Findings &findings)
{
    constexpr int leastDigits = 10;
    constexpr int mostDigits = 15;
    const auto key = "Till:phoneMask"_L1;
    const InputMask mask(settingText(key));
    for (auto count = 1; count <= mostDigits; ++count) {
        auto number = mask.apply(QString(count, u'9')).value_or(QString());
        if (number.remove(QRegularExpression(uR"(\D)"_s)).size() >= leastDigits)
            return;
    }
    tell(findings, Failed, key,
         Office::tr("%1: no phone number can be typed, expected room for %2 digits")
             .arg(settingText(key))
             .arg(leastDigits));
}

/// Finds only faults that leave the window without any goods; the window itself lists bad lines.
void checkGoods(Findings &findings)
{
    const auto key = "Till:goodsFile"_L1;
    QFile file(settingText(key));
    if (file.fileName().isEmpty() || findings.hasFailed(key) || !file.open(QIODevice::ReadOnly))
        return; // none, or told already
    const auto text = QString::fromUtf8(file.readAll());
    const auto head = text.section(u'\n', 0, 0).toLower();
    QString expected;
    if (text.contains(QChar::ReplacementCharacter) || text.contains(QChar::Null))
        expected = Office::tr("UTF-8");
    else if (head.size() == text.size())
        expected = Office::tr("goods");
    else if (!head.contains("code"_L1) || !head.contains("name"_L1) || !head.contains("price"_L1))
        expected = Office::tr("a first line with code, name and price");
    if (!expected.isEmpty())
        tell(findings, Failed, key, Office::tr("%1: expected %2").arg(file.fileName(), expected));
}

} // namespace

bool isLoopback(const QString &host)
{
    static const QRegularExpression names(uR"(^(127(\.\d{1,3}){3}|::1|(.*\.)?localhost)$)"_s);
    return names.match(host).hasMatch();
}

void checkSettings(Findings &findings)
{
    const auto before = findings.list.size();
    for (const auto &problem : findProblems())
        checkProblem(problem, findings);
    auto keys = Singleton<Config>::instance()->keys();
    keys.sort();
    for (const auto &key : std::as_const(keys)) {
        if (!findSetting(key))
            checkUnknown(key, findings);
    }
    for (const auto &setting : settingTable())
        checkPresence(setting, findings);
    checkUrl(findings);
    checkRetry(findings);
    checkPhoneMask(findings);
    checkGoods(findings);
    if (findings.list.size() == before)
        findings.ok("settings.values", Office::tr("all keys are known, all values valid"));
}

} // namespace till
