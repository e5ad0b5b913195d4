# The second process of the IPC tests, shared by the tests of this folder.
if(NOT TARGET ipcpeer)
    add_executable(ipcpeer ${CMAKE_CURRENT_LIST_DIR}/ipcpeer.cpp)
    target_link_libraries(ipcpeer PRIVATE Vantor)
endif()
add_dependencies(${VANTOR_TEST_TARGET} ipcpeer)
target_compile_definitions(${VANTOR_TEST_TARGET} PRIVATE IPCPEER_PATH="$<TARGET_FILE:ipcpeer>")
