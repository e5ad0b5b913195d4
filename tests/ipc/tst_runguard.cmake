include(${CMAKE_CURRENT_LIST_DIR}/tst_commonqueue.cmake)
