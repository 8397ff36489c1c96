# Runs an example on a fresh copy of the sample installation, and compares its status and all that it prints.
#   cmake -DPROGRAM=file -DARGUMENTS=list -DSCRATCH=folder -DEXPECTED=file -P run_example.cmake

file(REMOVE_RECURSE ${SCRATCH})
file(COPY ${CMAKE_CURRENT_LIST_DIR}/installation DESTINATION ${SCRATCH})
set(installation ${SCRATCH}/installation)
configure_file(${CMAKE_CURRENT_LIST_DIR}/registry.reg.in ${SCRATCH}/registry.reg @ONLY)

# The machine's own settings take no part.
foreach(variable IN ITEMS PFDT KESTRUNE_DRIVES KESTRUNE_CODE_PAGE KESTRUNE_DEBUG)
  unset(ENV{${variable}})
endforeach()
set(ENV{KESTRUNE_REGISTRY} ${SCRATCH}/registry.reg)
execute_process(COMMAND ${PROGRAM} ${ARGUMENTS} WORKING_DIRECTORY ${SCRATCH}
                RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE errors)
file(READ ${EXPECTED} expected)
if(NOT status STREQUAL 0 OR NOT errors STREQUAL "" OR NOT output STREQUAL expected)
  message("${PROGRAM} ${ARGUMENTS}: status ${status}\n${errors}${output}-- expected: status 0\n${expected}")
  message(FATAL_ERROR "The example does not do what it is expected to.")
endif()
