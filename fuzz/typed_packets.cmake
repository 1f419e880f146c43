gx_fuzz(typed_packets SOURCES typed_packets.cpp LIBS gx_instrument_line)
