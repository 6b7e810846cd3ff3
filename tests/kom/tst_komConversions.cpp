// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
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

template <class T> QString written(const T &value)
{
    QString text;
    QTextStream out(&text);
    out << value;
    out.flush();
    return text;
}

} // namespace

class tst_komConversions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void strings_data();
    void strings();
    void lists_data();
    void lists();
    void mapHashRoundTrip_data();
    void mapHashRoundTrip();
};

void tst_komConversions::strings_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("latin-1") << QString::fromUtf8("Grüße, café");
    QTest::newRow("cjk") << QString::fromUtf8("日本語のテキスト");
    QTest::newRow("outside the BMP") << QString::fromUtf8("smile \xF0\x9F\x98\x80 end");
    QTest::newRow("controls") << QStringLiteral("tab\tcr\rlf\n\x7f");
    QTest::newRow("zero character ends the text") << QString::fromLatin1("ab\0cd", 5);
}

// UTF-8 round trip of any text without a zero character; the local 8-bit form where it can hold the
// text.
void tst_komConversions::strings()
{
    QFETCH(QString, text);
    const QString kept = text.left(text.indexOf(QChar(0)));
    const komString utf8 = ko::komStrUtf8(text);
    QCOMPARE(QByteArray(utf8.text()), kept.toUtf8());
    QCOMPARE(ko::qStrUtf8(utf8), kept);
    if (QTextCodec::codecForLocale()->canEncode(text)) {
        const komString local = ko::komStr(text);
        QCOMPARE(QByteArray(local.text()), kept.toLocal8Bit());
        QCOMPARE(ko::qStr(local), kept);
        QCOMPARE(written(local), kept);
    }
}

void tst_komConversions::lists_data()
{
    QTest::addColumn<QStringList>("list");
    QTest::addColumn<QString>("expected");
    QTest::newRow("empty") << QStringList() << QString();
    QTest::newRow("one") << QStringList { QStringLiteral("a") } << QStringLiteral("a");
    QTest::newRow("order and duplicates kept")
        << QStringList { QStringLiteral("z"), QStringLiteral("a"), QStringLiteral("z") }
        << QStringLiteral("z,a,z");
    QTest::newRow("empty items") << QStringList { QString(), QString() } << QStringLiteral(",");
}

// Conversions keep order and duplicates; the writers put "," only between items.
void tst_komConversions::lists()
{
    QFETCH(QStringList, list);
    QFETCH(QString, expected);
    const komStringList converted = ko::komStrList(list);
    QCOMPARE(converted.size(), list.size());
    for (int i = 0; i < list.size(); ++i)
        QCOMPARE(QByteArray(converted[i].text()), list.at(i).toLocal8Bit());
    QCOMPARE(ko::qStrList(converted), list);
    QCOMPARE(written(list), expected);
    QCOMPARE(written(converted), expected);
    QCOMPARE(written(komException(converted)), expected);
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
        const komPerlStyleHash::KeyValuePair *pair = it.nextItem();
        QVERIFY(pair);
        QCOMPARE(QByteArray(pair->key().text()), entry.key().toLocal8Bit());
        QCOMPARE(QByteArray(pair->value().text()), entry.value().toLocal8Bit());
    }
    QVERIFY(!it.nextItem());
    QCOMPARE(ko::qMap(hash), map);
}

QTEST_GUILESS_MAIN(tst_komConversions)
#include "tst_komConversions.moc"
