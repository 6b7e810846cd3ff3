#include "text/StringUtils.h"

#include <QPoint>
#include <QRect>
#include <QRegExp>
#include <QTranslator>
#include <QtTest>

#include <memory>
#include <type_traits>

using ko::StringUtils;
using Set = QSet<QString>;
using L = QStringList;

namespace
{

// A heap copy of exactly the bytes and their terminating zero: AddressSanitizer sees any read past it.
std::unique_ptr<char[]> exactCString(const QByteArray& bytes)
{
    std::unique_ptr<char[]> copy(new char[bytes.size() + 1]);
    memcpy(copy.get(), bytes.constData(), bytes.size() + 1);
    return copy;
}

QString show(bool b)
{
    return b ? QStringLiteral("true") : QStringLiteral("false");
}
QString show(const QString& s)
{
    return s.isNull() ? QStringLiteral("<null>") : s;
}
QString show(L list)
{
    return list.join(QLatin1Char('|'));
}
QString show(const Set& set)
{
    L list = set.values();
    list.sort();
    return show(list);
}
Set setOf(const L& list)
{
    return Set(list.cbegin(), list.cend());
}
QString agree(const QString& first, const QString& second)
{
    return first == second ? first : QStringLiteral("mismatch");
}

// Runs helper f on a row's arguments and shows the result as text; overloads that must agree all run,
// and "mismatch" reports a disagreement.
QString call(const QString& f, const L& a)
{
    using S = StringUtils;
    const QString x = a.value(0), y = a.value(1), z = a.value(2);
    const int alignment = a.value(f == "truncate" ? 1 : 2).toInt(nullptr, 16);
    const QFlags<Qt::AlignmentFlag> align = QFlags<Qt::AlignmentFlag>() | Qt::AlignmentFlag(alignment);
    const QString::SplitBehavior how = z == "skip" ? QString::SkipEmptyParts : QString::KeepEmptyParts;
    const QRegExp rx(f == "split" ? QRegExp::escape(y) : y);
    const QByteArray bytes = QByteArray::fromHex(x.toLatin1());
    const qulonglong v = x.toULongLong(nullptr, 16);
    const bool upper = z != "lower";
    QString head, tail;
    bool ok = false;
    // clang-format off
    if (f == "startsWithIgnoreCase") return show(S::startsWithIgnoreCase(x, y));
    if (f == "indexOfIgnoreCase")
        return QString::number(S::indexOfIgnoreCase(x, y)) + " " + show(S::containsIgnoreCase(x, y));
    if (f == "trim") return show(S::trim(x, y, align));
    if (f == "trimLeft") return show(S::trimLeft(x, y));
    if (f == "trimRight") return show(S::trimRight(x, y));
    if (f == "trimPattern") return S::trimLeft(x, rx) + "|" + S::trimRight(x, rx);
    if (f == "truncate") return S::truncate(QStringLiteral("abcdefghij"), x.toInt(), align);
    if (f == "split") {
        const L texts = x.split('/');
        const QString list = agree(show(S::splitStringList(texts, y, how)),
                                   show(S::splitStringList(texts, rx, how)));
        const QString set = show(S::splitStringSet(texts, rx, how));
        if (texts.size() > 1)
            return list + " " + set;
        return agree(list, show(S::splitStringList(x, rx, how))) + " "
            + agree(set, show(S::splitStringSet(x, rx, how)));
    }
    if (f == "splitWords") return show(S::splitStringList(x, S::splitWords, QString::SkipEmptyParts));
    if (f == "splitFirst") return S::splitFirst(x, y, head, tail), head + "|" + show(tail);
    if (f == "splitKeyValue") return S::splitKeyValue(x, head, tail, y.at(0)), head + "|" + show(tail);
    if (f == "stripCommentLines") return show(S::stripCommentLines(x, y));
    if (f == "splitScript") return show(S::splitScript(x, y, z));
    if (f == "concat")
        return agree(show(S::concat(a.mid(1), x)), show(S::concat(a.value(1), x, a.value(2), a.value(3),
                     a.value(4), a.value(5), a.value(6), a.value(7), a.value(8), a.value(9), a.value(10))));
    if (f == "sets") {
        const Set p = setOf(x.split('/', QString::SkipEmptyParts)), q = setOf(y.split('/'));
        return show(S::intersectsWith(p, q)) + " " + show(S::intersectsOnBeginning(p, q)) + " "
            + show(S::intersect(p, q));
    }
    if (f == "toHex") {
        head = QStringLiteral("x");
        S::appendHex(head, uchar(v), upper);
        const QString fixed = bytes.size() == 1 ? agree(S::toHex(uchar(v), upper), head.mid(1))
                            : bytes.size() == 2 ? S::toHex(ushort(v), upper, y)
                            : bytes.size() == 4 ? S::toHex(uint(v), upper, y) : S::toHex(v, upper, y);
        return agree(S::toHex(bytes, upper, y), bytes.isEmpty() ? QString() : fixed);
    }
    if (f == "encodeBase64")
        return agree(agree(S::encodeBase64(bytes), S::encodeBase64(bytes.constData(), bytes.size())),
                     S::encodeBase64(QString::fromLatin1(bytes.constData(), bytes.size())));
    if (f == "decodeBase64") return S::decodeBase64(x);
    if (f == "toBool") {
        head = show(S::toBool(x, &ok));
        return agree(head, show(S::toBool(x))) + (ok ? "" : " not ok");
    }
    if (f == "equalsUtf8")
        return show(S::equalsUtf8(x, exactCString(QByteArray::fromHex(y.toLatin1())).get()));
    // clang-format on
    if (f == "decodeUtf8") {
        const auto text = exactCString(bytes);
        const char* p = text.get();
        const uint code = S::decodeUtf8(p);
        return QStringLiteral("%1/%2").arg(code, 0, 16).arg(p - text.get());
    }
    return QStringLiteral("unknown function");
}

} // namespace

