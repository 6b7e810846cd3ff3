#ifndef KO_ERRORNAMES_P_H
#define KO_ERRORNAMES_P_H

#include <QCoreApplication>
#include <QString>

#include <cstddef>

namespace ko
{
namespace detail
{

// One row of a table that names the values of a Qt error enum.
struct ErrorName
{
    int value;
    const char* text;
};

// The name of @p value in @p rows (or @p fallback), translated in @p context.
template <std::size_t N>
QString translatedErrorName(const char* context, const ErrorName (&rows)[N], int value, const char* fallback)
{
    const char* text = fallback;
    for (const ErrorName& row : rows) {
        if (row.value == value) {
            text = row.text;
            break;
        }
    }
    return QCoreApplication::translate(context, text);
}

} // namespace detail
} // namespace ko

#endif // KO_ERRORNAMES_P_H
