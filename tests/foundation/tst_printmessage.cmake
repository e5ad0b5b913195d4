# The helper runs one message-log scenario per process; the test reads its standard output.
add_executable(printmessage_helper ${CMAKE_CURRENT_SOURCE_DIR}/foundation/printmessage_helper.cpp)
target_link_libraries(printmessage_helper PRIVATE Vantor)
add_dependencies(${VANTOR_TEST_TARGET} printmessage_helper)
target_compile_definitions(${VANTOR_TEST_TARGET} PRIVATE
    PRINTMESSAGE_HELPER="$<TARGET_FILE:printmessage_helper>")
