gx_fuzz(instrument SOURCES instrument.cpp LIBS gx_instrument)
