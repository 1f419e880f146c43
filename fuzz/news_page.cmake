gx_fuzz(news_page SOURCES news_page.cpp LIBS gx_help_codec)