class tst_StringUtils : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void text_data();
    void text();
    void translated();
    void listEditing();
    void variants();

private:
    QTranslator mTranslator;
};

void tst_StringUtils::initTestCase()
{
    QVERIFY(mTranslator.load(QStringLiteral(TST_STRINGUTILS_QM)));
    QVERIFY(QCoreApplication::installTranslator(&mTranslator));
}

void tst_StringUtils::text_data()
{
    QTest::addColumn<QString>("function");
    QTest::addColumn<L>("args");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, const char* function, const L& args, const QString& expected) {
        QTest::newRow(name) << QString::fromLatin1(function) << args << expected;
    };
    const QString umlaut = QString::fromUtf8("ÄRGER");
    row("starts with umlaut", "startsWithIgnoreCase", { umlaut, QString::fromUtf8("är") }, "true");
    row("index of", "indexOfIgnoreCase", { "xCAMERA", "era" }, "4 true");
    row("trim set of chars", "trim", { "abbaXbab", "ab", "3" }, "X");
    row("trim other bits", "trim", { "-a-", "-", "25" }, "a-");
    row("trimRight chars", "trimRight", { "Xaxx", "x" }, "Xa");
    row("pattern blank runs", "trimPattern", { "  ab  ", "\\s+" }, "ab  |  ab ");
    row("pattern repeat", "trimPattern", { "ababxabab", "(ab)+" }, "xabab|ababxab");
    row("truncate right", "truncate", { "4", "2" }, "...ghij");
    row("truncate right absolute", "truncate", { "4", "12" }, "...ghij");
    row("truncate centre odd", "truncate", { "3", "4" }, "...def...");
    row("truncate centre absolute", "truncate", { "4", "14" }, "abcd...");
    row("truncate justify odd", "truncate", { "5", "8" }, "abc...ij");
    row("truncate right and centre", "truncate", { "4", "6" }, "abcd...");
    row("truncate negative", "truncate", { "-3", "1" }, "...");
    row("truncate exact length", "truncate", { "10", "4" }, "abcdefghij");
    row("split keep empty", "split", { "a,b/c,,d", ",", "keep" }, "a|b|c||d |a|b|c|d");
    row("split one text", "split", { "x;y;x", ";", "keep" }, "x|y|x x|y");
    row("split words", "splitWords", { "Hello, world!  Wie geht's?" }, "Hello|world|Wie|geht|s");
    row("first of two", "splitFirst", { "a::b::c", "::" }, "a|b::c");
    row("first, none", "splitFirst", { "abc", "::" }, "abc|");
    row("key value", "splitKeyValue", { "k=v=w", "=" }, "k|v=w");
    row("key, empty value", "splitKeyValue", { "k=", "=" }, "k|");
    row("key, no value", "splitKeyValue", { "k", "=" }, "k|<null>");
    row("comments", "stripCommentLines", { "a\n# c\n  b # x\n\n   \n#", "#" }, "a\nb");
    row("comments empty marker", "stripCommentLines", { "a\nb", "" }, "<null>");
    row("script statements", "splitScript", { "s1;s2;;\ns3 # ;x", "#", ";" }, "s1|s2|\ns3");
    row("script lines", "splitScript", { "a\n#b\n\nc;d", "#", "\n" }, "a|c;d");
    row("concat skips empty", "concat", { ",", "", "a", "", "b" }, "a,b");
    row("concat only empty", "concat", { ",", "", "" }, "<null>");
    row("concat ten", "concat", { "-", "1", "2", "3", "4", "5", "6", "7", "8", "9", "10" },
        "1-2-3-4-5-6-7-8-9-10");
    row("sets, prefix ignoring case", "sets", { "Camera1", "cam" }, "false true ");
    row("sets, shared", "sets", { "a/b/c", "c/b/x" }, "true true b|c");
    row("sets, empty prefix", "sets", { "x", "" }, "false true ");
    row("sets, prefix longer", "sets", { "ca", "cam" }, "false false ");
    row("hex char lower", "toHex", { "a0", "", "lower" }, "a0");
    row("hex short", "toHex", { "beef", " " }, "BE EF");
    row("hex long long", "toHex", { "0102030405060708", ", " }, "01, 02, 03, 04, 05, 06, 07, 08");
    row("hex empty", "toHex", { "", ":" }, "");
    row("base64 latin-1", "encodeBase64", { "e974e9" }, "6XTp");
    row("base64 zero", "encodeBase64", { "6162006364" }, "YWIAY2Q=");
    row("unbase64 zero cuts", "decodeBase64", { "YWIAY2Q=" }, "ab");
    row("unbase64 skips invalid", "decodeBase64", { "Y*WJj" }, "abc");
    row("bool zero", "toBool", { "0" }, "false");
    row("bool no", "toBool", { "no" }, "true");
    row("utf8 two bytes", "decodeUtf8", { "c3a978" }, "e9/2");
    row("utf8 stray continuation", "decodeUtf8", { "a9" }, "29/1");
    row("utf8 three bytes", "decodeUtf8", { "e282ac" }, "2082/2");
    row("utf8 four bytes", "decodeUtf8", { "f09f9880" }, "1f7df/2");
    row("utf8 six-byte lead", "decodeUtf8", { "fdbf" }, "7fffffff/2");
    row("utf8 FE", "decodeUtf8", { "fe41c37a" }, "c30c30c3/3");
    row("utf8 FF", "decodeUtf8", { "ffff01" }, "41041041/3");
    row("utf8 lead at end", "decodeUtf8", { "c3" }, "c0/1");
    row("utf8 FE at end", "decodeUtf8", { "fe" }, "0/1");
    row("utf8 FE before end", "decodeUtf8", { "fe41" }, "0/2");
    row("equals prefix", "equalsUtf8", { "abc", "616263646566" }, "true");
    row("equals empty text", "equalsUtf8", { "", "78" }, "true");
    row("equals utf8 shorter", "equalsUtf8", { "abcd", "616263" }, "false");
    row("equals three bytes", "equalsUtf8", { QString::fromUtf8("€"), "e282ac" }, "false");
    row("equals as decoded", "equalsUtf8", { QString(QChar(0x2082)) + ",", "e282ac" }, "true");
    // Zero code points keep the walk going: the terminator must stop it without a read past the end.
    row("equals FE, end", "equalsUtf8", { QString(2, QChar(0)), "fe" }, "false");
    row("equals FE, one to end", "equalsUtf8", { QString(2, QChar(0)), "fe41" }, "false");
    row("equals C3, end", "equalsUtf8", { QString(QChar(0xC0)) + "x", "c3" }, "false");
}

