// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef KO_ERRORNAMES_P_H
#define KO_ERRORNAMES_P_H

#include <QCoreApplication>
#include <QString>

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace ko
{
namespace detail
{

// One row of a table that names the values of a Qt error enum.
struct ErrorName
{
    int value;
    const char *text;
};

// The name of @p value in @p rows (or @p fallback), translated in @p context.
template <std::size_t N>
QString translatedErrorName(
    const char *context, const ErrorName (&rows)[N], int value, const char *fallback)
{
    const auto row = std::find_if(
        std::begin(rows), std::end(rows), [value](const ErrorName &r) { return r.value == value; });
    return QCoreApplication::translate(context, row != std::end(rows) ? row->text : fallback);
}

} // namespace detail
} // namespace ko

#endif // KO_ERRORNAMES_P_H
