# The clock helper runs inside an unprivileged user namespace (unshare -r), where setting the
# clock is refused; the test never asks for the real clock to change.
add_executable(systemtime_clock_helper ${CMAKE_CURRENT_LIST_DIR}/systemtime_clock_helper.cpp)
target_link_libraries(systemtime_clock_helper PRIVATE Vantor)
add_dependencies(${VANTOR_TEST_TARGET} systemtime_clock_helper)
target_compile_definitions(${VANTOR_TEST_TARGET} PRIVATE
    SYSTEMTIME_CLOCK_HELPER="$<TARGET_FILE:systemtime_clock_helper>")
