gx_fuzz(incoming_packet SOURCES incoming_packet.cpp LIBS gx_app gx_dns_sd)
