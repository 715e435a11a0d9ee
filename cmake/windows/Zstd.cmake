# Frame files are packed with zstd, for which there is no package for Windows: built from Debian's sources,
# which cmake/windows/fetch-zstd.sh lays down.
if(NOT TARGET PkgConfig::zstd)
  set(vex_zstd ${CMAKE_SOURCE_DIR}/build/sources/zstd/lib)
  if(NOT EXISTS ${vex_zstd}/zstd.h)
    execute_process(COMMAND ${CMAKE_SOURCE_DIR}/cmake/windows/fetch-zstd.sh COMMAND_ERROR_IS_FATAL ANY)
  endif()
  file(GLOB vex_zstd_sources ${vex_zstd}/common/*.c ${vex_zstd}/compress/*.c ${vex_zstd}/decompress/*.c)
  add_library(zstd STATIC EXCLUDE_FROM_ALL ${vex_zstd_sources})
  set_target_properties(zstd PROPERTIES COMPILE_OPTIONS "-w")
  target_compile_definitions(zstd PRIVATE ZSTD_DISABLE_ASM=1 ZSTD_LEGACY_SUPPORT=0)
  target_include_directories(zstd SYSTEM PUBLIC ${vex_zstd})
  add_library(PkgConfig::zstd ALIAS zstd)
endif()