void tst_StringUtils::text()
{
    QFETCH(QString, function);
    QFETCH(L, args);
    QTEST(call(function, args), "expected");
}

void tst_StringUtils::translated()
{
    const QString colours = QStringLiteral("Colours");
    QVERIFY(StringUtils::joinTranslated(colours, Set()).isNull());
    QCOMPARE(
        StringUtils::joinTranslated(colours, Set { QString::fromUtf8("Weiß") }), QStringLiteral("White"));
    QCOMPARE(StringUtils::joinTranslated(QStringLiteral("Other"), Set { "Red" }), QStringLiteral("Red"));
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
        QCOMPARE(StringUtils::joinTranslated(colours, pair, QStringLiteral(",")), text + (first ? "" : ","));
    }
    QVERIFY(emptyFirst > 0 && emptyFirst < 64);

    Set set { "Rot" };
    StringUtils::appendAll(set, L { "Red", "Blue", "Red" }, colours);
    StringUtils::appendAll(set, Set { "Green", QString::fromUtf8("ł") }, colours);
    QCOMPARE(set, (Set { "Rot", "Blue", QString::fromUtf8("Grün"), "?" }));
    StringUtils::appendAll(set, L { "Red", QString::fromUtf8("ł") });
    QCOMPARE(set, (Set { "Rot", "Blue", QString::fromUtf8("Grün"), "?", "Red", QString::fromUtf8("ł") }));
}

