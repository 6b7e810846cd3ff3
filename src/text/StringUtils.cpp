// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "text/StringUtils.h"

#include "compat/QtCompat_p.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QRegExp>
#include <QTimeZone>

#include <algorithm>
#include <new>

namespace ko
{

QRegExp StringUtils::splitWords(QStringLiteral("\\W+"), Qt::CaseInsensitive, QRegExp::RegExp);

namespace
{

QString ellipsis()
{
    return QStringLiteral("...");
}

// An empty string that is not null, for the outputs that must be told apart from a null one.
QString emptyString()
{
    return QString(QLatin1String(""));
}

// The text passes through Latin-1 on its way to the translator: characters outside Latin-1 become
// '?'.
QString translateLatin1(const QString &context, const QString &text)
{
    const QString latin1 = QString::fromLatin1(text.toLatin1());
    return QCoreApplication::translate(context.toLatin1().constData(), latin1.toUtf8().constData());
}

template <typename Items>
void insertAll(QSet<QString> &set, const Items &items, const QString &context)
{
    for (const QString &item : items)
        set.insert(context.isEmpty() ? item : translateLatin1(context, item));
}

template <typename Texts, typename Separator>
QStringList splitEach(const Texts &texts, const Separator &separator, SplitBehavior behavior)
{
    QStringList parts;
    for (const QString &text : texts)
        parts += compat::split(text, separator, behavior);
    return parts;
}

// Two digits per byte, most significant byte first, the separator between bytes.
template <typename Unsigned>
QString hexOfValue(Unsigned value, bool upperCase, const QString &separator)
{
    const int bytes = int(sizeof(Unsigned));
    QString out;
    out.reserve(2 * bytes + (bytes - 1) * separator.length());
    for (int i = bytes - 1; i >= 0; --i) {
        if (i != bytes - 1)
            out += separator;
        StringUtils::appendHex(out, static_cast<unsigned char>(value >> (8 * i)), upperCase);
    }
    return out;
}

// The low six bits of a continuation byte repeated in the six-bit slots 0, 6, ... up to count - 1.
unsigned int repeatSixBits(unsigned char c, int count)
{
    const unsigned int bits = c & 0x3Fu;
    unsigned int value = 0;
    for (int slot = 0; slot < count; ++slot)
        value |= bits << (6 * slot);
    return value;
}

// Reads a continuation byte at p and moves past it, except that a terminating zero is never
// stepped over.
unsigned char takeByte(const char *&p)
{
    const unsigned char c = static_cast<unsigned char>(*p);
    if (c != 0)
        ++p;
    return c;
}

// Deeper variant containers are refused: Qt reads them recursively, and crafted text could
// otherwise nest them deep enough to exhaust the stack.
const int kMaxNesting = 1024;

// Reads one serialised QVariant from @p s and tells whether it could be read and its variant
// lists, maps and hashes nest at most @p levels deep. Qt itself reads every other value.
bool readableWithin(QDataStream &s, int levels)
{
    QIODevice *device = s.device();
    const qint64 start = device->pos();
    quint32 type = 0;
    qint8 isNull = 0;
    s >> type >> isNull;
    // Qt 6 reads a type name after either marker: Qt 5's, and its own QMetaType::User.
    if (type == compat::kStreamUserType || type == quint32(QMetaType::User)) {
        QByteArray name;
        s >> name;
        type = quint32(compat::typeId(name.constData()));
    }
    const bool keyed = type == QMetaType::QVariantMap || type == QMetaType::QVariantHash;
    if (!keyed && type != QMetaType::QVariantList) {
        device->seek(start);
        QVariant value;
        s >> value;
        return s.status() == QDataStream::Ok;
    }
    if (levels == 0)
        return false;
    quint32 count = 0;
    s >> count;
    for (quint32 i = 0; i < count && s.status() == QDataStream::Ok; ++i) {
        QString key;
        if (keyed)
            s >> key;
        if (!readableWithin(s, levels - 1))
            return false;
    }
    return s.status() == QDataStream::Ok;
}

// Whether Qt can serialise @p value: a date-time in a time zone that Qt does not know has no
// zone data, and writing it would crash.
bool writable(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::QDateTime: {
        const QDateTime dateTime = value.toDateTime();
        return dateTime.timeSpec() != Qt::TimeZone || dateTime.timeZone().isValid();
    }
    case QMetaType::QVariantList: {
        const QVariantList list = value.toList();
        return std::all_of(list.cbegin(), list.cend(), writable);
    }
    case QMetaType::QVariantMap: {
        const QVariantMap map = value.toMap();
        return std::all_of(map.cbegin(), map.cend(), writable);
    }
    case QMetaType::QVariantHash: {
        const QVariantHash hash = value.toHash();
        return std::all_of(hash.cbegin(), hash.cend(), writable);
    }
    default:
        return true;
    }
}

} // namespace

