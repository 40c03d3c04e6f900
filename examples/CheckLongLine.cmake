# cmake -DPROGRAM=transcribe -P CheckLongLine.cmake
#
# A line that is far longer than a block of output, and than what is worked on at once: every word
# of it must come out whole, and where there are pauses it must be cut behind one.

set(count 2500)
string(REPEAT "perro rojo " ${count} line)
set(text ${CMAKE_CURRENT_BINARY_DIR}/longline.txt)
file(WRITE ${text} "${line}")
execute_process(COMMAND ${PROGRAM} ${text} RESULT_VARIABLE status OUTPUT_VARIABLE output)
if(NOT status EQUAL 0)
  message(SEND_ERROR "${PROGRAM} ended with ${status}")
endif()
foreach(word perro rojo)
  string(REGEX MATCHALL "${word}" found "${output}")
  list(LENGTH found n)
  if(NOT n EQUAL count)
    message(SEND_ERROR "${count} times '${word}' went in, ${n} came out")
  endif()
endforeach()

string(REPEAT "perro rojo corre, " 500 line)
file(WRITE ${text} "${line}")
execute_process(COMMAND ${PROGRAM} --phones ${text} RESULT_VARIABLE status OUTPUT_VARIABLE output)
set(clause "p'e.rro rr'o.xo k'o.rre")
if(NOT status EQUAL 0 OR NOT output MATCHES "^(${clause}( ${clause})+\n)(${clause}( ${clause})*\n)+$")
  message(SEND_ERROR "${PROGRAM} ended with ${status}; not cut behind pauses:\n${output}")
endif()
