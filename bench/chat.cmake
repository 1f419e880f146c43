gx_bench(chat SOURCES ${CMAKE_CURRENT_SOURCE_DIR}/chat.cpp LIBS gx_chat)
