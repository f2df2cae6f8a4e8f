# What every target of the project gets: warnings, sanitizers, and clang-tidy where it is asked for.
add_library(zint_options INTERFACE)

if(MSVC)
  target_compile_options(zint_options INTERFACE /W4 /utf-8 $<$<BOOL:${ZINT_WARNINGS_AS_ERRORS}>:/WX>)
else()
  target_compile_options(zint_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wconversion -Wsign-conversion
    -Wno-missing-field-initializers # designated initialisers leave the rest to the defaults on purpose
    $<$<BOOL:${ZINT_WARNINGS_AS_ERRORS}>:-Werror>)
endif()

if(ZINT_SANITIZE)
  target_compile_options(zint_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
    # In the tests' own code these checks take a fifth of the compiler's time; a null pointer ends it all the same.
    $<$<BOOL:$<TARGET_PROPERTY:ZINT_TEST_CODE>>:-fno-sanitize=null,alignment,vptr>)
  target_link_options(zint_options INTERFACE -fsanitize=address,undefined)
endif()

if(ZINT_FUZZ)
  # Instrument everything; only the fuzz targets themselves link libFuzzer's main.
  target_compile_options(zint_options INTERFACE -fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all)
  target_link_options(zint_options INTERFACE -fsanitize=address,undefined)
endif()

# Code that knows no toolkit: standard C++ only, held against clang-tidy.
function(zint_toolkit_free_library name)
  add_library(${name} STATIC)
  target_link_libraries(${name} PRIVATE zint_options)
  if(ZINT_TIDY)
    set_target_properties(${name} PROPERTIES CXX_CLANG_TIDY "clang-tidy;--quiet")
  endif()
endfunction()
