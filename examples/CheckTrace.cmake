# cmake -DPROGRAM=transcribe "-DSAMPLES=FILE;..." -P CheckTrace.cmake
#
# Watching the rules must not change what they find, and must show what they did.

execute_process(COMMAND ${PROGRAM} ${SAMPLES}
  RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE messages)
execute_process(COMMAND ${PROGRAM} --trace ${SAMPLES}
  RESULT_VARIABLE traced_status OUTPUT_VARIABLE traced_output ERROR_VARIABLE trace)
if(NOT status EQUAL 0 OR NOT traced_status EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} ended with ${status}, and with ${traced_status} when traced")
endif()
if(output STREQUAL "" OR NOT output STREQUAL traced_output)
  message(FATAL_ERROR "The output is not the same, or empty, when the rules are traced")
endif()
if(NOT messages STREQUAL "")
  message(FATAL_ERROR "Without --trace this was reported:\n${messages}")
endif()

foreach(pattern
    "letter 3 n, ge\\|nte\n"
    "\n  g before e, i -> x\n    holds, \\^end is g\\|ente\n"
    "\n    fails at c\\|igüeña in rules.mta:[0-9]+ h: NameEq %inp.name %inp.name:'h' then stop\n"
    "\n  no rule, by itself -> o\n")
  if(NOT trace MATCHES "${pattern}")
    message(SEND_ERROR "Nothing like this in the trace: ${pattern}")
  endif()
endforeach()
