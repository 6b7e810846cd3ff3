// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_KOMLOGHANDLER_H
#define KO_KOMLOGHANDLER_H

#include "coreqt_export.h"

#include "platform/kom/komStatusMessage.h"

namespace ko
{

/**
 * Writes the middleware's status messages into ko::Log::instance(), marked
 * " kom> ": types 40, 45 and 50 at level 1, 60 at 2, 70 at 3, 80 at 4; any other
 * type is dropped. Filtering by verbosity is left to the status message processor.
 */
class COREQT_EXPORT KomLogHandler : public komStatusMessageHandlerInterface
{
public:
    /** A handler reporting @p verbosity to the processor; it is not registered anywhere yet. */
    explicit KomLogHandler(kom::StatusMessageType verbosity);
    /** Destroys the handler; it must no longer be registered. */
    ~KomLogHandler() override;

    /**
     * Writes one status message into the log at the level its type maps to; @p sender is not used.
     * The handler's own verbosity is not looked at here: filtering is the processor's.
     */
    void sendStatusMessage(
        kom::StatusMessageType type, const komString &text, const komObject *sender) override;
    /** Sets the verbosity reported to the processor. */
    void setStatusMessageVerbosity(kom::StatusMessageType verbosity) override;
    /** The verbosity reported to the processor. */
    kom::StatusMessageType statusMessageVerbosity() const override;

    /** The verbosity reported to the processor; the same as statusMessageVerbosity(). */
    kom::StatusMessageType verbosity() const;
    /** Sets the verbosity reported to the processor; the same as setStatusMessageVerbosity(). */
    void setVerbosity(kom::StatusMessageType verbosity);

    /** Sets the verbosity of the handler made by the last install(); nothing before the first
     * install(). */
    static void setDefaultVerbosity(kom::StatusMessageType verbosity);
    /**
     * Announces "Installing KomLogHandler..." to the handlers installed so far, removes
     * them all from the default processor and installs a new handler (kept in s_instance).
     */
    static void install(kom::StatusMessageType verbosity);

    /** The handler made by the last install(), or null. Earlier ones are not deleted. */
    static KomLogHandler *s_instance;

private:
    kom::StatusMessageType mVerbosity;
};

} // namespace ko

#endif // KO_KOMLOGHANDLER_H
