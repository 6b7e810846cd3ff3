// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_CLOSEONEXIT_H
#define KO_CLOSEONEXIT_H

#include "coreqt_export.h"

#include <QtGlobal>

class QIODevice;

namespace ko
{

/** Owns an object, or an array made with new[], and deletes it when the guard ends. */
template <class T> class DeleteOnExit
{
public:
    /** Owns @p object (may be null). */
    explicit DeleteOnExit(T *object = nullptr)
        : object(object)
        , isArray(false)
    { }
    /** Owns @p array, made with new[] when @p isArray is true. */
    DeleteOnExit(T *array, bool isArray)
        : object(array)
        , isArray(isArray)
    { }
    /** Deletes the object (array-delete for an array). */
    virtual ~DeleteOnExit() { release(); }

    /** The owned object, or null. */
    T *get() const { return object; }

protected:
    /** Deletes the object now and forgets it. */
    void release()
    {
        if (!object)
            return;
        if (isArray)
            delete[] object;
        else
            delete object;
        object = nullptr;
    }

    /** The owned object, or null. */
    T *object;
    /** True when object was made with array-new and is deleted with array-delete. */
    bool isArray;

private:
    Q_DISABLE_COPY(DeleteOnExit)
};

/** Owns a device: the guard's end closes the device, then deletes it. */
class COREQT_EXPORT CloseOnExit : public DeleteOnExit<QIODevice>
{
public:
    /** Owns @p device (may be null). */
    explicit CloseOnExit(QIODevice *device);
    /** Closes the device, then deletes it. */
    ~CloseOnExit() override;

    /**
     * Deletes the device held so far, then owns @p device. Kept as it always was: unlike the
     * destructor, this does not close the old device before deleting it.
     */
    CloseOnExit &operator=(QIODevice *device);

private:
    Q_DISABLE_COPY(CloseOnExit)
};

} // namespace ko

#endif // KO_CLOSEONEXIT_H
