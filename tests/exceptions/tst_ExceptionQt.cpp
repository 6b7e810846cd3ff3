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

#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#include <memory>
#include <typeinfo>

using ExceptionPtr = QSharedPointer<ko::ExceptionQt>;
using SemanticsCheck = void (*)(const ko::ExceptionQt&);
Q_DECLARE_METATYPE(ExceptionPtr)
Q_DECLARE_METATYPE(SemanticsCheck)

namespace
{

// An exception that counts its live instances, so that every cause copy is seen freed once.
class Counted : public ko::RuntimeException
{
public:
    static int live;
    explicit Counted(const QString& message)
        : RuntimeException(message)
    {
        ++live;
    }
    Counted(const Counted& other)
        : RuntimeException(other)
    {
        ++live;
    }
    Counted& operator=(const Counted& other) = default;
    ~Counted() override { --live; }
    Counted* clone() const override { return new Counted(*this); }
};
int Counted::live = 0;

// The name g++ gives a class of namespace ko; className() must return it unchanged.
QString mangled(const char* name)
{
    return QStringLiteral("N2ko%1%2E").arg(qstrlen(name)).arg(QLatin1String(name));
}

void* address(quint64 value)
{
    return reinterpret_cast<void*>(quintptr(value));
}

template <class T> ExceptionPtr withMessage(T* e, const char* message)
{
    e->setMessage(QString::fromUtf8(message));
    return ExceptionPtr(e);
}

// Copy, clone and assignment of a T that has a cause chain: each owns an independent copy.
template <class T> void checkValueSemantics(const ko::ExceptionQt& original)
{
    const T& e = dynamic_cast<const T&>(original);
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

    copy.setCause(nullptr);
    copy.setMessage(QStringLiteral("changed"));
    cloned.reset();
    QCOMPARE(e.toString(), printed);
}

} // namespace

class tst_ExceptionQt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void classes_data();
    void classes();
    void renderings_data();
    void renderings();
    void fileErrorNames_data();
    void fileErrorNames();
    void textStreamStatus_data();
    void textStreamStatus();
    void fromFailedFile();
    void germanNames();
    void chains_data();
    void chains();
    void selfAssignment();
    void outOfMemoryCaughtByBothHandlers();
    void parseLocation();
    void showLocation_data();
    void showLocation();
};

