gx_fuzz(release_index SOURCES release_index.cpp LIBS gx_help_codec)
