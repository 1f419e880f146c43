gx_bench(frames SOURCES frames.cpp LIBS gx_codec gx_serial_codec)
