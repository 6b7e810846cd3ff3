// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#include "io/QtSettingsAdaptor.h"

#include "compat/QtCompat_p.h"

#include <QSettings>

#include <limits>

namespace ko
{

namespace
{

// Over the exact length, embedded zero bytes included. A string beyond QString's
// capacity is outside the contract and is cut to it.
QString toQt(const std::string &text)
{
    const size_t length = qMin(text.size(), size_t(std::numeric_limits<int>::max()));
    return compat::fromAscii(text.data(), int(length));
}

std::string fromQt(const QString &text)
{
    const QByteArray bytes = compat::toAscii(text);
    return std::string(bytes.constData(), size_t(bytes.size()));
}

} // namespace

QtSettingsAdaptor::QtSettingsAdaptor(QSettings &settings)
    : mSettings(&settings)
{ }

QtSettingsAdaptor::~QtSettingsAdaptor() = default;

bool QtSettingsAdaptor::isWritable() const
{
    return mSettings->isWritable();
}

void QtSettingsAdaptor::beginGroup(const std::string &prefix)
{
    mSettings->beginGroup(toQt(prefix));
}

void QtSettingsAdaptor::endGroup()
{
    mSettings->endGroup();
}

std::string QtSettingsAdaptor::group() const
{
    return fromQt(mSettings->group());
}

bool QtSettingsAdaptor::contains(const std::string &key)
{
    return mSettings->contains(toQt(key));
}

void QtSettingsAdaptor::remove(const std::string &key)
{
    mSettings->remove(toQt(key));
}

void QtSettingsAdaptor::setValue(const std::string &key, const std::string &value)
{
    mSettings->setValue(toQt(key), QVariant(toQt(value)));
}

std::string QtSettingsAdaptor::value(const std::string &key, const std::string &defaultValue) const
{
    return fromQt(mSettings->value(toQt(key), QVariant(toQt(defaultValue))).toString());
}

void QtSettingsAdaptor::sync()
{
    mSettings->sync();
}

int QtSettingsAdaptor::status() const
{
    return int(mSettings->status());
}

} // namespace ko
