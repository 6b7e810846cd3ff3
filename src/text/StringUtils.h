// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_STRINGUTILS_H
#define KO_STRINGUTILS_H

#include "compat/QtCompat.h"
#include "coreqt_export.h"

#include <QBuffer>
#include <QDataStream>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>

class QRegExp;

namespace ko
{

/**
 * Text helpers over QString and QStringList: case-insensitive tests, trimming, truncation,
 * splitting, list and set algebra, hex, Base64 and UTF-8 helpers. An instance converts QVariant
 * values to and from text.
 */
class COREQT_EXPORT StringUtils
{
public:
    /** Opens the instance's buffer for reading and writing; it serves toVariant() and toString().
     */
    StringUtils();

    /**
     * Separator pattern "\W+" (runs of non-word characters) for splitting a text into words. A
     * search changes its match state: threads that share it copy it first.
     */
    static QRegExp splitWords;

    /** True when @p a and @p b are equal ignoring case. */
    static bool equalsIgnoreCase(const QString &a, const QString &b);
    /** True when @p s starts with @p prefix ignoring case. */
    static bool startsWithIgnoreCase(const QString &s, const QString &prefix);
    /** True when @p s ends with @p suffix ignoring case. */
    static bool endsWithIgnoreCase(const QString &s, const QString &suffix);
    /** Position of the first @p part in @p s ignoring case, -1 when absent. */
    static int indexOfIgnoreCase(const QString &s, const QString &part);
    /** True when @p s contains @p part ignoring case. */
    static bool containsIgnoreCase(const QString &s, const QString &part);

    /** Removes every character that occurs in @p chars from the ends of @p text chosen by @p sides.
     */
    static QString trim(const QString &text, const QString &chars,
        QFlags<Qt::AlignmentFlag> sides = Qt::AlignLeft | Qt::AlignRight);
    /** Removes every character that occurs in @p chars from the start of @p text. */
    static QString trimLeft(const QString &text, const QString &chars);
    /** Removes every character that occurs in @p chars from the end of @p text. */
    static QString trimRight(const QString &text, const QString &chars);
    /**
     * Removes one match of @p pattern that begins at the very start of @p text; "\s+" removes a
     * whole leading run of blanks. The search leaves its match state in @p pattern.
     */
    static QString trimLeft(const QString &text, const QRegExp &pattern);
    /**
     * Removes the last match of @p pattern when it ends at the very end of @p text. Kept as it
     * always was, unlike trimLeft(): the backward search stops at the latest place the pattern
     * matches, so
     * "\s+" removes only the last blank of a trailing run.
     */
    static QString trimRight(const QString &text, const QRegExp &pattern);

    /**
     * Keeps @p maxLength characters of @p text (its start, end, middle or both ends by @p
     * alignment) and marks the cut with "..."; the ellipsis comes on top of @p maxLength, so a cut
     * text is longer than it. Kept as it always was: only Qt::AlignRight honours Qt::AlignAbsolute,
     * while centre and justify combined with it keep the start as Qt::AlignLeft does.
     */
    static QString truncate(
        const QString &text, int maxLength, QFlags<Qt::AlignmentFlag> alignment = Qt::AlignLeft);

