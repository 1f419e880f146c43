gx_fuzz(txt_record SOURCES txt_record.cpp LIBS gx_discovery_codec)
