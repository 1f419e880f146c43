gx_fuzz(capture_record SOURCES capture_record.cpp LIBS gx_display)