void tst_ExceptionQt::classes_data()
{
    QTest::addColumn<ExceptionPtr>("exception");
    QTest::addColumn<SemanticsCheck>("semantics");
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("rendered");

    komObject object;
    auto row = [](const char* name, ko::ExceptionQt* e, SemanticsCheck check, const char* rendered) {
        QTest::newRow(name) << ExceptionPtr(e) << check << mangled(name) << QString::fromUtf8(rendered);
    };
    row("ExceptionQt", new ko::ExceptionQt(QStringLiteral("base")), checkValueSemantics<ko::ExceptionQt>,
        "base");
    row("RuntimeException", new ko::RuntimeException(QStringLiteral("run")),
        checkValueSemantics<ko::RuntimeException>, "run");
    row("ConfigItemNotRetrievedException",
        new ko::ConfigItemNotRetrievedException(QStringLiteral("config"), &object),
        checkValueSemantics<ko::ConfigItemNotRetrievedException>, "config");
    row("DivisionByZeroException", new ko::DivisionByZeroException(QStringLiteral("divide")),
        checkValueSemantics<ko::DivisionByZeroException>, "divide");
    row("TerminalException", new ko::TerminalException(QStringLiteral("stop")),
        checkValueSemantics<ko::TerminalException>, "stop");
    row("OutOfMemoryException", new ko::OutOfMemoryException(64, QStringLiteral("heap")),
        checkValueSemantics<ko::OutOfMemoryException>, "failed to allocate 64 bytes. heap");
    row("IllegalArgumentException",
        new ko::IllegalArgumentException(QStringLiteral("arg"), QStringLiteral("bad")),
        checkValueSemantics<ko::IllegalArgumentException>, "arg, bad");
    row("IndexOutOfBoundsException", new ko::IndexOutOfBoundsException(QStringLiteral("list"), 7, 0, 5),
        checkValueSemantics<ko::IndexOutOfBoundsException>, "list[7]; allowed range is 0 to 5, exclusive");
    row("NullPointerException", new ko::NullPointerException(QStringLiteral("p"), address(0x1F00)),
        checkValueSemantics<ko::NullPointerException>, "p invalid address 1f00");
    row("UnexpectedTypeException",
        new ko::UnexpectedTypeException(QStringLiteral("arg"), QStringLiteral("int"),
            QStringLiteral("QString"), QStringLiteral("see docs")),
        checkValueSemantics<ko::UnexpectedTypeException>, "int not allowed, expected QString.see docs");
    row("IOException", new ko::IOException(QStringLiteral("io")), checkValueSemantics<ko::IOException>, "io");
    row("FileException",
        new ko::FileException(
            QFileInfo(QStringLiteral("data/x.txt")), QFile::ReadError, QStringLiteral("short")),
        checkValueSemantics<ko::FileException>, "data/x.txt: ReadError, short");
    row("ParseException", new ko::ParseException(QStringLiteral("bad token"), 3, 5, 3, 9),
        checkValueSemantics<ko::ParseException>, "line 3, column 5 to line 3, column 9, bad token");
    row("XmlException", new ko::XmlException(QStringLiteral("unclosed"), 4, 2),
        checkValueSemantics<ko::XmlException>, "line 4, column 2, unclosed");
}

void tst_ExceptionQt::classes()
{
    QFETCH(ExceptionPtr, exception);
    QFETCH(SemanticsCheck, semantics);
    QFETCH(QString, className);
    QFETCH(QString, rendered);

    {
        const ko::RuntimeException root(QStringLiteral("root cause"));
        exception->setCause(ko::IOException(QStringLiteral("disk failed"), &root));
    }
    const QString expected = className + QLatin1String(": ") + rendered + QLatin1String("\ncaused by:\t")
        + mangled("IOException") + QLatin1String(": disk failed\ncaused by:\t") + mangled("RuntimeException")
        + QLatin1String(": root cause\n");

    QCOMPARE(exception->className(), className);
    QCOMPARE(exception->message(), rendered);
    QCOMPARE(exception->toString(), expected);
    QCOMPARE(QString(*exception), expected);
    QCOMPARE(QString::fromLatin1(static_cast<const ko::Exception&>(*exception).what()), expected);
    QString streamed;
    {
        QTextStream s(&streamed);
        s << QLatin1String(">") << *exception;
    }
    QCOMPARE(streamed, QLatin1Char('>') + expected);

    semantics(*exception);
}

