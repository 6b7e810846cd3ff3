# SPDX-License-Identifier: BSD-3-Clause
# SPDX-FileCopyrightText: 2026 The CoreQt developers
# Qt's translation tools for the Qt major version being built against: LinguistTools (lrelease
# through qt_add_translation(), COREQT_LCONVERT for merging catalogues) and
# COREQT_QT_TRANSLATIONS_DIR, the folder of Qt's installed catalogues.
find_package(${COREQT_QT} ${COREQT_QT_VERSION} REQUIRED COMPONENTS LinguistTools)
set(COREQT_LCONVERT ${COREQT_QT}::lconvert)

if(NOT COREQT_QT_TRANSLATIONS_DIR)
    # The Qt tool that tells Qt's installation folders: qmake on Qt 5, qtpaths on Qt 6.
    if(COREQT_QT_MAJOR EQUAL 5)
        set(_coreqt_qt_query Qt5::qmake)
    else()
        set(_coreqt_qt_query Qt6::qtpaths)
    endif()
    get_target_property(_coreqt_query_configs ${_coreqt_qt_query} IMPORTED_CONFIGURATIONS)
    get_target_property(_coreqt_query ${_coreqt_qt_query} IMPORTED_LOCATION)
    foreach(config ${_coreqt_query_configs})
        if(NOT _coreqt_query)
            get_target_property(_coreqt_query ${_coreqt_qt_query} IMPORTED_LOCATION_${config})
        endif()
    endforeach()
    execute_process(COMMAND "${_coreqt_query}" -query QT_INSTALL_TRANSLATIONS
        OUTPUT_VARIABLE _coreqt_qt_translations OUTPUT_STRIP_TRAILING_WHITESPACE)
    set(COREQT_QT_TRANSLATIONS_DIR "${_coreqt_qt_translations}" CACHE PATH
        "Folder of Qt's installed translation catalogues (qtbase_de.qm, ...)")
endif()
