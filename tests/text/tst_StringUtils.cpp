// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "text/StringUtils.h"

#include <QDateTime>
#include <QPoint>
#include <QRect>
#include <QRegExp>
#include <QTimeZone>
#include <QTranslator>
#include <QtTest>

#include <memory>
#include <type_traits>

using ko::StringUtils;
using Set = QSet<QString>;
using L = QStringList;
using Codes = QVector<uint>;

// Under AddressSanitizer an allocation too large to serve fails as it does without it (operator new
// throws std::bad_alloc), so that the hostile lengths given to toVariant meet the same path.
extern "C" Q_DECL_EXPORT const char *__asan_default_options()
{
    return "allocator_may_return_null=1";
}

namespace
{

// A heap copy of exactly the bytes and their terminating zero: AddressSanitizer sees any read past
// it.
std::unique_ptr<char[]> exactCString(const QByteArray &bytes)
{
    std::unique_ptr<char[]> copy(new char[bytes.size() + 1]);
    memcpy(copy.get(), bytes.constData(), bytes.size() + 1);
    return copy;
}

L sorted(const Set &set)
{
    L list = set.values();
    list.sort();
    return list;
}

QFlags<Qt::AlignmentFlag> alignment(int bits)
{
    return QFlags<Qt::AlignmentFlag>(Qt::AlignmentFlag(bits));
}

// An enumeration known to Qt only by Q_DECLARE_METATYPE; every int is one of its values.
enum Plain : int { PlainValue = 1 };

// Serialised bytes written field by field, for values that Qt itself would never write.
template <class... Fields> QString base64Of(const Fields &...fields)
{
    QByteArray bytes;
    QDataStream s(&bytes, QIODevice::WriteOnly);
    (void)std::initializer_list<int> { ((void)(s << fields), 0)... };
    return QString::fromLatin1(bytes.toBase64());
}

// A variant list nested @p depth deep around the number 1, serialised; each list's type given by
// number, or @p byName as a user type named "QVariantList".
// Lists nested @p depth deep; named by a user-type marker when @p userType is not 0.
QString nestedLists(int depth, quint32 userType = 0)
{
    QByteArray bytes;
    QDataStream s(&bytes, QIODevice::WriteOnly);
    for (int i = 0; i < depth; ++i) {
        if (userType)
            s << userType << qint8(0) << QByteArray("QVariantList") << quint32(1);
        else
            s << quint32(QMetaType::QVariantList) << qint8(0) << quint32(1);
    }
    s << QVariant(1);
    return QString::fromLatin1(bytes.toBase64());
}

} // namespace

Q_DECLARE_METATYPE(Plain)

class tst_StringUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void ignoreCase_data();
    void ignoreCase();
    void trim_data();
    void trim();
    void trimPattern_data();
    void trimPattern();
    void truncate_data();
    void truncate();
    void split_data();
    void split();
    void splitWords();
    void splitFirst_data();
    void splitFirst();
    void splitKeyValue_data();
    void splitKeyValue();
    void comments_data();
    void comments();
    void concat_data();
    void concat();
    void sets_data();
    void sets();
    void hex_data();
    void hex();
    void base64_data();
    void base64();
    void toBool_data();
    void toBool();
    void decodeUtf8_data();
    void decodeUtf8();
    void equalsUtf8_data();
    void equalsUtf8();
    void translated();
    void listEditing();
    void variants();
    void variantText_data();
    void variantText();
    void textToVariantRules();
    void hostileVariants_data();
    void hostileVariants();

private:
    QTranslator mTranslator;
};

void tst_StringUtils::initTestCase()
{
    QVERIFY(mTranslator.load(QStringLiteral(TST_STRINGUTILS_QM)));
    QVERIFY(QCoreApplication::installTranslator(&mTranslator));
}

void tst_StringUtils::ignoreCase_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("part");
    QTest::addColumn<bool>("equals");
    QTest::addColumn<bool>("startsWith");
    QTest::addColumn<bool>("endsWith");
    QTest::addColumn<int>("indexOf");
    const auto row = [](const char *name, const char *text, const char *part, bool equals,
                         bool startsWith, bool endsWith, int indexOf) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(part) << equals
                            << startsWith << endsWith << indexOf;
    };
    row("umlaut prefix", "ÄRGER", "är", false, true, false, 0);
    row("suffix", "xCAMERA", "era", false, false, true, 4);
    row("equal", "Camera", "cAMERA", true, true, true, 0);
    row("absent", "abc", "x", false, false, false, -1);
}

