gx_bench(discovery SOURCES discovery.cpp LIBS gx_app gx_discovery gx_discovery_client gx_resources)
target_compile_definitions(bench_discovery PRIVATE
  GX_SIMULATOR="$<TARGET_FILE:gx7100sim>"
  GX_TWO_HOSTS="${PROJECT_SOURCE_DIR}/tools/two-hosts.sh")
add_dependencies(bench_discovery gx7100sim)
