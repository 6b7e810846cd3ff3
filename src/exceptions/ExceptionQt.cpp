// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "exceptions/ExceptionQt.h"

#include "compat/QtCompat_p.h"

#include <QIODevice>
#include <QTextStream>

#include <typeinfo>

namespace ko
{

namespace
{

// What @p write puts on a read-write text stream over a fresh string.
template <class Write> QString writtenText(Write write)
{
    QString text;
    {
        QTextStream s(&text, QIODevice::ReadWrite);
        write(s);
    }
    return text;
}

} // namespace

ExceptionQt::ExceptionQt(const QString &message, const ExceptionQt *cause)
    : Exception(std::string(), cause)
    , mMessage(message)
    , mCauseQt(nullptr)
{
    mirrorCause();
}

ExceptionQt::ExceptionQt(const ExceptionQt &other)
    : Exception(other)
    , mMessage(other.mMessage)
    , mCauseQt(nullptr)
{
    mirrorCause();
}

ExceptionQt &ExceptionQt::operator=(const ExceptionQt &other)
{
    if (this == &other)
        return *this;
    if (chainHolds(other))
        return *this = ExceptionQt(other);
    Exception::operator=(other);
    mMessage = other.mMessage;
    mirrorCause();
    return *this;
}

ExceptionQt::~ExceptionQt()
{
    if (mCauseQt) {
        // Take the copy from the base, which would otherwise free it a second time.
        delete releaseCause();
    }
}

// The base already holds its own copy of the cause (made when the cause was set or
// copied); causeQt only ever points at that copy.
void ExceptionQt::mirrorCause()
{
    mCauseQt = dynamic_cast<const ExceptionQt *>(Exception::cause());
}

bool ExceptionQt::chainHolds(const ExceptionQt &other) const
{
    for (const Exception *e = Exception::cause(); e; e = e->cause()) {
        if (e == &other)
            return true;
    }
    return false;
}

void ExceptionQt::generateWhat(std::string &out) const
{
    const QByteArray bytes = compat::toAscii(toString());
    out.assign(bytes.constData(), size_t(bytes.size()));
}

ExceptionQt *ExceptionQt::clone() const
{
    return new ExceptionQt(*this);
}

QString ExceptionQt::className() const
{
    const char *name = typeid(*this).name();
    if (*name == '*')
        ++name;
    QString result = compat::fromAscii(name);
    if (result.startsWith(QLatin1String("class ")))
        result.remove(0, 6);
    if (result.startsWith(QLatin1String("ko::")))
        result.remove(0, 4);
    return result;
}

void ExceptionQt::printMessage(QTextStream &s) const
{
    s << mMessage;
}

void ExceptionQt::setMessage(const QString &message)
{
    mMessage = message;
}

const ExceptionQt *ExceptionQt::causeQt() const
{
    return mCauseQt;
}

void ExceptionQt::setCause(const ExceptionQt *cause)
{
    Exception::setCause(cause);
    mirrorCause();
}

void ExceptionQt::setCause(const ExceptionQt &cause)
{
    setCause(&cause);
}

QString ExceptionQt::message() const
{
    return writtenText([this](QTextStream &s) { printMessage(s); });
}

void ExceptionQt::print(QTextStream &s) const
{
    for (const ExceptionQt *e = this; e; e = e->causeQt()) {
        if (e != this)
            s << QLatin1String("caused by:\t");
        s << e->className() << QLatin1String(": ");
        e->printMessage(s);
        s << QLatin1Char('\n');
    }
    s.flush();
}

QString ExceptionQt::toString() const
{
    return writtenText([this](QTextStream &s) { print(s); });
}

ExceptionQt::operator QString() const
{
    return toString();
}

QTextStream &operator<<(QTextStream &s, const ExceptionQt &e)
{
    e.print(s);
    return s;
}

} // namespace ko