void tst_StringUtils::ignoreCase()
{
    QFETCH(QString, text);
    QFETCH(QString, part);
    QFETCH(int, indexOf);

    QTEST(StringUtils::equalsIgnoreCase(text, part), "equals");
    QTEST(StringUtils::startsWithIgnoreCase(text, part), "startsWith");
    QTEST(StringUtils::endsWithIgnoreCase(text, part), "endsWith");
    QCOMPARE(StringUtils::indexOfIgnoreCase(text, part), indexOf);
    QCOMPARE(StringUtils::containsIgnoreCase(text, part), indexOf != -1);
}

void tst_StringUtils::trim_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("chars");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    QTest::addColumn<QString>("both");
    const auto row = [](const char *name, const QString &text, const QString &chars,
                         const QString &left, const QString &right, const QString &both) {
        QTest::newRow(name) << text << chars << left << right << both;
    };
    row("set of chars", "abbaXbab", "ab", "Xbab", "abbaX", "X");
    row("only chars", "xxxx", "x", "", "", "");
    row("one side", "Xaxx", "x", "Xaxx", "Xa", "Xa");
    row("nothing to trim", "abc", "x", "abc", "abc", "abc");
}

// Alignment bits other than left and right are ignored.
void tst_StringUtils::trim()
{
    QFETCH(QString, text);
    QFETCH(QString, chars);
    QFETCH(QString, left);
    QFETCH(QString, right);

    QCOMPARE(StringUtils::trim(text, chars, Qt::AlignLeft | Qt::AlignTop), left);
    QCOMPARE(StringUtils::trimLeft(text, chars), left);
    QCOMPARE(StringUtils::trim(text, chars, Qt::AlignRight | Qt::AlignHCenter), right);
    QCOMPARE(StringUtils::trimRight(text, chars), right);
    QTEST(StringUtils::trim(text, chars), "both");
    QCOMPARE(StringUtils::trim(text, chars, Qt::AlignHCenter | Qt::AlignTop), text);
}

void tst_StringUtils::trimPattern_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("pattern");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    const auto row
        = [](const char *name, const QString &text, const QString &pattern, const QString &left,
              const QString &right) { QTest::newRow(name) << text << pattern << left << right; };
    // The backward search stops at the last position where the pattern matches at all.
    row("blank runs", "  ab  ", "\\s+", "ab  ", "  ab ");
    row("repeat", "ababxabab", "(ab)+", "xabab", "ababxab");
    row("not at the ends", "a  b", "\\s+", "a  b", "a  b");
    row("suffix", "name.txt", "\\.txt", "name.txt", "name");
}

void tst_StringUtils::trimPattern()
{
    QFETCH(QString, text);
    QFETCH(QString, pattern);
    QTEST(StringUtils::trimLeft(text, QRegExp(pattern)), "left");
    QTEST(StringUtils::trimRight(text, QRegExp(pattern)), "right");
}

void tst_StringUtils::truncate_data()
{
    QTest::addColumn<int>("maxLength");
    QTest::addColumn<int>("alignment");
    QTest::addColumn<QString>("truncated");
    const auto row = [](const char *name, int maxLength, int alignment, const QString &truncated) {
        QTest::newRow(name) << maxLength << alignment << truncated;
    };
    row("left", 4, Qt::AlignLeft, "abcd...");
    row("no alignment", 4, 0, "abcd...");
    row("right", 4, Qt::AlignRight, "...ghij");
    row("centre", 4, Qt::AlignHCenter, "...defg...");
    row("centre, odd", 3, Qt::AlignHCenter, "...def...");
    row("centre, absolute", 4, Qt::AlignHCenter | Qt::AlignAbsolute, "abcd...");
    row("justify", 4, Qt::AlignJustify, "ab...ij");
    row("justify, odd", 5, Qt::AlignJustify, "abc...ij");
    row("justify, absolute", 4, Qt::AlignJustify | Qt::AlignAbsolute, "abcd...");
    row("right and centre", 4, Qt::AlignRight | Qt::AlignHCenter, "abcd...");
    row("negative", -3, Qt::AlignRight, "...");
    row("exact length", 10, Qt::AlignRight, "abcdefghij");
}

