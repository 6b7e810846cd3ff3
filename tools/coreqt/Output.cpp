#include "Output.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <cmath>
#include <cstdio>

#include <unistd.h>

namespace tool
{

namespace
{

// Integral numbers are written without exponent, as scripts expect counts and time stamps.
QString textOf(const QJsonValue& value)
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

QJsonObject objectOf(const Record& record)
{
    QJsonObject object;
    for (const auto& field : record.fields())
        object.insert(field.first, field.second);
    return object;
}

void writeTo(FILE* file, const QByteArray& bytes)
{
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), file);
    std::fflush(file);
}

QString mebibytes(qint64 bytes)
{
    return QString::number(double(bytes) / (1024.0 * 1024.0), 'f', 1);
}

} // namespace

Record& Record::add(const QString& name, const QJsonValue& value)
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

void Report::addRow(const Record& record)
{
    mRecords.append(record);
}

void Report::set(const QString& name, const QJsonValue& value)
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
            for (const Record& record : mRecords)
                rows.append(objectOf(record));
            document.setArray(rows);
        }
        return document.toJson(QJsonDocument::Indented);
    }
    QString text;
    if (mShape == Properties) {
        for (const auto& field : mRecords.first().fields())
            text += field.first + QLatin1Char('\t') + textOf(field.second) + QLatin1Char('\n');
    } else {
        for (const Record& record : mRecords) {
            QStringList values;
            for (const auto& field : record.fields())
                values << textOf(field.second);
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
    return QStringLiteral("0x") + QStringLiteral("%1").arg(value, 8, 16, QLatin1Char('0')).toUpper();
}

void printLine(const QString& line)
{
    writeTo(stdout, (line + QLatin1Char('\n')).toUtf8());
}

void printErrorLine(const QString& line)
{
    writeTo(stderr, (line + QLatin1Char('\n')).toUtf8());
}

Progress::Progress(const QString& label, qint64 total, Unit unit, bool wanted)
    : mLabel(label)
    , mTotal(total)
    , mUnit(unit)
    , mShown(wanted && ::isatty(STDERR_FILENO) == 1)
    , mLastDraw(-1)
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
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (mLastDraw >= 0 && now - mLastDraw < 100)
        return;
    mLastDraw = now;
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
    const QString amount = mUnit == Bytes
        ? QStringLiteral("%1 of %2 MiB").arg(mebibytes(done), mebibytes(mTotal))
        : QStringLiteral("%1 of %2 jobs").arg(done).arg(mTotal);
    // Carriage return and erase-to-end-of-line redraw the line in place.
    writeTo(stderr, QStringLiteral("\r\033[K%1: %2% (%3)").arg(mLabel).arg(percent).arg(amount).toUtf8());
}

} // namespace tool
