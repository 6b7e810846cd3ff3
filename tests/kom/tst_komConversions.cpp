#include "kom/kom_qt.h"
#include "kom/koqstring.h"
#include "kom/koqtextstream.h"
#include "platform/kom/komException.h"
#include "platform/kom/komList.h"
#include "platform/kom/komPerlStyleHash.h"

#include <QTextCodec>
#include <QtTest>

namespace
{

template <class T> QString written(const T& value)
{
    QString text;
    {
        QTextStream out(&text);
        out << value;
    }
    return text;
}

} // namespace

class tst_komConversions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void utf8RoundTrip_data();
    void utf8RoundTrip();
    void localRoundTrip_data();
    void localRoundTrip();
    void zeroCharacterEndsText();
    void lists_data();
    void lists();
    void mapHashRoundTrip_data();
    void mapHashRoundTrip();
    void writers_data();
    void writers();
};

void tst_komConversions::utf8RoundTrip_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("ascii") << QStringLiteral("plain text 123");
    QTest::newRow("latin-1") << QString::fromUtf8("Grüße, café");
    QTest::newRow("cjk") << QString::fromUtf8("日本語のテキスト");
    QTest::newRow("outside the BMP") << QString::fromUtf8("smile \xF0\x9F\x98\x80 end");
    QTest::newRow("controls") << QStringLiteral("tab\tcr\rlf\n\x7f");
}

void tst_komConversions::utf8RoundTrip()
{
    QFETCH(QString, text);
    const komString converted = ko::komStrUtf8(text);
    QCOMPARE(QByteArray(converted.text()), text.toUtf8());
    QCOMPARE(ko::qStrUtf8(converted), text);
}

void tst_komConversions::localRoundTrip_data()
{
    utf8RoundTrip_data();
}

void tst_komConversions::localRoundTrip()
{
    QFETCH(QString, text);
    if (!QTextCodec::codecForLocale()->canEncode(text))
        QSKIP("not representable in the local 8-bit encoding");
    const komString converted = ko::komStr(text);
    QCOMPARE(QByteArray(converted.text()), text.toLocal8Bit());
    QCOMPARE(ko::qStr(converted), text);
}

void tst_komConversions::zeroCharacterEndsText()
{
    const QString text = QString::fromLatin1("ab\0cd", 5);
    QCOMPARE(QByteArray(ko::komStr(text).text()), QByteArray("ab"));
    QCOMPARE(QByteArray(ko::komStrUtf8(text).text()), QByteArray("ab"));
}

void tst_komConversions::lists_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::newRow("empty") << QStringList();
    QTest::newRow("one") << QStringList { QStringLiteral("a") };
    QTest::newRow("order and duplicates kept")
        << QStringList { QStringLiteral("z"), QStringLiteral("a"), QStringLiteral("z"), QString() };
}

void tst_komConversions::lists()
{
    QFETCH(QStringList, list);
    const komStringList converted = ko::komStrList(list);
    QCOMPARE(converted.size(), list.size());
    for (int i = 0; i < list.size(); ++i)
        QCOMPARE(QByteArray(converted[i].text()), list.at(i).toLocal8Bit());
    QCOMPARE(ko::qStrList(converted), list);
}

void tst_komConversions::mapHashRoundTrip_data()
{
    QTest::addColumn<QStringList>("keysAndValues");
    QTest::newRow("empty") << QStringList();
    QTest::newRow("several") << QStringList { QStringLiteral("width"), QStringLiteral("640"),
        QStringLiteral("codec"), QStringLiteral("h264"), QStringLiteral("empty"), QString() };
}

void tst_komConversions::mapHashRoundTrip()
{
    QFETCH(QStringList, keysAndValues);
    QMap<QString, QString> map;
    for (int i = 0; i + 1 < keysAndValues.size(); i += 2)
        map.insert(keysAndValues.at(i), keysAndValues.at(i + 1));

    const komPerlStyleHash hash = ko::komPSHash(map);
    QCOMPARE(hash.size(), map.size());
    // Stored in the map's key order, so the hash walks its pairs in that order.
    komPerlStyleHash::Iterator it = hash.iterator();
    for (auto entry = map.constBegin(); entry != map.constEnd(); ++entry) {
        const komPerlStyleHash::KeyValuePair* pair = it.nextItem();
        QVERIFY(pair);
        QCOMPARE(QByteArray(pair->key().text()), entry.key().toLocal8Bit());
        QCOMPARE(QByteArray(pair->value().text()), entry.value().toLocal8Bit());
    }
    QVERIFY(!it.nextItem());
    QCOMPARE(ko::qMap(hash), map);
}

void tst_komConversions::writers_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << QStringList() << QString();
    QTest::newRow("one") << QStringList { QStringLiteral("a") } << QStringLiteral("a");
    QTest::newRow("three") << QStringList { QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c") }
                           << QStringLiteral("a,b,c");
    QTest::newRow("empty items") << QStringList { QString(), QString() } << QStringLiteral(",");
}

void tst_komConversions::writers()
{
    QFETCH(QStringList, list);
    QFETCH(QString, expected);
    QCOMPARE(written(list), expected);
    const komStringList komList = ko::komStrList(list);
    QCOMPARE(written(komList), expected);
    QCOMPARE(written(komException(komList)), expected);
    if (!list.isEmpty())
        QCOMPARE(written(komList[0]), list.first());
}

QTEST_GUILESS_MAIN(tst_komConversions)
#include "tst_komConversions.moc"