void tst_StringUtils::truncate()
{
    QFETCH(int, maxLength);
    QFETCH(int, alignment);
    QTEST(StringUtils::truncate(QStringLiteral("abcdefghij"), maxLength, ::alignment(alignment)),
        "truncated");
}

void tst_StringUtils::split_data()
{
    QTest::addColumn<L>("texts");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<bool>("skipEmpty");
    QTest::addColumn<L>("parts");
    const auto row
        = [](const char *name, const L &texts, const QString &separator, bool skipEmpty,
              const L &parts) { QTest::newRow(name) << texts << separator << skipEmpty << parts; };
    row("two texts", { "a,b", "c,,d" }, ",", false, { "a", "b", "c", "", "d" });
    row("two texts, skip empty", { "a,b", ",c,,d" }, ",", true, { "a", "b", "c", "d" });
    row("one text, repeated part", { "x;y;x" }, ";", false, { "x", "y", "x" });
    row("separator as plain text", { "a.b" }, ".", false, { "a", "b" });
}

// The plain and the pattern separators agree; the sets hold the same parts once.
void tst_StringUtils::split()
{
    QFETCH(L, texts);
    QFETCH(QString, separator);
    QFETCH(bool, skipEmpty);
    QFETCH(L, parts);

    const QRegExp pattern(QRegExp::escape(separator));
    const auto how = skipEmpty ? ko::SkipEmptyParts : ko::KeepEmptyParts;
    QCOMPARE(StringUtils::splitStringList(texts, separator, how), parts);
    QCOMPARE(StringUtils::splitStringList(texts, pattern, how), parts);
    const Set set(parts.cbegin(), parts.cend());
    QCOMPARE(StringUtils::splitStringSet(texts, pattern, how), set);
    if (texts.size() == 1) {
        QCOMPARE(StringUtils::splitStringList(texts.first(), pattern, how), parts);
        QCOMPARE(StringUtils::splitStringSet(texts.first(), pattern, how), set);
    }
}

void tst_StringUtils::splitWords()
{
    QCOMPARE(StringUtils::splitStringList(QStringLiteral("Hello, world!  Wie geht's?"),
                 StringUtils::splitWords, ko::SkipEmptyParts),
        (L { "Hello", "world", "Wie", "geht", "s" }));
}

void tst_StringUtils::splitFirst_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("head");
    QTest::addColumn<QString>("tail");
    const auto row = [](const char *name, const QString &text, const QString &head,
                         const QString &tail) { QTest::newRow(name) << text << head << tail; };
    row("first of two", "a::b::c", "a", "b::c");
    row("none", "abc", "abc", "");
    row("at the start", "::x", "", "x");
}

// Without a separator the tail is empty but not null.
void tst_StringUtils::splitFirst()
{
    QFETCH(QString, text);
    QString head, tail;
    StringUtils::splitFirst(text, QStringLiteral("::"), head, tail);
    QTEST(head, "head");
    QTEST(tail, "tail");
    QVERIFY(!tail.isNull());
}

void tst_StringUtils::splitKeyValue_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QChar>("separator");
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    const auto row = [](const char *name, const QString &text, char separator, const QString &key,
                         const QString &value) {
        QTest::newRow(name) << text << QChar(separator) << key << value;
    };
    row("first separator", "k=v=w", '=', "k", "v=w");
    row("empty value", "k=", '=', "k", "");
    row("no separator", "k", '=', "k", QString());
    row("other separator", "a=b:c", ':', "a=b", "c");
}

// A text without separator gives a null value, one with nothing after it an empty one.
void tst_StringUtils::splitKeyValue()
{
    QFETCH(QString, text);
    QFETCH(QChar, separator);
    QFETCH(QString, value);
    QString key, result;
    StringUtils::splitKeyValue(text, key, result, separator);
    QTEST(key, "key");
    QCOMPARE(result, value);
    QCOMPARE(result.isNull(), value.isNull());
}

