// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/ConfigItemNotRetrievedException.h"
#include "exceptions/DivisionByZeroException.h"
#include "exceptions/FileException.h"
#include "exceptions/IndexOutOfBoundsException.h"
#include "exceptions/NullPointerException.h"
#include "exceptions/OutOfMemoryException.h"
#include "exceptions/TerminalException.h"
#include "exceptions/UnexpectedTypeException.h"
#include "exceptions/XmlException.h"
#include "platform/kom/komObject.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <memory>
#include <type_traits>
#include <typeinfo>

// Under AddressSanitizer freed memory is filled, so that a field copied from a freed exception
// through Qt's own (uninstrumented) code reads garbage instead of the old value.
extern "C" Q_DECL_EXPORT const char *__asan_default_options()
{
    return "max_free_fill_size=4096:free_fill_byte=190";
}

using ExceptionPtr = QSharedPointer<ko::ExceptionQt>;
using SemanticsCheck = void (*)(const ko::ExceptionQt &);
using Assign = void (*)(ko::ExceptionQt &, const ko::ExceptionQt &);
Q_DECLARE_METATYPE(ExceptionPtr)
Q_DECLARE_METATYPE(SemanticsCheck)
Q_DECLARE_METATYPE(Assign)

namespace
{

// An exception that counts its live instances, so that every cause copy is seen freed once.
struct Counted : ko::RuntimeException
{
    static int live;
    explicit Counted(const QString &message)
        : RuntimeException(message)
    {
        ++live;
    }
    Counted(const Counted &other)
        : RuntimeException(other)
    {
        ++live;
    }
    Counted &operator=(const Counted &other) = default;
    ~Counted() override { --live; }
    Counted *clone() const override { return new Counted(*this); }
};
int Counted::live = 0;

// The name g++ gives a class of namespace ko; className() must return it unchanged.
QString mangled(const char *name)
{
    return QStringLiteral("N2ko%1%2E").arg(qstrlen(name)).arg(QLatin1String(name));
}

void *address(quint64 value)
{
    return reinterpret_cast<void *>(quintptr(value));
}

// Copy, clone and assignment (self-assignment too) of a T with a cause chain: each owns an
// independent copy, and changing one leaves the original alone.
template <class T> void checkValueSemantics(const ko::ExceptionQt &original)
{
    const T &e = dynamic_cast<const T &>(original);
    const QString printed = e.toString();

    T copy(e);
    QCOMPARE(copy.toString(), printed);
    QVERIFY(copy.causeQt() != e.causeQt());
    QVERIFY(copy.causeQt()->causeQt() != e.causeQt()->causeQt());

    std::unique_ptr<T> cloned(e.clone());
    QVERIFY(typeid(*cloned) == typeid(T));
    QCOMPARE(cloned->toString(), printed);
    QVERIFY(cloned->causeQt() != e.causeQt());

    T assigned(e);
    assigned.setCause(ko::RuntimeException(QStringLiteral("replaced")));
    assigned = e;
    QCOMPARE(assigned.toString(), printed);
    QVERIFY(assigned.causeQt() != e.causeQt());

    const ko::ExceptionQt *cause = assigned.causeQt();
    T &alias = assigned;
    assigned = alias;
    static_cast<ko::ExceptionQt &>(assigned) = alias;
    QCOMPARE(assigned.causeQt(), cause);
    QCOMPARE(assigned.toString(), printed);

    // Through the base class from its own cause, which that assignment frees.
    static_cast<ko::ExceptionQt &>(assigned) = *assigned.causeQt();
    QCOMPARE(assigned.causeQt()->toString(), e.causeQt()->causeQt()->toString());

    copy.setCause(nullptr);
    copy.setMessage(QStringLiteral("changed"));
    cloned.reset();
    QCOMPARE(e.toString(), printed);

    // Thrown as itself, caught through the base class; OutOfMemoryException through std::bad_alloc
    // too.
    try {
        throw T(e);
    } catch (const ko::Exception &caught) {
        QCOMPARE(QString::fromLatin1(caught.what()), printed);
    }
    if constexpr (std::is_base_of<std::bad_alloc, T>::value) {
        try {
            throw T(e);
        } catch (const std::bad_alloc &caught) {
            QCOMPARE(QString::fromLatin1(caught.what()), printed);
        }
    }
}

static_assert(
    std::is_base_of<std::bad_alloc, ko::OutOfMemoryException>::value, "caught as std::bad_alloc");

template <class T> void classRow(const char *name, T *e, const char *rendered)
{
    QTest::newRow(name) << ExceptionPtr(e)
                        << &checkValueSemantics<T> << QString::fromUtf8(rendered);
}

// Assigns with T's own assignment.
template <class T> void assignAs(ko::ExceptionQt &target, const ko::ExceptionQt &source)
{
    static_cast<T &>(target) = static_cast<const T &>(source);
}

template <class T> void assignRow(const char *name, T *target, T *source)
{
    QTest::newRow(name) << ExceptionPtr(target) << ExceptionPtr(source) << &assignAs<T>;
}

template <class T> T *withMessage(T *e, const char *message)
{
    e->setMessage(QString::fromUtf8(message));
    return e;
}

} // namespace

