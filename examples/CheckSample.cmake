# cmake -DPROGRAM=transcribe -DSAMPLE=NAME.txt -P CheckSample.cmake
#
# Transcribes a sample: that must succeed, say something, and say what NAME.expected holds if there
# is one.

execute_process(COMMAND ${PROGRAM} ${SAMPLE}
  RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE errors)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} ${SAMPLE} ended with ${result}:\n${errors}")
endif()
if(output STREQUAL "")
  message(FATAL_ERROR "${PROGRAM} ${SAMPLE} printed nothing")
endif()

string(REGEX REPLACE "\\.txt$" ".expected" expected_file ${SAMPLE})
if(EXISTS ${expected_file})
  get_filename_component(name ${expected_file} NAME)
  set(output_file ${CMAKE_CURRENT_BINARY_DIR}/${name}.actual)
  file(WRITE ${output_file} "${output}")
  execute_process(COMMAND diff -u ${expected_file} ${output_file} RESULT_VARIABLE different)
  if(different)
    message(FATAL_ERROR "The output for ${SAMPLE} is not what ${name} holds (differences above)")
  endif()
endif()