void tst_StringUtils::comments_data()
{
    QTest::addColumn<QString>("script");
    QTest::addColumn<QString>("marker");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QString>("stripped");
    QTest::addColumn<L>("parts");
    const auto row = [](const char *name, const QString &script, const QString &marker,
                         const QString &separator, const QString &stripped, const L &parts) {
        QTest::newRow(name) << script << marker << separator << stripped << parts;
    };
    row("lines", "a\n# c\n  b # x\n\n   \n#", "#", "\n", "a\nb", { "a", "b" });
    row("statements", "s1;s2;;\ns3 // ;x", "//", ";", "s1;s2;;\ns3", { "s1", "s2", "\ns3" });
    row("statement across lines", "a\n#b\n\nc;d", "#", "\n", "a\nc;d", { "a", "c;d" });
    // Every line begins with the empty marker.
    row("empty marker", "a\nb", "", "\n", QString(), {});
}

void tst_StringUtils::comments()
{
    QFETCH(QString, script);
    QFETCH(QString, marker);
    QFETCH(QString, separator);
    QFETCH(QString, stripped);

    const QString result = StringUtils::stripCommentLines(script, marker);
    QCOMPARE(result, stripped);
    QCOMPARE(result.isNull(), stripped.isNull());
    QTEST(StringUtils::splitScript(script, marker, separator), "parts");
}

void tst_StringUtils::concat_data()
{
    QTest::addColumn<L>("parts");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QString>("joined");
    const auto row
        = [](const char *name, const L &parts, const QString &separator, const QString &joined) {
              QTest::newRow(name) << parts << separator << joined;
          };
    row("empty parts skipped", { "", "a", "", "b" }, ",", "a,b");
    row("only empty parts", { "", "" }, ",", QString());
    row("ten parts", { "1", "2", "3", "4", "5", "6", "7", "8", "9", "10" }, "-",
        "1-2-3-4-5-6-7-8-9-10");
}

// The list form and the ten-part form agree; nothing joined is a null string.
void tst_StringUtils::concat()
{
    QFETCH(L, parts);
    QFETCH(QString, separator);
    QFETCH(QString, joined);

    const QString fromList = StringUtils::concat(parts, separator);
    QCOMPARE(fromList, joined);
    QCOMPARE(fromList.isNull(), joined.isNull());
    const auto part = [&](int i) { return parts.value(i); };
    QCOMPARE(StringUtils::concat(part(0), separator, part(1), part(2), part(3), part(4), part(5),
                 part(6), part(7), part(8), part(9)),
        joined);
}

void tst_StringUtils::sets_data()
{
    QTest::addColumn<L>("a");
    QTest::addColumn<L>("b");
    QTest::addColumn<bool>("intersects");
    QTest::addColumn<bool>("onBeginning");
    QTest::addColumn<L>("intersection");
    const auto row = [](const char *name, const L &a, const L &b, bool intersects, bool onBeginning,
                         const L &intersection) {
        QTest::newRow(name) << a << b << intersects << onBeginning << intersection;
    };
    row("prefix ignoring case", { "Camera1" }, { "cam" }, false, true, {});
    row("shared", { "a", "b", "c" }, { "c", "b", "x" }, true, true, { "b", "c" });
    row("empty prefix", { "x" }, { "" }, false, true, {});
    row("prefix longer", { "ca" }, { "cam" }, false, false, {});
    row("empty first set", {}, { "" }, false, false, {});
}

void tst_StringUtils::sets()
{
    QFETCH(L, a);
    QFETCH(L, b);
    const Set p(a.cbegin(), a.cend()), q(b.cbegin(), b.cend());
    QTEST(StringUtils::intersectsWith(p, q), "intersects");
    QTEST(StringUtils::intersectsOnBeginning(p, q), "onBeginning");
    QTEST(sorted(StringUtils::intersect(p, q)), "intersection");
}

void tst_StringUtils::hex_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("upperCase");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QString>("hex");
    const auto row = [](const char *name, const char *bytes, bool upperCase,
                         const QString &separator, const QString &hex) {
        QTest::newRow(name) << QByteArray::fromHex(bytes) << upperCase << separator << hex;
    };
    row("char, upper", "0f", true, "", "0F");
    row("char, lower", "a0", false, ":", "a0");
    row("short", "beef", true, " ", "BE EF");
    row("int", "1a2b3c4d", true, ":", "1A:2B:3C:4D");
    row("int, lower, no separator", "1a2b3c4d", false, "", "1a2b3c4d");
    row("long long", "01020304050607ff", true, ", ", "01, 02, 03, 04, 05, 06, 07, FF");
}