StringUtils::StringUtils()
    : mBuffer()
    , mStream(&mBuffer)
{
    mBuffer.open(QIODevice::ReadWrite);
    // Qt 5.15's format whatever Qt the library runs on, so that the texts of serialised values are
    // the same and read back in either.
    mStream.setVersion(QDataStream::Qt_5_15);
}

bool StringUtils::equalsIgnoreCase(const QString &a, const QString &b)
{
    return QString::compare(a, b, Qt::CaseInsensitive) == 0;
}

bool StringUtils::startsWithIgnoreCase(const QString &s, const QString &prefix)
{
    return s.startsWith(prefix, Qt::CaseInsensitive);
}

bool StringUtils::endsWithIgnoreCase(const QString &s, const QString &suffix)
{
    return s.endsWith(suffix, Qt::CaseInsensitive);
}

int StringUtils::indexOfIgnoreCase(const QString &s, const QString &part)
{
    return s.indexOf(part, 0, Qt::CaseInsensitive);
}

bool StringUtils::containsIgnoreCase(const QString &s, const QString &part)
{
    return indexOfIgnoreCase(s, part) != -1;
}

QString StringUtils::trim(
    const QString &text, const QString &chars, QFlags<Qt::AlignmentFlag> sides)
{
    int start = 0;
    int end = text.length();
    if (sides & Qt::AlignLeft) {
        while (start < end && chars.indexOf(text.at(start)) != -1)
            ++start;
    }
    if (sides & Qt::AlignRight) {
        while (end > start && chars.indexOf(text.at(end - 1)) != -1)
            --end;
    }
    if (start == 0 && end == text.length())
        return text;
    return text.mid(start, end - start);
}

QString StringUtils::trimLeft(const QString &text, const QString &chars)
{
    return trim(text, chars, Qt::AlignLeft);
}

QString StringUtils::trimRight(const QString &text, const QString &chars)
{
    return trim(text, chars, Qt::AlignRight);
}

QString StringUtils::trimLeft(const QString &text, const QRegExp &pattern)
{
    if (pattern.indexIn(text, 0, QRegExp::CaretAtZero) == 0)
        return text.mid(pattern.matchedLength());
    return text;
}

QString StringUtils::trimRight(const QString &text, const QRegExp &pattern)
{
    // The backward search stops at the latest position where the pattern matches, so a repeating
    // pattern loses only its last match here; callers rely on this.
    const int position = pattern.lastIndexIn(text, -1, QRegExp::CaretAtZero);
    if (position >= 0 && position + pattern.matchedLength() == text.length())
        return text.left(position);
    return text;
}

QString StringUtils::truncate(
    const QString &text, int maxLength, QFlags<Qt::AlignmentFlag> alignment)
{
    // A negative length is not a valid request; it keeps nothing, as 0 does.
    if (maxLength < 0)
        maxLength = 0;
    if (maxLength >= text.length())
        return text;
    // Only the right alignment honours AlignAbsolute; centre and justify combined with it fall back
    // to the left rule. Kept because callers rely on it.
    switch (int(alignment & 0x1F)) {
    case Qt::AlignRight:
    case Qt::AlignRight | Qt::AlignAbsolute:
        return ellipsis() + text.right(maxLength);
    case Qt::AlignHCenter:
        return ellipsis() + text.mid((text.length() - maxLength) / 2, maxLength) + ellipsis();
    case Qt::AlignJustify:
        return text.left((maxLength + 1) / 2) + ellipsis() + text.right(maxLength / 2);
    default:
        return text.left(maxLength) + ellipsis();
    }
}