class tst_ExceptionQt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void classes_data();
    void classes();
    void assignment_data();
    void assignment();
    void statusNames_data();
    void statusNames();
    void fromFailedFile();
    void chains_data();
    void chains();
    void showLocation_data();
    void showLocation();
    void locationFields();
};

// Each class printed with a two-deep cause chain, copied, cloned and assigned; the first row of a
// class renders all its parts, the others the deliberate details of its rendering.
void tst_ExceptionQt::classes_data()
{
    QTest::addColumn<ExceptionPtr>("exception");
    QTest::addColumn<SemanticsCheck>("semantics");
    QTest::addColumn<QString>("rendered");

    static komObject object; // ignored by the rendering
    const QString none;
    classRow("ExceptionQt", new ko::ExceptionQt("base"), "base");
    classRow("RuntimeException", new ko::RuntimeException("run"), "run");
    classRow("ConfigItemNotRetrievedException",
        new ko::ConfigItemNotRetrievedException("cfg", &object), "cfg");
    classRow("ConfigItemNotRetrievedException: no object",
        new ko::ConfigItemNotRetrievedException("cfg"), "cfg");
    classRow("DivisionByZeroException", new ko::DivisionByZeroException("divide"), "divide");
    classRow("TerminalException", new ko::TerminalException("stop"), "stop");
    classRow("OutOfMemoryException", new ko::OutOfMemoryException(64, "heap"),
        "failed to allocate 64 bytes. heap");
    classRow("OutOfMemoryException: negative size", new ko::OutOfMemoryException(-8, "x"), "x");
    classRow("OutOfMemoryException: no message", new ko::OutOfMemoryException(64, none),
        "failed to allocate 64 bytes. ");
    classRow(
        "IllegalArgumentException", new ko::IllegalArgumentException("arg", "bad"), "arg, bad");
    classRow("IllegalArgumentException: only message",
        new ko::IllegalArgumentException(none, "bad"), "bad");
    classRow("IndexOutOfBoundsException", new ko::IndexOutOfBoundsException("list", 7, 0, 5),
        "list[7]; allowed range is 0 to 5, exclusive");
    classRow("IndexOutOfBoundsException: empty range",
        new ko::IndexOutOfBoundsException("list", 7, 0, 0), "list[7]");
    classRow("IndexOutOfBoundsException: inverted range",
        new ko::IndexOutOfBoundsException("list", 7, 5, 0), "list[7]");
    classRow("IndexOutOfBoundsException: message",
        withMessage(new ko::IndexOutOfBoundsException("v", 9, 1, 4), "m"),
        "v[9]; allowed range is 1 to 4, exclusive, m");
    classRow("NullPointerException", new ko::NullPointerException("p", address(0x1F00)),
        "p invalid address 1f00");
    classRow("NullPointerException: no address", new ko::NullPointerException("p", nullptr), "p");
    classRow("NullPointerException: no name", new ko::NullPointerException(none, address(0x10)),
        " invalid address 10");
    classRow("NullPointerException: bit 31 set",
        new ko::NullPointerException("p", address(0x80000000u)), "p invalid address -80000000");
    if (sizeof(void *) == 8)
        classRow("NullPointerException: high bits dropped",
            new ko::NullPointerException("p", address(0x7fff12345678ull)),
            "p invalid address 12345678");
    classRow("NullPointerException: message",
        withMessage(new ko::NullPointerException("p", address(0xab)), "m"),
        "p invalid address ab, m");
    classRow("UnexpectedTypeException",
        new ko::UnexpectedTypeException("arg", "int", "QString", "see docs"),
        "int not allowed, expected QString.see docs");
    classRow("UnexpectedTypeException: argument never printed",
        new ko::UnexpectedTypeException("arg", none, "QString", none), ", expected QString");
    classRow("UnexpectedTypeException: only message",
        new ko::UnexpectedTypeException("arg", none, none, "m"), ".m");
    classRow("IOException", new ko::IOException("io"), "io");
    classRow("FileException",
        new ko::FileException(QFileInfo("data/x.txt"), QFile::ReadError, "short"),
        "data/x.txt: ReadError, short");
    classRow("FileException: no path", new ko::FileException(QFile::OpenError), ": OpenError");
    classRow("FileException: no error", new ko::FileException(QFile::NoError, "m"), ", m");
    classRow("ParseException", new ko::ParseException("bad token", 3, 5, 3, 9),
        "line 3, column 5 to line 3, column 9, bad token");
    classRow("ParseException: nothing known", new ko::ParseException("m", 0, -1, -1, -1), "m");
    classRow("ParseException: column 0 counts", new ko::ParseException("m", 0, 0, -1, -1),
        "column 0, m");
    classRow(
        "ParseException: only the end", new ko::ParseException("m", 0, -1, 4, -1), " to line 4m");
    classRow("ParseException: end column", new ko::ParseException(none, 1, 2, 0, 7),
        "line 1, column 2 to column 7");
    classRow("XmlException", new ko::XmlException("unclosed", 4, 2), "line 4, column 2, unclosed");
    classRow("XmlException: no location", new ko::XmlException("broken"), "broken");
}

