if(TARGET gx_bench_support)
  gx_program(bench_startup SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/startup.cpp LIBS gx_bench_support)
  target_compile_definitions(bench_startup PRIVATE
    GX_PROGRAM="$<TARGET_FILE:GX7100Group>" GX_MINIMAL="$<TARGET_FILE:gx_bench_minimal>")
  add_dependencies(bench_startup GX7100Group gx_bench_minimal)
endif()
