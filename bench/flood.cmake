if(TARGET gx_bench_support)
  gx_program(bench_flood SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/flood.cpp LIBS gx_bench_support)
endif()
