include(HostHeaders)
vex_host_headers(CLI11::CLI11 CLI)
# Nothing asks it whether a file exists; the standard library's word on that would weigh more than all our schedules.
target_compile_definitions(CLI11::CLI11 INTERFACE CLI11_HAS_FILESYSTEM=0)
set(CLI11_FOUND TRUE)