void tst_ExceptionQt::renderings_data()
{
    QTest::addColumn<ExceptionPtr>("exception");
    QTest::addColumn<QString>("rendered");

    komObject object;
    auto row = [](const char* name, ko::ExceptionQt* e, const char* rendered) {
        QTest::newRow(name) << ExceptionPtr(e) << QString::fromUtf8(rendered);
    };
    auto rowWith = [](const char* name, ExceptionPtr e, const char* rendered) {
        QTest::newRow(name) << e << QString::fromUtf8(rendered);
    };
    const QString none;
    const QString m = QStringLiteral("m");

    row("empty message", new ko::ExceptionQt(none), "");
    row("memory: size 0", new ko::OutOfMemoryException(0, QStringLiteral("x")), "x");
    row("memory: negative size", new ko::OutOfMemoryException(-8, QStringLiteral("x")), "x");
    row("memory: no message", new ko::OutOfMemoryException(64, none), "failed to allocate 64 bytes. ");
    row("argument: only message", new ko::IllegalArgumentException(none, QStringLiteral("bad")), "bad");
    row("argument: only name", new ko::IllegalArgumentException(QStringLiteral("arg"), none), "arg");
    row("argument: neither", new ko::IllegalArgumentException(none, none), "");
    row("index: empty range", new ko::IndexOutOfBoundsException(QStringLiteral("list"), 7, 0, 0), "list[7]");
    row("index: inverted range", new ko::IndexOutOfBoundsException(QStringLiteral("list"), 7, 5, 0),
        "list[7]");
    row("index: no name", new ko::IndexOutOfBoundsException(none, -1, 0, 3),
        "[-1]; allowed range is 0 to 3, exclusive");
    rowWith("index: message",
        withMessage(new ko::IndexOutOfBoundsException(QStringLiteral("v"), 9, 1, 4), "m"),
        "v[9]; allowed range is 1 to 4, exclusive, m");
    row("null: no address", new ko::NullPointerException(QStringLiteral("p"), nullptr), "p");
    row("null: nothing", new ko::NullPointerException(none, nullptr), "");
    row("null: no name", new ko::NullPointerException(none, address(0x10)), " invalid address 10");
    row("null: bit 31 set", new ko::NullPointerException(QStringLiteral("p"), address(0x80000000u)),
        "p invalid address -80000000");
    row("null: near top", new ko::NullPointerException(QStringLiteral("p"), address(0xfffffff0u)),
        "p invalid address -10");
    if (sizeof(void*) == 8)
        row("null: high bits dropped",
            new ko::NullPointerException(QStringLiteral("p"), address(0x7fff12345678ull)),
            "p invalid address 12345678");
    rowWith("null: message",
        withMessage(new ko::NullPointerException(QStringLiteral("p"), address(0xab)), "m"),
        "p invalid address ab, m");
    row("type: argument never printed",
        new ko::UnexpectedTypeException(QStringLiteral("arg"), none, QStringLiteral("QString"), none),
        ", expected QString");
    row("type: only found",
        new ko::UnexpectedTypeException(QStringLiteral("arg"), QStringLiteral("int"), none, none),
        "int not allowed");
    row("type: only message", new ko::UnexpectedTypeException(QStringLiteral("arg"), none, none, m), ".m");
    row("file: no path", new ko::FileException(QFile::OpenError), ": OpenError");
    row("file: no error", new ko::FileException(QFile::NoError, m), ", m");
    row("file: path only", new ko::FileException(QFileInfo(QStringLiteral("a.txt")), QFile::NoError),
        "a.txt");
    row("config without object", new ko::ConfigItemNotRetrievedException(QStringLiteral("cfg")), "cfg");
    row("config with object", new ko::ConfigItemNotRetrievedException(QStringLiteral("cfg"), &object), "cfg");
    row("parse: nothing known", new ko::ParseException(m, 0, -1, -1, -1), "m");
    row("parse: line only", new ko::ParseException(none, 2, -1, -1, -1), "line 2");
    row("parse: column 0 counts", new ko::ParseException(m, 0, 0, -1, -1), "column 0, m");
    row("parse: only the end", new ko::ParseException(m, 0, -1, 4, -1), " to line 4m");
    row("parse: end column", new ko::ParseException(none, 1, 2, 0, 7), "line 1, column 2 to column 7");
    row("xml: no location", new ko::XmlException(QStringLiteral("broken")), "broken");
}

void tst_ExceptionQt::renderings()
{
    QFETCH(ExceptionPtr, exception);
    QFETCH(QString, rendered);

    QCOMPARE(exception->message(), rendered);
    QCOMPARE(
        exception->toString(), exception->className() + QLatin1String(": ") + rendered + QLatin1Char('\n'));
}

