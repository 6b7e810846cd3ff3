# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Builds and runs the consumers of the packages listed in PACKAGE installed in PREFIX (libraries in
# PREFIX/LIBDIR). Run by CTest on a `cmake --install` tree and by scripts/package.sh on the Debian
# packages unpacked into a scratch root.
include("${CMAKE_CURRENT_LIST_DIR}/ConsumerChecks.cmake")
file(REMOVE_RECURSE "${WORK_DIR}")
run_consumers("${PREFIX}" "${PACKAGE}" "${CONSUMER_DIR}" "${WORK_DIR}" "${CXX}" "${SANITIZE}")