void tst_ExceptionQt::classes()
{
    QFETCH(ExceptionPtr, exception);
    QFETCH(SemanticsCheck, semantics);
    QFETCH(QString, rendered);

    {
        const ko::RuntimeException root(QStringLiteral("root cause"));
        exception->setCause(ko::IOException(QStringLiteral("disk failed"), &root));
    }
    const QString className = mangled(QByteArray(QTest::currentDataTag()).split(':').first());
    const QString expected = className + QLatin1String(": ") + rendered
        + QLatin1String("\ncaused by:\t") + mangled("IOException")
        + QLatin1String(": disk failed\ncaused by:\t") + mangled("RuntimeException")
        + QLatin1String(": root cause\n");

    QCOMPARE(exception->className(), className);
    QCOMPARE(exception->message(), rendered);
    QCOMPARE(exception->toString(), expected);
    QCOMPARE(QString(*exception), expected);
    QCOMPARE(QString::fromLatin1(static_cast<const ko::Exception &>(*exception).what()), expected);
    QString streamed;
    QTextStream(&streamed) << QLatin1String(">") << *exception;
    QCOMPARE(streamed, QLatin1Char('>') + expected);

    semantics(*exception);
}

// Assignment copies every field, also from the exception's own cause chain (at depth 1 and 3),
// which it frees while it copies.
void tst_ExceptionQt::assignment_data()
{
    QTest::addColumn<ExceptionPtr>("target");
    QTest::addColumn<ExceptionPtr>("source");
    QTest::addColumn<Assign>("assign");

    using namespace ko;
    assignRow("ExceptionQt", new ExceptionQt("a"), new ExceptionQt("b"));
    assignRow("RuntimeException", new RuntimeException("a"), new RuntimeException("b"));
    assignRow("ConfigItemNotRetrievedException", new ConfigItemNotRetrievedException("a"),
        new ConfigItemNotRetrievedException("b"));
    assignRow("DivisionByZeroException", new DivisionByZeroException("a"),
        new DivisionByZeroException("b"));
    assignRow("TerminalException", new TerminalException("a"), new TerminalException("b"));
    assignRow("OutOfMemoryException", new OutOfMemoryException(8, "a"),
        new OutOfMemoryException(64, "b"));
    assignRow("IllegalArgumentException", new IllegalArgumentException("x", "a"),
        new IllegalArgumentException("y", "b"));
    assignRow("IndexOutOfBoundsException", new IndexOutOfBoundsException("x", 1, 0, 2),
        new IndexOutOfBoundsException("y", 7, 3, 9));
    assignRow("NullPointerException", new NullPointerException("x", address(0x10)),
        new NullPointerException("y", address(0x20)));
    assignRow("UnexpectedTypeException", new UnexpectedTypeException("x", "int", "QString", "a"),
        new UnexpectedTypeException("y", "bool", "QByteArray", "b"));
    assignRow("IOException", new IOException("a"), new IOException("b"));
    assignRow("FileException", new FileException(QFileInfo("a.txt"), QFile::ReadError, "a"),
        new FileException(QFileInfo("b.txt"), QFile::WriteError, "b"));
    assignRow(
        "ParseException", new ParseException("a", 1, 2, 3, 4), new ParseException("b", 5, 6, 7, 8));
    assignRow("XmlException", new XmlException("a", 1, 2), new XmlException("b", 5, 6));
}

