# Warnings are errors everywhere in the project's own code.
function(ostrelle_strict_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
    -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual -Wnull-dereference
    -Werror)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 reports overlapping copies inside libstdc++'s own string concatenation at -O3
    # (a known false positive); it says nothing about our code.
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
endfunction()
