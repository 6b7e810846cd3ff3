// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_QTSETTINGSADAPTOR_H
#define KO_QTSETTINGSADAPTOR_H

#include "coreqt_export.h"

#include "platform/core/AbstractSettingsStorage.h"

#include <QtGlobal>

#include <string>

QT_BEGIN_NAMESPACE
class QSettings;
QT_END_NAMESPACE

namespace ko
{

/**
 * The suite's settings storage on top of a caller's QSettings: keys and values pass through
 * QString::fromAscii()/toAscii(), and values are always stored as strings.
 */
class COREQT_EXPORT QtSettingsAdaptor : public AbstractSettingsStorage
{
public:
    /** Works on @p settings, which the caller keeps alive as long as the adaptor. */
    explicit QtSettingsAdaptor(QSettings &settings);
    /** Destroys the adaptor; the settings are left alone. */
    ~QtSettingsAdaptor() override;

    /** Whether the settings can be written. */
    bool isWritable() const override;
    /** Appends @p prefix to the current group. */
    void beginGroup(const std::string &prefix) override;
    /** Leaves the innermost group. */
    void endGroup() override;
    /** The current group, nested groups joined by "/". */
    std::string group() const override;
    /** Whether @p key has a value. */
    bool contains(const std::string &key) override;
    /** Removes @p key and everything below it. */
    void remove(const std::string &key) override;
    /** Stores @p value under @p key as a string. */
    void setValue(const std::string &key, const std::string &value) override;
    /**
     * The value under @p key in its string form, or @p defaultValue when there is none; a value
     * stored by other means comes back as QVariant::toString() gives it (empty when it has no text
     * form).
     */
    std::string value(const std::string &key, const std::string &defaultValue) const override;
    /** Writes pending changes and reloads changes made elsewhere. */
    void sync() override;
    /** The settings' status: 0 no error, 1 access error, 2 format error. */
    int status() const override;

private:
    Q_DISABLE_COPY(QtSettingsAdaptor)

    QSettings *mSettings;
};

} // namespace ko

#endif // KO_QTSETTINGSADAPTOR_H
