// SPDX-License-Identifier: BSD-3-Clause
// SPDX-FileCopyrightText: 2026 The CoreQt developers
#ifndef COREQT_BENCHMARKS_SPREAD_H
#define COREQT_BENCHMARKS_SPREAD_H

// The spread of repeated measurements that the paired benchmarks report beside their ratios.

#include <algorithm>
#include <vector>

/** Fastest, median and slowest of a set of values. */
struct Spread
{
    double min = 0;
    double median = 0;
    double max = 0;
};

/** The spread of @p values (at least one). */
inline Spread spread(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return { values.front(), values[values.size() / 2], values.back() };
}

#endif
