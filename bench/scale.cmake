if(TARGET gx_bench_window)
  gx_program(bench_scale SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/scale.cpp LIBS gx_bench_support)
  target_compile_definitions(bench_scale PRIVATE
    GX_WINDOW="$<TARGET_FILE:gx_bench_window>" GX_TERMINAL="$<TARGET_FILE:gx_bench_terminal>")
  add_dependencies(bench_scale gx_bench_window gx_bench_terminal)
endif()