// The byte array and the fixed-width value of the same bytes (most significant first) agree.
void tst_StringUtils::hex()
{
    QFETCH(QByteArray, bytes);
    QFETCH(bool, upperCase);
    QFETCH(QString, separator);
    QFETCH(QString, hex);

    QCOMPARE(StringUtils::toHex(bytes, upperCase, separator), hex);
    const qulonglong value = bytes.toHex().toULongLong(nullptr, 16);
    switch (bytes.size()) {
    case 1: {
        QCOMPARE(StringUtils::toHex(uchar(value), upperCase), hex);
        QString out = QStringLiteral(">");
        StringUtils::appendHex(out, uchar(value), upperCase);
        QCOMPARE(out, QLatin1Char('>') + hex);
        break;
    }
    case 2:
        QCOMPARE(StringUtils::toHex(ushort(value), upperCase, separator), hex);
        break;
    case 4:
        QCOMPARE(StringUtils::toHex(uint(value), upperCase, separator), hex);
        break;
    default:
        QCOMPARE(StringUtils::toHex(value, upperCase, separator), hex);
    }
    // No bytes give no text, whatever the separator.
    QCOMPARE(StringUtils::toHex(QByteArray(), upperCase, separator), QString());
}

void tst_StringUtils::base64_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("encoded");
    QTest::addColumn<QString>("decoded");
    const auto row
        = [](const char *name, const char *bytes, const QString &encoded, const QString &decoded) {
              QTest::newRow(name) << QByteArray::fromHex(bytes) << encoded << decoded;
          };
    row("latin-1", "e974e9", "6XTp", QString::fromUtf8("été"));
    row("zero cuts the decoded text", "6162006364", "YWIAY2Q=", "ab");
    row("empty", "", "", "");
}

// The three ways to give the bytes agree; decoding skips characters outside Base64.
void tst_StringUtils::base64()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, encoded);
    QFETCH(QString, decoded);

    QCOMPARE(StringUtils::encodeBase64(bytes), encoded);
    QCOMPARE(StringUtils::encodeBase64(bytes.constData(), bytes.size()), encoded);
    QCOMPARE(
        StringUtils::encodeBase64(QString::fromLatin1(bytes.constData(), bytes.size())), encoded);
    QCOMPARE(StringUtils::decodeBase64(encoded), decoded);
    QCOMPARE(StringUtils::decodeBase64(QLatin1Char('*') + encoded + QLatin1Char('*')), decoded);
}

void tst_StringUtils::toBool_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("value");
    const auto row
        = [](const char *text, bool value) { QTest::newRow(text) << QString(text) << value; };
    row("0", false);
    row("false", false);
    row("", false);
    row("no", true);
    row("1", true);
}

// Text always converts.
void tst_StringUtils::toBool()
{
    QFETCH(QString, text);
    bool ok = false;
    QTEST(StringUtils::toBool(text, &ok), "value");
    QVERIFY(ok);
    QTEST(StringUtils::toBool(text), "value");
}

void tst_StringUtils::decodeUtf8_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<uint>("code");
    QTest::addColumn<int>("advance");
    QTest::addColumn<Codes>("walk");

    const auto row
        = [](const char *name, const char *hex, uint code, int advance, const Codes &walk) {
              QTest::newRow(name) << QByteArray::fromHex(hex) << code << advance << walk;
          };
    row("ascii", "78", 0x78, 1, { 0x78 });
    row("two bytes", "c3a978", 0xe9, 2, { 0xe9, 0x78 });
    row("stray continuation", "a9", 0x29, 1, { 0x29 });
    // Longer sequences use the byte after the lead in every slot and move by two.
    row("three bytes", "e282ac", 0x2082, 2, { 0x2082, 0x2c });
    row("four bytes", "f09f9880", 0x1f7df, 2, { 0x1f7df, 0x18, 0 });
    row("six-byte lead", "fdbf", 0x7fffffff, 2, { 0x7fffffff });
    row("FE", "fe41c37a", 0xc30c30c3, 3, { 0xc30c30c3, 0x7a });
    row("FF", "ffff01", 0x41041041, 3, { 0x41041041 });
    // A zero lead is passed like any other byte; a zero continuation is not.
    row("zero lead", "006100", 0, 1, { 0, 0x61, 0 });
    row("zero continuation", "c30041", 0xc0, 1, { 0xc0, 0, 0x41 });
    row("lead at end", "c3", 0xc0, 1, { 0xc0 });
    row("FE at end", "fe", 0, 1, { 0 });
    row("FE before end", "fe41", 0, 2, { 0 });
}

