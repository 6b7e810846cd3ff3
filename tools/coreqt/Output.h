// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_TOOL_OUTPUT_H
#define COREQT_TOOL_OUTPUT_H

#include "Command.h"

#include <QElapsedTimer>
#include <QJsonValue>
#include <QPair>
#include <QString>
#include <QVector>

namespace tool
{

/** The named values of one result, in output order. */
class Record
{
public:
    /** Appends the field @p name with @p value (null: no value). */
    Record &add(const QString &name, const QJsonValue &value);
    /** The fields in the order they were added. */
    const QVector<QPair<QString, QJsonValue>> &fields() const { return mFields; }

private:
    QVector<QPair<QString, QJsonValue>> mFields;
};

/**
 * A command's result, written in one piece once the command has succeeded, so that a failing
 * command prints nothing on standard output.
 *
 * Rows: one line per record with its values separated by tabs, or a JSON array of objects.
 * Text output escapes control characters in values ("\t", "\n", "\x01") and doubles backslashes.
 * Properties: one record, one "name<TAB>value" line per field, or a JSON object.
 */
class Report
{
public:
    enum Shape { Rows, Properties };

    explicit Report(Shape shape);

    /** Adds a row (Rows reports). */
    void addRow(const Record &record);
    /** Adds the field @p name with @p value (Properties reports). */
    void set(const QString &name, const QJsonValue &value);

    /** The report as UTF-8 text or JSON. */
    QByteArray render(Format format) const;
    /** Writes render(@p format) to standard output. */
    void print(Format format) const;

private:
    Shape mShape;
    QVector<Record> mRecords;
};

/** A 32-bit value as eight hexadecimal digits with the prefix "0x", such as "0x00000008". */
QString hex32(quint32 value);
/** Writes @p line and a line feed to standard output (UTF-8) and flushes it. */
void printLine(const QString &line);
/** Writes @p text as it is to standard output (UTF-8) and flushes it. */
void printText(const QString &text);
/** Writes @p line and a line feed to standard error (UTF-8), control characters escaped. */
void printErrorLine(const QString &line);

/**
 * A progress line on standard error, redrawn at most ten times a second. It is shown only when
 * asked for and standard error is a terminal; otherwise every call does nothing.
 */
class Progress
{
public:
    enum Unit { Bytes, Jobs };

    /** A progress line "label: done of total" for @p total units; shown when @p wanted and on a
     * terminal. */
    Progress(const QString &label, qint64 total, Unit unit, bool wanted = true);
    /** Ends the line when it was shown. */
    ~Progress();

    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    /** True when the line is drawn. */
    bool isShown() const { return mShown; }
    /** Redraws the line for @p done units unless it was drawn less than 100 ms ago. */
    void update(qint64 done);
    /** Draws the final state and ends the line; later calls do nothing. */
    void finish();

private:
    void draw(qint64 done);

    QString mLabel;
    qint64 mTotal;
    Unit mUnit;
    bool mShown;
    QElapsedTimer mSinceDraw;
    qint64 mDone;
};

} // namespace tool

#endif // COREQT_TOOL_OUTPUT_H
