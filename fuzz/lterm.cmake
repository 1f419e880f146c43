gx_fuzz(lterm SOURCES lterm.cpp LIBS gx_serial_codec)