// One call, then a walk over the whole buffer, which must end at its end.
void tst_StringUtils::decodeUtf8()
{
    QFETCH(QByteArray, bytes);

    const auto text = exactCString(bytes);
    const char *p = text.get();
    QTEST(StringUtils::decodeUtf8(p), "code");
    QTEST(int(p - text.get()), "advance");

    Codes walk;
    const char *const end = text.get() + bytes.size();
    for (p = text.get(); p < end && walk.size() <= bytes.size();)
        walk << StringUtils::decodeUtf8(p);
    QTEST(walk, "walk");
    QCOMPARE(p, end);
}

void tst_StringUtils::equalsUtf8_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QByteArray>("utf8");
    QTest::addColumn<bool>("equal");

    const auto row = [](const char *name, const QString &text, const char *hex, bool equal) {
        QTest::newRow(name) << text << QByteArray::fromHex(hex) << equal;
    };
    row("prefix", "abc", "616263646566", true);
    row("empty text", "", "78", true);
    row("empty utf8", "a", "", false);
    row("utf8 shorter", "abcd", "616263", false);
    row("two bytes", QString::fromUtf8("é"), "c3a9", true);
    row("differs", "abd", "616263", false);
    row("three bytes as written", QString::fromUtf8("€"), "e282ac", false);
    row("three bytes as decoded", QString(QChar(0x2082)) + ",", "e282ac", true);
    // Zero code points keep the walk going: the terminator must stop it without a read past the
    // end.
    row("FE, end", QString(2, QChar(0)), "fe", false);
    row("FE, one to end", QString(2, QChar(0)), "fe41", false);
    row("C3, end", QString(QChar(0xC0)) + "x", "c3", false);
}

void tst_StringUtils::equalsUtf8()
{
    QFETCH(QString, text);
    QFETCH(QByteArray, utf8);
    QTEST(StringUtils::equalsUtf8(text, exactCString(utf8).get()), "equal");
}

void tst_StringUtils::translated()
{
    const QString colours = QStringLiteral("Colours");
    QVERIFY(StringUtils::joinTranslated(colours, Set()).isNull());
    QCOMPARE(StringUtils::joinTranslated(colours, Set { QString::fromUtf8("Weiß") }),
        QStringLiteral("White"));
    QCOMPARE(
        StringUtils::joinTranslated(QStringLiteral("Other"), Set { "Red" }), QStringLiteral("Red"));
    // Outside Latin-1 becomes '?', Latin-1 itself survives the trip.
    QCOMPARE(StringUtils::joinTranslated(colours, Set { QString::fromUtf8("łódź Ü") }),
        QString::fromUtf8("?ód? Ü"));
    // An empty text adds nothing when it comes first, a separator when it comes later. Set order is
    // up to the hash: pairs in sets of many sizes meet both orders.
    int emptyFirst = 0;
    for (int i = 0; i < 64; ++i) {
        const QString text = QStringLiteral("text %1").arg(i);
        Set pair;
        pair.reserve(8 << (i % 8));
        pair << "" << text;
        const bool first = pair.cbegin()->isEmpty();
        emptyFirst += first;
        QCOMPARE(StringUtils::joinTranslated(colours, pair, QStringLiteral(",")),
            text + (first ? "" : ","));
    }
    QVERIFY(emptyFirst > 0);
    QVERIFY(emptyFirst < 64);

    Set set { "Rot" };
    StringUtils::appendAll(set, L { "Red", "Blue", "Red" }, colours);
    StringUtils::appendAll(set, Set { "Green", QString::fromUtf8("ł") }, colours);
    QCOMPARE(set, (Set { "Rot", "Blue", QString::fromUtf8("Grün"), "?" }));
    StringUtils::appendAll(set, L { "Red", QString::fromUtf8("ł") });
    QCOMPARE(set,
        (Set { "Rot", "Blue", QString::fromUtf8("Grün"), "?", "Red", QString::fromUtf8("ł") }));
}

