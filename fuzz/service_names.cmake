gx_fuzz(service_names SOURCES service_names.cpp LIBS gx_discovery gx_fake_dns_sd)
