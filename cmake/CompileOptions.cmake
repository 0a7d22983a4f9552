# What every target of this project is compiled with.

set(QUIVERLY_WARNINGS -Wall -Wextra -Wpedantic -Wconversion -Wnon-virtual-dtor -Wold-style-cast)
add_compile_options(${QUIVERLY_WARNINGS})
add_compile_options($<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wshadow=local>)

# The same bits on every processor: a fused multiply-add rounds once where the formulas round twice.
add_compile_options(-ffp-contract=off)

if(QUIVERLY_SANITIZERS)
  add_compile_options(-fsanitize=${QUIVERLY_SANITIZERS} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${QUIVERLY_SANITIZERS})
endif()