void tst_StringUtils::listEditing()
{
    L list { "a1", "b", "a2", "a3" };
    QCOMPARE(StringUtils::removeAll(list, QRegExp(QStringLiteral("a"))), 0); // exact matches only
    QCOMPARE(StringUtils::removeAll(list, QRegExp(QStringLiteral("a\\d"))), 3);
    QCOMPARE(list, L { "b" });
    list += L { "c", "d" };
    StringUtils::swap(list, 0, 2);
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
    // Values with a text form travel as text, the others as Base64 of their serialised form; a fresh
    // instance converts there and back.
    const QVariantList values { 42, 1.5, QDate(2021, 7, 1), L { "a", "", "b" }, QPoint(3, -4),
        QVariantMap { { "k", 1 }, { "l", QRect(1, 2, 3, 4) } } };
    for (const QVariant& value : values) {
        const QString text = StringUtils().toString(value);
        QCOMPARE(text == value.toString(), value.canConvert(QVariant::String));
        QCOMPARE(StringUtils().toVariant(text, value.type()), value);
    }

    StringUtils utils;
    QVERIFY(!utils.toString(QVariant()).isNull() && utils.toString(QVariant()).isEmpty());
    QVERIFY(!utils.toString(QVariant(QString())).isNull());
    QCOMPARE(utils.toString(L { "a", "b" }), QStringLiteral("a\nb"));
    // Rewound, never emptied: a shorter value is written over a longer one and the rest stays behind.
    const QString longText = utils.toString(QRect(1, 2, 3, 4));
    const QString shortText = utils.toString(QPoint(5, 6));
    QVERIFY(shortText != StringUtils().toString(QPoint(5, 6)));
    QCOMPARE(shortText.length(), longText.length());
    QCOMPARE(StringUtils().toVariant(shortText, QVariant::Point), QVariant(QPoint(5, 6)));
    // A used instance reads the first value its buffer holds, not the one passed in.
    QCOMPARE(utils.toVariant(StringUtils().toString(QPoint(7, 8)), QVariant::Point), QVariant(QPoint(5, 6)));
    // Text that does not convert is taken as Base64; garbage yields an invalid value.
    QVERIFY(!StringUtils().toVariant(QStringLiteral("abc"), QVariant::Int).isValid());
}

QTEST_GUILESS_MAIN(tst_StringUtils)
#include "tst_StringUtils.moc"