void tst_ExceptionQt::fileErrorNames_data()
{
    QTest::addColumn<int>("error");
    QTest::addColumn<QString>("name");

    const char* const names[] = { "NoError", "ReadError", "WriteError", "FatalError", "ResourceError",
        "OpenError", "AbortError", "TimeOutError", "UnspecifiedError", "RemoveError", "RenameError",
        "PositionError", "ResizeError", "PermissionsError", "CopyError" };
    for (int error = 0; error < 15; ++error)
        QTest::newRow(names[error]) << error << QString::fromLatin1(names[error]);
    QTest::newRow("unknown value") << 99 << QStringLiteral("UnspecifiedError");
}

void tst_ExceptionQt::fileErrorNames()
{
    QFETCH(int, error);
    QFETCH(QString, name);
    QCOMPARE(ko::FileException::errorString(QFile::FileError(error)), name);
}

void tst_ExceptionQt::textStreamStatus_data()
{
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("message");

    QTest::newRow("Ok") << 0 << QStringLiteral("Ok");
    QTest::newRow("ReadPastEnd") << 1 << QStringLiteral("ReadPastEnd");
    QTest::newRow("ReadCorruptData") << 2 << QStringLiteral("ReadCorruptData");
    QTest::newRow("WriteFailed") << 3 << QStringLiteral("UnknownError");
    QTest::newRow("unknown value") << 42 << QStringLiteral("UnknownError");
}

void tst_ExceptionQt::textStreamStatus()
{
    QFETCH(int, status);
    QFETCH(QString, message);
    const ko::IOException e(static_cast<QTextStream::Status>(status));
    QCOMPARE(e.message(), message);
    QVERIFY(!e.causeQt());
}

void tst_ExceptionQt::fromFailedFile()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    QFile file(dir.filePath(QStringLiteral("missing.txt")));
    QVERIFY(!file.open(QIODevice::ReadOnly));

    const ko::FileException e(file);
    QCOMPARE(e.message(), file.fileName() + QLatin1String(": OpenError, ") + file.errorString());
}

