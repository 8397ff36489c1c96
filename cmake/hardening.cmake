# Optimised builds are hardened: checked copies, guarded stacks, and tables that are read-only once the program runs. The
# sanitizers have checks of their own, and _FORTIFY_SOURCE does nothing without optimisation.

include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

if(CMAKE_CXX_FLAGS MATCHES "-fsanitize")
  return()
endif()

set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
target_compile_options(kestrune_options INTERFACE
  $<${optimised}:-U_FORTIFY_SOURCE> $<${optimised}:-D_FORTIFY_SOURCE=3> $<${optimised}:-fstack-protector-strong>)
target_link_options(kestrune_options INTERFACE $<${optimised}:LINKER:-z,relro,-z,now>)

# Compilers have these for some processors only.
check_cxx_compiler_flag(-fstack-clash-protection KESTRUNE_HAS_STACK_CLASH_PROTECTION)
if(KESTRUNE_HAS_STACK_CLASH_PROTECTION)
  target_compile_options(kestrune_options INTERFACE $<${optimised}:-fstack-clash-protection>)
endif()
if(CMAKE_SYSTEM_PROCESSOR MATCHES "^(x86_64|AMD64|i.86)$")
  check_cxx_compiler_flag(-fcf-protection KESTRUNE_HAS_CF_PROTECTION)
  # The linker sets the mark for shadow stacks only where the start files of the system have it too; they do nothing that
  # a shadow stack forbids. The mark for indirect branches stays with the linker, since not all start files allow it.
  check_linker_flag(CXX LINKER:-z,shstk KESTRUNE_HAS_SHADOW_STACK_MARK)
  if(KESTRUNE_HAS_CF_PROTECTION AND KESTRUNE_HAS_SHADOW_STACK_MARK)
    target_compile_options(kestrune_options INTERFACE $<${optimised}:-fcf-protection>)
    target_link_options(kestrune_options INTERFACE $<${optimised}:LINKER:-z,shstk>)
  endif()
endif()