void tst_StringUtils::listEditing()
{
    L list { "a1", "b", "a2", "a3" };
    QCOMPARE(StringUtils::removeAll(list, QRegExp(QStringLiteral("a"))), 0); // exact matches only
    QCOMPARE(StringUtils::removeAll(list, QRegExp(QStringLiteral("a\\d"))), 3);
    QCOMPARE(list, L { "b" });
    list += L { "c", "d" };
    StringUtils::swap(list, 2, 0);
    QCOMPARE(list, (L { "d", "c", "b" }));
    StringUtils::swap(list, 1, 3);
    StringUtils::swap(list, -1, 0);
    QCOMPARE(list, (L { "d", "c", "b" }));

    static_assert(std::is_same<decltype(list -= QString()), L>::value, "returns a copy");
    static_assert(std::is_same<decltype(list *= L()), L>::value, "returns a copy");
    list = L { "a", "b", "a" };
    QCOMPARE(list -= QStringLiteral("a"), L { "b" });
    QCOMPARE(list *= (L { "c", "b", "c", "d" }), (L { "b", "c", "d" }));
    QCOMPARE(list *= QStringLiteral("b"), (L { "b", "c", "d" }));
    L copy = (list *= QStringLiteral("e"));
    copy -= QStringLiteral("b");
    QCOMPARE(list, (L { "b", "c", "d", "e" }));
    QCOMPARE(list -= (L { "d", "x", "b" }), (L { "c", "e" }));
    QCOMPARE(list *= list, (L { "c", "e" }));
    QCOMPARE(list -= list, L {});
}

void tst_StringUtils::variants()
{
    // Values with a text form travel as text, the others as Base64 of their serialised form; a
    // fresh instance converts there and back.
    const QVariantList values { 42, 1.5, QDate(2021, 7, 1), L { "a", "", "b" }, QPoint(3, -4),
        QVariantMap { { "k", 1 }, { "l", QRect(1, 2, 3, 4) } },
        QVariantMap { { "deep", QVariantList { QVariantList { QVariantHash { { "h", 2 } } } } } } };
    for (const QVariant &value : values) {
        const QString text = StringUtils().toString(value);
        QCOMPARE(StringUtils().toVariant(text, ko::VariantType(value.userType())), value);
    }

    StringUtils utils;
    QVERIFY(!utils.toString(QVariant()).isNull());
    QVERIFY(utils.toString(QVariant()).isEmpty());
    QVERIFY(!utils.toString(QVariant(QString())).isNull());
    QCOMPARE(utils.toString(L { "a", "b" }), QStringLiteral("a\nb"));
    // Rewound, never emptied: a shorter value is written over a longer one and the rest stays
    // behind.
    const QString longText = utils.toString(QRect(1, 2, 3, 4));
    const QString shortText = utils.toString(QPoint(5, 6));
    QVERIFY(shortText != StringUtils().toString(QPoint(5, 6)));
    QCOMPARE(shortText.length(), longText.length());
    QCOMPARE(StringUtils().toVariant(shortText, ko::VariantType(QMetaType::QPoint)),
        QVariant(QPoint(5, 6)));
    // A used instance reads the first value its buffer holds, not the one passed in.
    QCOMPARE(
        utils.toVariant(StringUtils().toString(QPoint(7, 8)), ko::VariantType(QMetaType::QPoint)),
        QVariant(QPoint(5, 6)));
}

// Qt 5's conversion rules decide which values have a text form, and the library keeps them on Qt 6.
void tst_StringUtils::variantText_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    const qint8 notNull = 0;
    QTest::newRow("number") << QVariant(42) << "42";
    QTest::newRow("date") << QVariant(QDate(2021, 7, 1)) << "2021-07-01";
    QTest::newRow("point") << QVariant(QPoint(3, -4))
                           << base64Of(quint32(QMetaType::QPoint), notNull, 3, -4);
    QTest::newRow("string list of one") << QVariant(L { "a" }) << "a";
    QTest::newRow("string list of three") << QVariant(L { "a", "", "b" }) << "a\n\nb";
    QTest::newRow("null character") << QVariant(QChar()) << "";
    QTest::newRow("null date") << QVariant(QDate()) << "";
    QTest::newRow("long") << QVariant::fromValue(long(5))
                          << base64Of(quint32(QMetaType::Long), notNull, qint64(5));
    QTest::newRow("unsigned char") << QVariant::fromValue(uchar(65))
                                   << base64Of(quint32(QMetaType::UChar), notNull, quint8(65));
}

