# One interface target that every target of the project links.
add_library(qv_warnings INTERFACE)
target_compile_options(qv_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
if(QV_WERROR)
  target_compile_options(qv_warnings INTERFACE -Werror)
endif()
