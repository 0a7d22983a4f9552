# What every target of this project is compiled with.

set(QUIVERLY_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wnon-virtual-dtor -Wold-style-cast)
add_compile_options(${QUIVERLY_WARNINGS})
add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wshadow=local>)
# Optimising, g++ takes a moved variant for uninitialised (https://gcc.gnu.org/bugzilla/show_bug.cgi?id=80635).
add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-maybe-uninitialized>)

# The same bits on every processor: a fused multiply-add rounds once where the formulas round twice.
add_compile_options(-ffp-contract=off)

if(QUIVERLY_SANITIZERS)
  add_compile_options(-fsanitize=${QUIVERLY_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QUIVERLY_SANITIZERS})
  # Clang's check of virtual tables opens a pipe, and takes an object for broken when no descriptor is left for one.
  if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
    add_compile_options(-fno-sanitize=vptr)
  endif()
endif()

# What makes an error in memory harder to exploit, with which distributions build all their programs. Calls are fortified
# only where code is optimised.
if(LINUX AND CMAKE_BUILD_TYPE MATCHES "^(Release|RelWithDebInfo|MinSizeRel)$" AND NOT QUIVERLY_SANITIZERS)
  set(CMAKE_POSITION_INDEPENDENT_CODE ON)
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
  add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3 -fstack-protector-strong -fstack-clash-protection)
  add_link_options(LINKER:-z,relro,-z,now)
  include(CheckCXXCompilerFlag)
  check_cxx_compiler_flag(-fcf-protection QUIVERLY_HAS_CF_PROTECTION) # x86 only
  if(QUIVERLY_HAS_CF_PROTECTION)
    add_compile_options(-fcf-protection)
  endif()
endif()
