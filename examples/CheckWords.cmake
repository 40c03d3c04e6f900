# cmake -DPROGRAM=transcribe -DWORDS=words.txt -P CheckWords.cmake
#
# Every line of the table holds a word and its phones, or a comment. What the program makes of the
# words must be just those phones.

file(STRINGS ${WORDS} lines REGEX "^[^#]" ENCODING UTF-8)
set(words "")
set(expected "")
foreach(line IN LISTS lines)
  if(NOT line MATCHES "^([^ ]+) +(.+)$")
    message(FATAL_ERROR "not a word and its phones: ${line}")
  endif()
  string(APPEND words "${CMAKE_MATCH_1}\n")
  string(APPEND expected "${CMAKE_MATCH_1} ${CMAKE_MATCH_2}\n")
endforeach()
set(prefix ${CMAKE_CURRENT_BINARY_DIR}/words)
file(WRITE ${prefix}.input "${words}")
file(WRITE ${prefix}.expected "${expected}")
execute_process(COMMAND ${PROGRAM} --phones ${prefix}.input
  RESULT_VARIABLE status OUTPUT_FILE ${prefix}.phones)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} ended with ${status}")
endif()
execute_process(COMMAND paste -d " " ${prefix}.input ${prefix}.phones OUTPUT_FILE ${prefix}.output)
execute_process(COMMAND diff -u ${prefix}.expected ${prefix}.output RESULT_VARIABLE different)
if(different)
  message(FATAL_ERROR "The phones are not what they should be (differences above)")
endif()
