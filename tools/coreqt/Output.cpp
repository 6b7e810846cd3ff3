// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "Output.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QStringList>

#include <cmath>
#include <cstdio>

#include <unistd.h>

namespace tool
{

namespace
{

// Integral numbers are written without exponent, as scripts expect counts and time stamps.
QString textOf(const QJsonValue &value)
{
    switch (value.type()) {
    case QJsonValue::String:
        return value.toString();
    case QJsonValue::Double: {
        const double d = value.toDouble();
        if (std::floor(d) == d && std::fabs(d) < 9007199254740992.0)
            return QString::number(qint64(d));
        return QString::number(d, 'g', 15);
    }
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    default:
        return QString();
    }
}

QJsonObject objectOf(const Record &record)
{
    QJsonObject object;
    for (const auto &field : record.fields())
        object.insert(field.first, field.second);
    return object;
}

void writeTo(FILE *file, const QByteArray &bytes)
{
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), file);
    std::fflush(file);
}

QString hexByte(int byte)
{
    return QStringLiteral("\\x%1").arg(byte, 2, 16, QLatin1Char('0'));
}

// Control characters would break the lines and fields of text output, so they are written as
// escapes, and a backslash is doubled so that every escape reads back unambiguously. The bytes of
// a file name that are not UTF-8 (held as U+DC80..U+DCFF, see FileNames.h) show as "\xNN".
QString escaped(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        const ushort c = text.at(i).unicode();
        const bool rawByte
            = c >= 0xDC80 && c <= 0xDCFF && (i == 0 || !text.at(i - 1).isHighSurrogate());
        if (c == '\\')
            result += QLatin1String("\\\\");
        else if (c == '\t')
            result += QLatin1String("\\t");
        else if (c == '\n')
            result += QLatin1String("\\n");
        else if (c == '\r')
            result += QLatin1String("\\r");
        else if (c < 0x20 || (c >= 0x7F && c < 0xA0))
            result += hexByte(c);
        else if (rawByte)
            result += hexByte(c - 0xDC00);
        else
            result += text.at(i);
    }
    return result;
}

} // namespace

Record &Record::add(const QString &name, const QJsonValue &value)
{
    mFields.append(qMakePair(name, value));
    return *this;
}

Report::Report(Shape shape)
    : mShape(shape)
{
    if (mShape == Properties)
        mRecords.append(Record());
}

void Report::addRow(const Record &record)
{
    mRecords.append(record);
}

void Report::set(const QString &name, const QJsonValue &value)
{
    mRecords.last().add(name, value);
}

QByteArray Report::render(Format format) const
{
    if (format == Format::Json) {
        QJsonDocument document;
        if (mShape == Properties) {
            document.setObject(objectOf(mRecords.first()));
        } else {
            QJsonArray rows;
            for (const Record &record : mRecords)
                rows.append(objectOf(record));
            document.setArray(rows);
        }
        return document.toJson(QJsonDocument::Indented);
    }
    QString text;
    if (mShape == Properties) {
        for (const auto &field : mRecords.first().fields())
            text += field.first + QLatin1Char('\t') + escaped(textOf(field.second))
                + QLatin1Char('\n');
    } else {
        for (const Record &record : mRecords) {
            QStringList values;
            for (const auto &field : record.fields())
                values << escaped(textOf(field.second));
            text += values.join(QLatin1Char('\t')) + QLatin1Char('\n');
        }
    }
    return text.toUtf8();
}

void Report::print(Format format) const
{
    writeTo(stdout, render(format));
}

QString hex32(quint32 value)
{
    return QStringLiteral("0x")
        + QStringLiteral("%1").arg(value, 8, 16, QLatin1Char('0')).toUpper();
}

void printLine(const QString &line)
{
    writeTo(stdout, (line + QLatin1Char('\n')).toUtf8());
}

void printText(const QString &text)
{
    writeTo(stdout, text.toUtf8());
}

void printErrorLine(const QString &line)
{
    writeTo(stderr, (escaped(line) + QLatin1Char('\n')).toUtf8());
}

Progress::Progress(const QString &label, qint64 total, Unit unit, bool wanted)
    : mLabel(label)
    , mTotal(total)
    , mUnit(unit)
    , mShown(wanted && ::isatty(STDERR_FILENO) == 1)
    , mDone(0)
{ }

Progress::~Progress()
{
    finish();
}

void Progress::update(qint64 done)
{
    mDone = done;
    if (!mShown)
        return;
    if (mSinceDraw.isValid() && mSinceDraw.elapsed() < 100)
        return;
    mSinceDraw.start();
    draw(done);
}

void Progress::finish()
{
    if (!mShown)
        return;
    draw(mDone);
    writeTo(stderr, "\n");
    mShown = false;
}

void Progress::draw(qint64 done)
{
    const int percent = mTotal > 0 ? int(done * 100 / mTotal) : 100;
    const QLocale locale;
    const QString amount = mUnit == Bytes
        ? QStringLiteral("%1 of %2")
              .arg(locale.formattedDataSize(done, 1), locale.formattedDataSize(mTotal, 1))
        : QStringLiteral("%1 of %2 jobs").arg(done).arg(mTotal);
    // Carriage return and erase-to-end-of-line redraw the line in place.
    writeTo(stderr,
        QStringLiteral("\r\033[K%1: %2% (%3)").arg(mLabel).arg(percent).arg(amount).toUtf8());
}

} // namespace tool