void tst_ExceptionQt::germanNames()
{
    const QString catalogue = QStringLiteral(":/translations/CoreQt_de_DE.qm");
    if (!QFile::exists(catalogue))
        QSKIP("the German catalogue is not compiled in");
    QTranslator translator;
    QVERIFY(translator.load(catalogue));
    QCoreApplication::installTranslator(&translator);

    const QString openError = ko::FileException(QFile::OpenError).message();
    const QString readPastEnd = ko::IOException(QTextStream::ReadPastEnd).message();
    const QString unknown = ko::IOException(QTextStream::WriteFailed).message();
    QCoreApplication::removeTranslator(&translator);

    QCOMPARE(openError, QString::fromUtf8(": ÖffnenFehler"));
    QCOMPARE(readPastEnd, QString::fromUtf8("ÜberEndeGelesen"));
    QCOMPARE(unknown, QStringLiteral("UnbekannterFehler"));
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

        {
            const Counted copy(e);
            std::unique_ptr<ko::ExceptionQt> cloned(e.clone());
            QCOMPARE(Counted::live, 3 * (depth + 1));
            QCOMPARE(cloned->toString(), expected);
        }
        QCOMPARE(Counted::live, depth + 1);

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

void tst_ExceptionQt::selfAssignment()
{
    const ko::RuntimeException root(QStringLiteral("root"));
    ko::FileException e(QFileInfo(QStringLiteral("f")), QFile::ReadError, QStringLiteral("m"), &root);
    const ko::ExceptionQt* cause = e.causeQt();
    const QString printed = e.toString();

    ko::FileException& alias = e;
    e = alias;
    QCOMPARE(e.causeQt(), cause);
    QCOMPARE(e.toString(), printed);

    static_cast<ko::ExceptionQt&>(e) = alias;
    QCOMPARE(e.causeQt(), cause);
    QCOMPARE(e.toString(), printed);
}

void tst_ExceptionQt::outOfMemoryCaughtByBothHandlers()
{
    const QString expected
        = mangled("OutOfMemoryException") + QLatin1String(": failed to allocate 64 bytes. \n");
    int caught = 0;
    try {
        throw ko::OutOfMemoryException(64, QString());
    } catch (const std::bad_alloc& e) {
        ++caught;
        QCOMPARE(QString::fromLatin1(e.what()), expected);
    }
    try {
        throw ko::OutOfMemoryException(64, QString());
    } catch (const ko::ExceptionQt& e) {
        ++caught;
        QCOMPARE(e.toString(), expected);
    }
    try {
        throw ko::OutOfMemoryException(64, QString());
    } catch (const ko::Exception& e) {
        ++caught;
        QCOMPARE(QString::fromLatin1(e.what()), expected);
    }
    QCOMPARE(caught, 3);
}

void tst_ExceptionQt::parseLocation()
{
    ko::XmlException e(QStringLiteral("m"));
    QCOMPARE(e.lineNumber(), -1);
    QCOMPARE(e.columnNumber(), -1);
    QCOMPARE(e.lastLineNumber(), -1);
    QCOMPARE(e.lastColumnNumber(), -1);
    QCOMPARE(e.message(), QStringLiteral("m"));

    e.setLocation(1, 0, 1, 2);
    QCOMPARE(e.lineNumber(), 1);
    QCOMPARE(e.columnNumber(), 0);
    QCOMPARE(e.lastLineNumber(), 1);
    QCOMPARE(e.lastColumnNumber(), 2);
    QCOMPARE(e.message(), QStringLiteral("line 1, column 0 to line 1, column 2, m"));
    // The member form uses the fields directly as indices: line 1 is the second line.
    QCOMPARE(e.showLocation(QStringLiteral("first\nsecond")), QStringLiteral("first\n >>>se<<< cond"));
}

void tst_ExceptionQt::showLocation_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("lastLine");
    QTest::addColumn<int>("lastColumn");
    QTest::addColumn<QString>("marked");

    auto row = [](const char* name, const char* text, int line, int column, int lastLine, int lastColumn,
                   const char* marked) {
        QTest::newRow(name) << QString::fromUtf8(text) << line << column << lastLine << lastColumn
                            << QString::fromUtf8(marked);
    };
    row("one line", "abc def", 0, 4, 0, 7, "abc  >>>def<<< ");
    row("second line, one point", "ab\ncd", 1, 1, -1, -1, "ab\nc >>><<< d");
    row("across lines", "one\ntwo\nthree", 0, 1, 2, 3, "o >>>ne\ntwo\nthr<<< ee");
    row("empty lines kept", "a\n\nb", 1, 0, -1, -1, "a\n >>><<< \nb");
    row("negative start clamped", "abc", -5, -2, -1, -1, " >>><<< abc");
    row("end column past the line", "ab\ncd", 0, 0, 1, 4, " >>>ab\ncd  <<< ");
    row("start column past the line", "ab", 0, 5, 0, 6, "ab    >>> <<< ");
    row("line index beyond the text", "ab", 2, 0, -1, -1, "ab");
    row("empty text", "", 0, 0, -1, -1, "");
    // Line indices below the text's length but past its last line: no marker for that end.
    row("start past the last line", "ab\ncd", 3, 0, -1, -1, "ab\ncd");
    row("end past the last line", "ab\ncd", 0, 1, 4, 0, "a >>>b\ncd");
    row("start past, end valid", "ab\ncd", 4, 0, 1, 1, "ab\nc<<< d");
}

void tst_ExceptionQt::showLocation()
{
    QFETCH(QString, text);
    QFETCH(int, line);
    QFETCH(int, column);
    QFETCH(int, lastLine);
    QFETCH(int, lastColumn);
    QFETCH(QString, marked);

    QCOMPARE(ko::ParseException::showLocation(text, line, column, lastLine, lastColumn), marked);
    const ko::ParseException e(QString(), line, column, lastLine, lastColumn);
    QCOMPARE(e.showLocation(text), marked);
}

QTEST_GUILESS_MAIN(tst_ExceptionQt)
#include "tst_ExceptionQt.moc"
