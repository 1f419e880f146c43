gx_bench(render SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/render.cpp LIBS gx_display gx_reference_painter)
