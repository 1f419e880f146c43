gx_fuzz(xfer_receive SOURCES xfer_receive.cpp LIBS gx_serial)
gx_fuzz(xfer_send SOURCES xfer_send.cpp LIBS gx_serial)
