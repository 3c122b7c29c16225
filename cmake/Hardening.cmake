# Protects optimised builds against attacks through memory errors: canaries, checked C library calls, read-only tables of
# calls, programs at random addresses, and marked jump targets. Sanitizer and Debug builds have none of it. A distribution
# with its own flags switches it off with QV_HARDEN.
option(QV_HARDEN "Build with stack protector, _FORTIFY_SOURCE, full RELRO, PIE and -fcf-protection" ON)

# Without this CMake does not link programs as PIE, whatever the property says.
include(CheckPIESupported)
check_pie_supported(LANGUAGES C CXX)

if(QV_HARDEN AND NOT QV_SANITIZE AND NOT QV_BUILD_FUZZERS)
  include(CheckCXXCompilerFlag)
  check_cxx_compiler_flag(-fcf-protection=full QV_HAS_CF_PROTECTION)
  add_compile_options("$<$<NOT:$<CONFIG:Debug>>:-fstack-protector-strong;-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
  if(QV_HAS_CF_PROTECTION)
    add_compile_options($<$<NOT:$<CONFIG:Debug>>:-fcf-protection=full>)
  endif()
  add_link_options($<$<NOT:$<CONFIG:Debug>>:LINKER:-z,relro,-z,now>)
endif()