    /** The parts of @p text between matches of @p separator. */
    static QStringList splitStringList(
        const QString &text, const QRegExp &separator, SplitBehavior behavior = KeepEmptyParts);
    /** The parts of every element of @p texts at @p separator, in list order. */
    static QStringList splitStringList(const QStringList &texts, const QString &separator,
        SplitBehavior behavior = KeepEmptyParts);
    /** The parts of every element of @p texts between matches of @p separator, in list order. */
    static QStringList splitStringList(const QStringList &texts, const QRegExp &separator,
        SplitBehavior behavior = KeepEmptyParts);
    /** The set of the parts of @p text between matches of @p separator. */
    static QSet<QString> splitStringSet(
        const QString &text, const QRegExp &separator, SplitBehavior behavior = KeepEmptyParts);
    /** The set of the parts of all elements of @p texts between matches of @p separator. */
    static QSet<QString> splitStringSet(const QStringList &texts, const QRegExp &separator,
        SplitBehavior behavior = KeepEmptyParts);
    /** Splits @p text at the first @p separator; without one, @p head is the text and @p tail
     * empty, not null. */
    static void splitFirst(
        const QString &text, const QString &separator, QString &head, QString &tail);
    /** Splits @p text at the first @p separator; without one, @p key is the text and @p value null.
     */
    static void splitKeyValue(
        const QString &text, QString &key, QString &value, QChar separator = QLatin1Char('='));
    /**
     * The statements of @p script as stripCommentLines() leaves it, split at @p separator, empty
     * parts dropped; a statement may still hold line breaks.
     */
    static QStringList splitScript(const QString &script,
        const QString &commentMarker = QStringLiteral("#"),
        const QString &separator = QStringLiteral(";"));

    /**
     * @p text without comments, blank lines and indentation; lines are trimmed and joined with
     * "\n", with no line break at the end. A line whose first non-blank text is the marker goes; an
     * empty marker therefore leaves nothing.
     */
    static QString stripCommentLines(
        const QString &text, const QString &commentMarker = QStringLiteral("#"));
    /**
     * The translations of @p sourceTexts in @p context, in the set's own (unsorted) order, joined
     * with
     * @p separator; a null string for an empty set. Texts pass through Latin-1 on their way to the
     * translator, so other characters come back as '?' without a translation. Kept as it always
     * was: the separator follows only a non-empty result, so an empty first translation adds
     * nothing.
     */
    static QString joinTranslated(const QString &context, const QSet<QString> &sourceTexts,
        QString separator = QStringLiteral(", "));
    /** The non-empty @p parts joined with @p separator. */
    static QString concat(const QStringList &parts, const QString &separator);
    /** The non-empty parts among @p part1 and @p part2 to @p part10, joined with @p separator. */
    static QString concat(const QString &part1, const QString &separator, const QString &part2,
        const QString &part3 = QString(), const QString &part4 = QString(),
        const QString &part5 = QString(), const QString &part6 = QString(),
        const QString &part7 = QString(), const QString &part8 = QString(),
        const QString &part9 = QString(), const QString &part10 = QString());

    /** True when some element of @p a is contained in @p b (case-sensitive). */
    static bool intersectsWith(const QSet<QString> &a, const QSet<QString> &b);
    /**
     * True when some element of @p a starts with some element of @p b, ignoring case, unlike
     * intersectsWith(); an empty element of @p b matches every element of @p a.
     */
    static bool intersectsOnBeginning(const QSet<QString> &a, const QSet<QString> &b);
    /** The elements contained in both @p a and @p b. */
    static QSet<QString> intersect(const QSet<QString> &a, const QSet<QString> &b);
    /**
     * Inserts every item into @p set, translated in @p context when it is not empty; a translated
     * item passes through Latin-1, so other characters come back as '?' without a translation.
     */
    static void appendAll(
        QSet<QString> &set, const QStringList &items, const QString &context = QString());
    /** As appendAll(QSet<QString>&, const QStringList&, const QString&), for a set of items. */
    static void appendAll(
        QSet<QString> &set, const QSet<QString> &items, const QString &context = QString());
    /**
     * Removes every element that @p pattern matches exactly (whole element, not a part); returns
     * how many were removed.
     */
    static int removeAll(QStringList &list, const QRegExp &pattern);
    /** Exchanges the elements at @p i and @p j; an index outside the list leaves it unchanged. */
    static void swap(QStringList &list, int i, int j);

