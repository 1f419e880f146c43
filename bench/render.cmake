gx_program(bench_render SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/render.cpp
  LIBS gx_display gx_reference_painter gx_bench_table)
gx_program(bench_resize SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/resize.cpp
  LIBS gx_display gx_bench_table)
