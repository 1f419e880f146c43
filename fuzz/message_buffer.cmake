gx_fuzz(message_buffer SOURCES message_buffer.cpp LIBS gx_codec)