    /** Appends the two hexadecimal digits of @p byte to @p out. */
    static void appendHex(QString &out, unsigned char byte, bool upperCase = true);
    /** The two hexadecimal digits of @p value. */
    static QString toHex(unsigned char value, bool upperCase = true);
    /** The 2 bytes of @p value in hexadecimal, most significant first, @p separator between bytes.
     */
    static QString toHex(
        unsigned short value, bool upperCase = true, const QString &separator = QString());
    /** The 4 bytes of @p value in hexadecimal, most significant first, @p separator between bytes.
     */
    static QString toHex(
        unsigned int value, bool upperCase = true, const QString &separator = QString());
    /** The 8 bytes of @p value in hexadecimal, most significant first, @p separator between bytes.
     */
    static QString toHex(
        unsigned long long value, bool upperCase = true, const QString &separator = QString());
    /** Every byte of @p data in hexadecimal, in order, @p separator between bytes; empty for no
     * bytes. */
    static QString toHex(
        const QByteArray &data, bool upperCase = true, const QString &separator = QString());

    /** The Base64 text of @p data. */
    static QString encodeBase64(const QByteArray &data);
    /** The Base64 text of the Latin-1 bytes of @p text. */
    static QString encodeBase64(const QString &text);
    /** The Base64 text of @p length bytes at @p data. */
    static QString encodeBase64(const char *data, int length);
    /** The text whose Base64 form is @p text, read as Latin-1 and cut at its first zero byte
     * (binary data is cut there too: the function is meant for text). */
    static QString decodeBase64(const QString &text);
    /**
     * Reads one code point at @p p and advances @p p. Only ASCII and two-byte sequences decode
     * correctly: a longer one uses just the byte after its lead (0xFE/0xFF the byte after next). A
     * zero lead byte is passed like any other; a zero where a continuation byte should be is not,
     * and reads as 0.
     */
    static unsigned int decodeUtf8(const char *&p);
    /** True when @p text is empty or a prefix of the zero-terminated UTF-8 text @p utf8. */
    static bool equalsUtf8(const QString &text, const char *utf8);
    /** @p text read as a boolean the way QVariant converts text; @p ok tells whether it converted.
     */
    static bool toBool(const QString &text, bool *ok = nullptr);

    /**
     * @p text converted to @p type (a QVariant::Type on Qt 5, a QMetaType::Type on Qt 6), or else
     * read as Base64 of a serialised QVariant (Qt 5.15's data stream format). Text that does not
     * hold a readable value gives an invalid variant, never a crash: a short read, a length that
     * asks for more memory than there is, variant containers nested over 1024 deep, a value that Qt
     * could not serialise again (a date-time in an unknown time zone).
     *
     * Surprising but kept: the instance's buffer is rewound, never emptied. The decoded bytes are
     * appended behind those of earlier calls and the first value the buffer holds is read, so an
     * instance converts only its first value correctly; use a fresh instance per value.
     */
    QVariant toVariant(const QString &text, VariantType type);
    /**
     * @p value as text, or Base64 of its serialised form (Qt 5.15's data stream format) when it has
     * no text form (an empty text for a value Qt cannot serialise).
     *
     * Surprising but kept: the buffer is overwritten from its start and encoded whole, so after a
     * longer value the text also carries that value's remaining bytes; use a fresh instance per
     * value.
     */
    QString toString(const QVariant &value);

private:
    Q_DISABLE_COPY(StringUtils)

    QBuffer mBuffer;
    QDataStream mStream;
};

} // namespace ko

/** Removes every occurrence of @p item from @p list; returns a copy of the changed list. */
COREQT_EXPORT QStringList operator-=(QStringList &list, const QString &item);
/** Removes every occurrence of each of @p items from @p list; returns a copy of the changed list.
 */
COREQT_EXPORT QStringList operator-=(QStringList &list, const QStringList &items);
/** Appends @p item unless @p list contains it; returns a copy of the changed list. */
COREQT_EXPORT QStringList operator*=(QStringList &list, const QString &item);
/** Appends each of @p items that @p list does not contain yet, in order; returns a copy of the
 * changed list.
 */
COREQT_EXPORT QStringList operator*=(QStringList &list, const QStringList &items);

#endif // KO_STRINGUTILS_H