QStringList StringUtils::splitStringList(
    const QString &text, const QRegExp &separator, SplitBehavior behavior)
{
    return compat::split(text, separator, behavior);
}

QStringList StringUtils::splitStringList(
    const QStringList &texts, const QString &separator, SplitBehavior behavior)
{
    return splitEach(texts, separator, behavior);
}

QStringList StringUtils::splitStringList(
    const QStringList &texts, const QRegExp &separator, SplitBehavior behavior)
{
    return splitEach(texts, separator, behavior);
}

QSet<QString> StringUtils::splitStringSet(
    const QString &text, const QRegExp &separator, SplitBehavior behavior)
{
    const QStringList parts = compat::split(text, separator, behavior);
    return QSet<QString>(parts.cbegin(), parts.cend());
}

QSet<QString> StringUtils::splitStringSet(
    const QStringList &texts, const QRegExp &separator, SplitBehavior behavior)
{
    const QStringList parts = splitEach(texts, separator, behavior);
    return QSet<QString>(parts.cbegin(), parts.cend());
}

void StringUtils::splitFirst(
    const QString &text, const QString &separator, QString &head, QString &tail)
{
    const int i = text.indexOf(separator, 0);
    if (i == -1) {
        head = text;
        // Empty but not null, unlike splitKeyValue's value; callers tell the two apart.
        tail = emptyString();
        return;
    }
    head = text.left(i);
    tail = text.mid(i + separator.length());
}

void StringUtils::splitKeyValue(const QString &text, QString &key, QString &value, QChar separator)
{
    const int i = text.indexOf(separator);
    if (i == -1) {
        key = text;
        // Null, so that a text without separator differs from one with nothing after it.
        value = QString();
        return;
    }
    key = text.left(i);
    value = text.mid(i + 1);
}

QStringList StringUtils::splitScript(
    const QString &script, const QString &commentMarker, const QString &separator)
{
    return stripCommentLines(script, commentMarker)
        .split(separator, SkipEmptyParts, Qt::CaseSensitive);
}

QString StringUtils::stripCommentLines(const QString &text, const QString &commentMarker)
{
    QString result;
    const QStringList lines = text.split(QLatin1Char('\n'), KeepEmptyParts);
    for (QString line : lines) {
        const int i = line.indexOf(commentMarker);
        if (i == 0)
            continue;
        if (i > 0)
            line = line.left(i);
        line = line.trimmed();
        if (line.isEmpty())
            continue;
        if (!result.isEmpty())
            result += QLatin1Char('\n');
        result += line;
    }
    return result;
}

QString StringUtils::joinTranslated(
    const QString &context, const QSet<QString> &sourceTexts, QString separator)
{
    QString result;
    for (const QString &text : sourceTexts) {
        // The separator goes in only after a non-empty result: an empty first translation adds
        // nothing, a later one adds a separator. Kept because callers rely on it.
        if (!result.isEmpty())
            result += separator;
        result += translateLatin1(context, text);
    }
    return result;
}

QString StringUtils::concat(const QStringList &parts, const QString &separator)
{
    QString result;
    for (const QString &part : parts) {
        if (part.isEmpty())
            continue;
        if (!result.isEmpty())
            result += separator;
        result += part;
    }
    return result;
}

QString StringUtils::concat(const QString &part1, const QString &separator, const QString &part2,
    const QString &part3, const QString &part4, const QString &part5, const QString &part6,
    const QString &part7, const QString &part8, const QString &part9, const QString &part10)
{
    return concat(
        QStringList { part1, part2, part3, part4, part5, part6, part7, part8, part9, part10 },
        separator);
}

bool StringUtils::intersectsWith(const QSet<QString> &a, const QSet<QString> &b)
{
    for (const QString &x : a) {
        if (b.contains(x))
            return true;
    }
    return false;
}

bool StringUtils::intersectsOnBeginning(const QSet<QString> &a, const QSet<QString> &b)
{
    for (const QString &x : a) {
        for (const QString &y : b) {
            if (x.startsWith(y, Qt::CaseInsensitive))
                return true;
        }
    }
    return false;
}

