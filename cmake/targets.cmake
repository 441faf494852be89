# How every target of this project is compiled, and which folder may include which.

set(TAVREL_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wshadow)

# tavrel_options(TARGET): language level, warnings, float rules and sanitizers of one of our targets.
function(tavrel_options target)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR})
  # Determinism: every float operation is rounded alone. Contraction would fuse, x87 would widen.
  target_compile_options(${target} PRIVATE ${TAVREL_WARNINGS} -ffp-contract=off -DTAVREL_NO_CONTRACTION)
  if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(i.86|x86)$")
    target_compile_options(${target} PRIVATE -msse2 -mfpmath=sse)
  endif()
  if(TAVREL_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(TAVREL_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${TAVREL_SANITIZE} -fno-sanitize-recover=all
                                             -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${TAVREL_SANITIZE})
  endif()
endfunction()

# tavrel_library(NAME SOURCES file... LINKS target...): the static library of one folder.
function(tavrel_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LINKS")
  add_library(${name} STATIC ${arg_SOURCES})
  tavrel_options(${name})
  target_link_libraries(${name} PUBLIC ${arg_LINKS})
  add_dependencies(${name} check_includes)
endfunction()

# The build itself refuses an include that points against the layers.
add_custom_target(check_includes
  COMMAND ${CMAKE_COMMAND} -DROOT=${PROJECT_SOURCE_DIR} -P ${PROJECT_SOURCE_DIR}/cmake/check_includes.cmake
  COMMENT "Checking the layers of includes")
