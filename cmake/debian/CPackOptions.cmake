# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Read by cpack before each generator: Debian packages are made only from a tree laid out for
# /usr (its library folder is then Debian's multiarch one).
if(CPACK_GENERATOR STREQUAL "DEB" AND NOT CPACK_COREQT_INSTALL_PREFIX STREQUAL "/usr")
    message(FATAL_ERROR "Debian packages need a build tree configured with -DCMAKE_INSTALL_PREFIX=/usr"
        " (this one installs into ${CPACK_COREQT_INSTALL_PREFIX})")
endif()