QSet<QString> StringUtils::intersect(const QSet<QString> &a, const QSet<QString> &b)
{
    QSet<QString> result = a;
    result.intersect(b);
    return result;
}

void StringUtils::appendAll(QSet<QString> &set, const QStringList &items, const QString &context)
{
    insertAll(set, items, context);
}

void StringUtils::appendAll(QSet<QString> &set, const QSet<QString> &items, const QString &context)
{
    insertAll(set, items, context);
}

int StringUtils::removeAll(QStringList &list, const QRegExp &pattern)
{
    int removed = 0;
    for (auto it = list.begin(); it != list.end();) {
        if (pattern.exactMatch(*it)) {
            it = list.erase(it);
            ++removed;
        } else {
            ++it;
        }
    }
    return removed;
}

void StringUtils::swap(QStringList &list, int i, int j)
{
    // Indexes outside the list are not a valid request; the list is then left as it is.
    if (i < 0 || j < 0 || i >= list.size() || j >= list.size())
        return;
    const QString kept = list.at(i);
    list[i] = list.at(j);
    list[j] = kept;
}

void StringUtils::appendHex(QString &out, unsigned char byte, bool upperCase)
{
    static const char kUpper[] = "0123456789ABCDEF";
    static const char kLower[] = "0123456789abcdef";
    const char *digits = upperCase ? kUpper : kLower;
    out += QLatin1Char(digits[byte >> 4]);
    out += QLatin1Char(digits[byte & 0x0F]);
}

QString StringUtils::toHex(unsigned char value, bool upperCase)
{
    QString out;
    out.reserve(2);
    appendHex(out, value, upperCase);
    return out;
}

QString StringUtils::toHex(unsigned short value, bool upperCase, const QString &separator)
{
    return hexOfValue(value, upperCase, separator);
}

QString StringUtils::toHex(unsigned int value, bool upperCase, const QString &separator)
{
    return hexOfValue(value, upperCase, separator);
}

QString StringUtils::toHex(unsigned long long value, bool upperCase, const QString &separator)
{
    return hexOfValue(value, upperCase, separator);
}

QString StringUtils::toHex(const QByteArray &data, bool upperCase, const QString &separator)
{
    // An empty array gives an empty string, whatever the separator (no negative reservation).
    if (data.isEmpty())
        return QString();
    const int n = data.size();
    QString out;
    out.reserve((n - 1) * separator.length() + 2 * n);
    for (int i = 0; i < n; ++i) {
        if (i != 0)
            out += separator;
        appendHex(out, static_cast<unsigned char>(data.at(i)), upperCase);
    }
    return out;
}

QString StringUtils::encodeBase64(const QByteArray &data)
{
    return compat::fromAscii(data.toBase64().constData());
}

QString StringUtils::encodeBase64(const QString &text)
{
    return encodeBase64(compat::toAscii(text));
}

QString StringUtils::encodeBase64(const char *data, int length)
{
    return encodeBase64(QByteArray(data, length));
}

QString StringUtils::decodeBase64(const QString &text)
{
    // Read up to the first zero byte: the function is meant for text, binary data is cut there.
    return compat::fromAscii(QByteArray::fromBase64(compat::toAscii(text)).constData());
}

unsigned int StringUtils::decodeUtf8(const char *&p)
{
    // Only ASCII and two-byte sequences decode correctly: a longer sequence reads just the byte
    // after its lead and repeats its six bits in every slot, and 0xFE/0xFF take the byte after
    // next. Kept as it is because callers rely on it. The lead byte is always passed, a zero one
    // too, so that a walk over a buffer of known length moves on; a zero continuation byte is never
    // stepped over (it reads as 0), so a sequence cut short by the terminator never reads past it.
    const unsigned int b = static_cast<unsigned char>(*p++);
    if (b < 0x80)
        return b;
    if ((b & 0xC0) == 0x80)
        return b & 0x3F;
    if ((b & 0xE0) == 0xC0) {
        const unsigned char c = takeByte(p);
        return ((b & 0x1F) << 6) | (c & 0x3Fu);
    }
    if ((b & 0xF0) == 0xE0)
        return ((b << 12) & 0xFFFF) | repeatSixBits(takeByte(p), 2);
    if ((b & 0xF8) == 0xF0)
        return ((b & 0x07) << 18) | repeatSixBits(takeByte(p), 3);
    if ((b & 0xFC) == 0xF8)
        return ((b & 0x03) << 24) | repeatSixBits(takeByte(p), 4);
    if ((b & 0xFE) == 0xFC)
        return ((b & 0x01) << 30) | repeatSixBits(takeByte(p), 5);
    // 0xFE and 0xFF: the byte between is skipped; if it is the terminator, the next one is not
    // read.
    if (takeByte(p) == 0)
        return 0;
    const unsigned char c = takeByte(p);
    return (static_cast<unsigned int>(c & 0x03) << 30) | repeatSixBits(c, 5);
}

