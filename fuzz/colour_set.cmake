gx_fuzz(colour_set SOURCES colour_set.cpp LIBS gx_display)
