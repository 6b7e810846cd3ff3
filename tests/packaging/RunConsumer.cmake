# Script run by CTest: builds and runs the consumers of the package PACKAGE installed in PREFIX.
include("${CMAKE_CURRENT_LIST_DIR}/ConsumerChecks.cmake")
file(REMOVE_RECURSE "${WORK_DIR}")
run_consumers("${PREFIX}" "${PACKAGE}" "${CONSUMER_DIR}" "${WORK_DIR}" "${CXX}" "${SANITIZE}")