bool StringUtils::equalsUtf8(const QString &text, const char *utf8)
{
    if (text.isEmpty())
        return true;
    // A null pointer is not a valid text; it reads as an empty one.
    if (!utf8 || *utf8 == 0)
        return false;
    // True when text is a prefix of the decoded UTF-8 text, not only when both are equal.
    const char *p = utf8;
    for (const QChar c : text) {
        if (*p == 0)
            return false;
        if (decodeUtf8(p) != c.unicode())
            return false;
    }
    return true;
}

bool StringUtils::toBool(const QString &text, bool *ok)
{
    const QVariant variant(text);
    if (ok)
        *ok = compat::canConvert(variant, QMetaType::Bool);
    return variant.toBool();
}

QVariant StringUtils::toVariant(const QString &text, VariantType type)
{
    if (int(type) == QMetaType::QStringList)
        return QVariant(text.split(QLatin1Char('\n'), KeepEmptyParts));
    QVariant variant(text);
    if (compat::convert(variant, int(type)))
        return variant;
    // The buffer is rewound but not emptied: the bytes are appended behind what an earlier call
    // left, and the first value the buffer holds is read. Kept because callers rely on it (one
    // instance per value converts back correctly).
    mBuffer.reset();
    mBuffer.buffer().append(QByteArray::fromBase64(compat::toAscii(text)));
    // The text may come from anywhere: whatever Qt cannot read, or could not write again, gives an
    // invalid value, including lengths that ask for more memory than there is.
    try {
        mStream.resetStatus();
        if (!readableWithin(mStream, kMaxNesting))
            return QVariant();
        mBuffer.reset();
        QVariant result;
        mStream >> result;
        if (mStream.status() != QDataStream::Ok || !writable(result))
            return QVariant();
        return result;
    } catch (const std::bad_alloc &) {
        return QVariant();
    }
}

QString StringUtils::toString(const QVariant &value)
{
    if (compat::isNull(value) || !value.isValid())
        return emptyString();
    if (compat::canConvert(value, QMetaType::QString))
        return value.toString();
    if (compat::canConvert(value, QMetaType::QStringList))
        return value.toStringList().join(QLatin1Char('\n'));
    // A value Qt cannot serialise is outside the contract; it gives the text of an invalid value.
    if (!writable(value))
        return emptyString();
    // Overwrites from position 0 and encodes the whole array, so bytes of a longer earlier value
    // stay behind the new ones. Kept because callers rely on it.
    mBuffer.reset();
    mStream.resetStatus();
    mStream << value;
    return encodeBase64(mBuffer.buffer());
}

} // namespace ko

QStringList operator-=(QStringList &list, const QString &item)
{
    list.removeAll(item);
    return list;
}

QStringList operator-=(QStringList &list, const QStringList &items)
{
    // A copy, so that a list subtracted from itself is walked safely.
    const QStringList toRemove = items;
    for (const QString &item : toRemove)
        list.removeAll(item);
    return list;
}

QStringList operator*=(QStringList &list, const QString &item)
{
    if (!list.contains(item))
        list.append(item);
    return list;
}

QStringList operator*=(QStringList &list, const QStringList &items)
{
    // A copy, so that a list merged with itself is walked safely.
    const QStringList toAdd = items;
    for (const QString &item : toAdd) {
        if (!list.contains(item))
            list.append(item);
    }
    return list;
}