void tst_StringUtils::variantText()
{
    QFETCH(QVariant, value);
    const QString written = StringUtils().toString(value);
    QTEST(written, "text");
    QVERIFY(!written.isNull());
}

void tst_StringUtils::textToVariantRules()
{
    // Text is no variant list: it is read as a serialised one, which "abc" is not.
    QVERIFY(!StringUtils()
                 .toVariant(QStringLiteral("abc"), ko::VariantType(QMetaType::QVariantList))
                 .isValid());
    // A number becomes any enumeration, also one without named enumerators.
    const QVariant value
        = StringUtils().toVariant(QStringLiteral("3"), ko::VariantType(qMetaTypeId<Plain>()));
    QCOMPARE(value.userType(), qMetaTypeId<Plain>());
    QCOMPARE(int(*static_cast<const Plain *>(value.constData())), 3);
}

void tst_StringUtils::hostileVariants_data()
{
    QTest::addColumn<QString>("text");

    const quint8 notNull = 0;
    const QString zone = QStringLiteral("No/Such_Zone");
    QTest::newRow("not Base64 of a value") << "abc";
    QTest::newRow("cut short") << StringUtils().toString(QRect(1, 2, 3, 4)).left(12);
    QTest::newRow("string list of 2^28 strings")
        << base64Of(quint32(QMetaType::QStringList), notNull, quint32(0x10000000));
    QTest::newRow("variant list of 2^31 - 1 values")
        << base64Of(quint32(QMetaType::QVariantList), notNull, quint32(0x7fffffff));
    QTest::newRow("map of 2^32 - 1 entries")
        << base64Of(quint32(QMetaType::QVariantMap), notNull, quint32(0xffffffff));
    QTest::newRow("date-time in an unknown zone") << base64Of(quint32(QMetaType::QDateTime),
        notNull, QDate(2020, 1, 1), QTime(1, 2, 3), qint8(Qt::TimeZone), zone);
    QTest::newRow("unknown zone in a map") << base64Of(quint32(QMetaType::QVariantMap), notNull,
        quint32(1), QStringLiteral("k"), quint32(QMetaType::QDateTime), notNull, QDate(2020, 1, 1),
        QTime(1, 2, 3), qint8(Qt::TimeZone), zone);
    QTest::newRow("unknown user type") // marked as Qt 5.15's data stream format marks user types
        << base64Of(quint32(1024), notNull, QByteArray("NoSuchType"));
    QTest::newRow("lists nested 100000 deep") << nestedLists(100000);
    QTest::newRow("lists named as Qt 5 user types, 100000 deep") << nestedLists(100000, 1024);
    QTest::newRow("lists named as this Qt's user types, 100000 deep")
        << nestedLists(100000, quint32(QMetaType::User));
}

// Text from anywhere gives an invalid value, never a crash or an exception; the instance's stream
// writes the next value again, and a value nested to the limit is read.
void tst_StringUtils::hostileVariants()
{
    QFETCH(QString, text);
    StringUtils utils;
    // As a number the text does not convert, so it is read as a serialised value.
    const QVariant value = utils.toVariant(text, ko::VariantType(QMetaType::Int));
    QVERIFY(!value.isValid());
    QCOMPARE(utils.toString(value), QString());
    QCOMPARE(
        StringUtils().toVariant(utils.toString(QPoint(5, 6)), ko::VariantType(QMetaType::QPoint)),
        QVariant(QPoint(5, 6)));

    StringUtils fresh;
    QCOMPARE(fresh.toVariant(nestedLists(1024), ko::VariantType(QMetaType::UnknownType)).userType(),
        int(QMetaType::QVariantList));
    QVERIFY(!StringUtils()
                 .toVariant(nestedLists(1025), ko::VariantType(QMetaType::UnknownType))
                 .isValid());
    // A date-time in an unknown zone has a text form; inside a map it has none and is refused.
    const QDateTime unknown(QDate(2020, 1, 1), QTime(1, 2, 3), QTimeZone("No/Such_Zone"));
    QCOMPARE(fresh.toString(unknown), unknown.toString());
    QCOMPARE(fresh.toString(QVariantMap { { "k", unknown } }), QString());
}

QTEST_GUILESS_MAIN(tst_StringUtils)
#include "tst_StringUtils.moc"
