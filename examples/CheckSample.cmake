# cmake -DPROGRAM=transcribe -DSAMPLE=NAME.txt [-DARGUMENTS=...] -P CheckSample.cmake
#
# Transcribes a sample and compares with the files beside it. What is printed must be what
# NAME.expected holds; without that file it must be something. What is reported must be what
# NAME.messages holds, and the exit status 1; without that file all must be well and silent. The
# program runs in the folder of the sample with the sample's name as its argument, or the given
# arguments, and reads the sample as its standard input.

cmake_path(GET SAMPLE PARENT_PATH directory)
cmake_path(GET SAMPLE FILENAME file)
cmake_path(GET SAMPLE STEM name)
if(NOT ARGUMENTS)
  set(ARGUMENTS ${file})
endif()
set(output ${CMAKE_CURRENT_BINARY_DIR}/${name}.output)
set(messages ${CMAKE_CURRENT_BINARY_DIR}/${name}.errors)
execute_process(COMMAND ${PROGRAM} ${ARGUMENTS}
  WORKING_DIRECTORY ${directory} INPUT_FILE ${SAMPLE}
  RESULT_VARIABLE status OUTPUT_FILE ${output} ERROR_FILE ${messages})

function(expect_content file expected)
  execute_process(COMMAND diff -u ${expected} ${file} RESULT_VARIABLE different)
  if(different)
    message(SEND_ERROR "${file} is not what it should be (differences above)")
  endif()
endfunction()

set(expected_status 0)
set(expected_messages /dev/null)
if(EXISTS ${directory}/${name}.messages)
  set(expected_status 1)
  set(expected_messages ${directory}/${name}.messages)
endif()
expect_content(${messages} ${expected_messages})
if(NOT status EQUAL expected_status)
  message(SEND_ERROR "${PROGRAM} ended with ${status} instead of ${expected_status}")
endif()

file(SIZE ${output} size)
if(EXISTS ${directory}/${name}.expected)
  expect_content(${output} ${directory}/${name}.expected)
elseif(size EQUAL 0)
  message(SEND_ERROR "${PROGRAM} printed nothing")
endif()