void tst_ExceptionQt::assignment()
{
    QFETCH(ExceptionPtr, target);
    QFETCH(ExceptionPtr, source);
    QFETCH(Assign, assign);
    source->setCause(ko::IOException(QStringLiteral("disk failed")));
    const QString printed = source->toString();

    std::unique_ptr<ko::ExceptionQt> plain(target->clone());
    assign(*plain, *source);
    QCOMPARE(plain->toString(), printed);

    std::unique_ptr<ko::ExceptionQt> outer(target->clone());
    outer->setCause(*source);
    assign(*outer, *outer->causeQt());
    QCOMPARE(outer->toString(), printed);

    std::unique_ptr<ko::ExceptionQt> chain(source->clone());
    for (int level = 0; level < 3; ++level) {
        std::unique_ptr<ko::ExceptionQt> next(target->clone());
        next->setCause(*chain);
        chain = std::move(next);
    }
    assign(*chain, *chain->causeQt()->causeQt()->causeQt());
    QCOMPARE(chain->toString(), printed);
}

// The names of QFile errors and QTextStream states, looked up in their translation context (the
// catalogue's own texts are checked with the translations).
void tst_ExceptionQt::statusNames_data()
{
    QTest::addColumn<bool>("file");
    QTest::addColumn<int>("value");
    QTest::addColumn<QString>("english");

    QTest::newRow("OpenError") << true << 5 << "OpenError";
    QTest::newRow("CopyError") << true << 14 << "CopyError";
    // Values without a name, but within the enum's range (anything else is not a value of the
    // type).
    QTest::newRow("unnamed error") << true << 15 << "UnspecifiedError";
    QTest::newRow("ReadPastEnd") << false << 1 << "ReadPastEnd";
    QTest::newRow("WriteFailed") << false << 3 << "UnknownError";
}

void tst_ExceptionQt::statusNames()
{
    QFETCH(bool, file);
    QFETCH(int, value);
    QFETCH(QString, english);

    const auto name = [&] {
        if (file)
            return ko::FileException::errorString(QFile::FileError(value));
        return ko::IOException(static_cast<QTextStream::Status>(value)).message();
    };
    QCOMPARE(name(), english);
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral(":/translations/CoreQt_de_DE.qm")));
    QCoreApplication::installTranslator(&translator);
    const QString translated = name();
    const QString expected = QCoreApplication::translate(
        file ? "QFile" : "QTextStream", english.toLatin1().constData());
    QCoreApplication::removeTranslator(&translator);
    QCOMPARE(translated, expected);
    QVERIFY(translated != english);
}

void tst_ExceptionQt::fromFailedFile()
{
    QFile file(QTemporaryDir().filePath(QStringLiteral("missing.txt")));
    QVERIFY(!file.open(QIODevice::ReadOnly));
    QCOMPARE(ko::FileException(file).message(),
        file.fileName() + QLatin1String(": OpenError, ") + file.errorString());
}

void tst_ExceptionQt::chains_data()
{
    QTest::addColumn<int>("depth");
    for (int depth = 0; depth <= 5; ++depth)
        QTest::addRow("depth %d", depth) << depth;
}

