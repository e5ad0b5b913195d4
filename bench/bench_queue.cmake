# The taking process of the two-process queue benchmark.
add_executable(queue_taker ${CMAKE_CURRENT_SOURCE_DIR}/queue_taker.cpp)
target_link_libraries(queue_taker PRIVATE Vantor)
add_dependencies(${VANTOR_BENCH_TARGET} queue_taker)
target_compile_definitions(${VANTOR_BENCH_TARGET} PRIVATE
    QUEUE_TAKER_PATH="$<TARGET_FILE:queue_taker>")
