# The line that the transfers are measured on lives on pseudo terminals.
if(UNIX)
  gx_bench(serial SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/serial.cpp LIBS gx_serial gx_simulator)
endif()