void tst_ExceptionQt::chains()
{
    QFETCH(int, depth);
    const QString name = QString::fromLatin1(typeid(Counted).name());
    {
        Counted e(QStringLiteral("level 0"));
        for (int level = 1; level <= depth; ++level) {
            Counted outer(QStringLiteral("level %1").arg(level));
            outer.setCause(e);
            e = outer;
        }
        QCOMPARE(Counted::live, depth + 1);

        QString expected = name + QStringLiteral(": level %1\n").arg(depth);
        for (int level = depth - 1; level >= 0; --level)
            expected += QStringLiteral("caused by:\t%1: level %2\n").arg(name).arg(level);
        QCOMPARE(e.className(), name);
        QCOMPARE(e.toString(), expected);
        QCOMPARE(QString::fromLatin1(e.what()), expected);
        QBuffer device; // printed through to a device at once, without waiting for the stream to go
        QVERIFY(device.open(QIODevice::WriteOnly));
        QTextStream out(&device);
        e.print(out);
        QCOMPARE(device.data(), expected.toLatin1());
        {
            const Counted copy(e);
            std::unique_ptr<ko::ExceptionQt> cloned(e.clone());
            QCOMPARE(Counted::live, 3 * (depth + 1));
            QCOMPARE(cloned->toString(), expected);
        }
        QCOMPARE(Counted::live, depth + 1);

        // Assigned from its own cause: the old chain goes, its tail survives as the copy's chain.
        if (depth >= 1) {
            const QString tail = e.causeQt()->toString();
            e = static_cast<const Counted &>(*e.causeQt());
            QCOMPARE(Counted::live, depth);
            QCOMPARE(e.toString(), tail);
            Counted top(QStringLiteral("level %1").arg(depth));
            top.setCause(e);
            e = top;
            QCOMPARE(e.toString(), expected);
        }
        // A cause taken from the exception's own chain is copied before the old chain goes.
        if (depth >= 2) {
            e.setCause(e.causeQt()->causeQt());
            QCOMPARE(Counted::live, depth);
            QVERIFY(!e.toString().contains(QStringLiteral("level %1\n").arg(depth - 1)));
            QCOMPARE(e.toString().count(QLatin1Char('\n')), depth);
        }
    }
    QCOMPARE(Counted::live, 0);
}

void tst_ExceptionQt::showLocation_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("lastLine");
    QTest::addColumn<int>("lastColumn");
    QTest::addColumn<QString>("marked");

    const auto row = [](const char *name, const char *text, int line, int column, int lastLine,
                         int lastColumn, const char *marked) {
        QTest::newRow(name) << QString::fromUtf8(text) << line << column << lastLine << lastColumn
                            << QString::fromUtf8(marked);
    };
    row("across lines", "one\ntwo\nthree", 0, 1, 2, 3, "o >>>ne\ntwo\nthr<<< ee");
    row("empty lines kept", "a\n\nb", 1, 0, -1, -1, "a\n >>><<< \nb");
    row("negative start clamped", "abc", -5, -2, -1, -1, " >>><<< abc");
    row("end column past the line", "ab\ncd", 0, 0, 1, 4, " >>>ab\ncd  <<< ");
    row("start column past the line", "ab", 0, 5, 0, 6, "ab    >>> <<< ");
    // Line indices below the text's length but past its last line: no marker for that end.
    row("start past the last line", "ab\ncd", 3, 0, -1, -1, "ab\ncd");
    row("end past the last line", "ab\ncd", 0, 1, 4, 0, "a >>>b\ncd");
    row("start past, end valid", "ab\ncd", 4, 0, 1, 1, "ab\nc<<< d");
    row("end on the first line", "ab\ncd", 1, 0, 0, 1, "a<<< b\n >>>cd");
}

// Both forms mark the same places; the member form takes the exception's own location fields.
void tst_ExceptionQt::showLocation()
{
    QFETCH(QString, text);
    QFETCH(int, line);
    QFETCH(int, column);
    QFETCH(int, lastLine);
    QFETCH(int, lastColumn);
    QFETCH(QString, marked);

    QCOMPARE(ko::ParseException::showLocation(text, line, column, lastLine, lastColumn), marked);
    ko::XmlException e(QStringLiteral("m"));
    e.setLocation(line, column, lastLine, lastColumn);
    QCOMPARE(e.message(), ko::ParseException("m", line, column, lastLine, lastColumn).message());
    QCOMPARE(e.showLocation(text), marked);
}

// Each accessor returns its own field; an XmlException knows no end, and no start unless given one.
void tst_ExceptionQt::locationFields()
{
    ko::ParseException e(QStringLiteral("m"), 0, 0, 0, 0);
    e.setLocation(1, 2, 3, 4);
    QCOMPARE(e.lineNumber(), 1);
    QCOMPARE(e.columnNumber(), 2);
    QCOMPARE(e.lastLineNumber(), 3);
    QCOMPARE(e.lastColumnNumber(), 4);
    const ko::XmlException at(QStringLiteral("m"), 5, 6);
    QCOMPARE(at.lineNumber(), 5);
    QCOMPARE(at.columnNumber(), 6);
    QCOMPARE(at.lastLineNumber(), -1);
    QCOMPARE(at.lastColumnNumber(), -1);
    QCOMPARE(ko::XmlException(QStringLiteral("m")).lineNumber(), -1);
    QCOMPARE(ko::XmlException(QStringLiteral("m")).columnNumber(), -1);
}

QTEST_GUILESS_MAIN(tst_ExceptionQt)
#include "tst_ExceptionQt.moc"
