# Runs an example: it ends well, and its output matches a regular expression.
#
#   cmake -DPROGRAM=... -DOUTPUT=... -P run_example.cmake
cmake_minimum_required(VERSION 3.25)
execute_process(
  COMMAND ${PROGRAM}
  OUTPUT_VARIABLE output
  ERROR_VARIABLE errors
  RESULT_VARIABLE status)
message("${output}${errors}")
if(NOT status EQUAL 0)
  message(FATAL_ERROR "Ended with ${status}")
endif()
if(NOT output MATCHES "${OUTPUT}")
  message(FATAL_ERROR "The output does not match ${OUTPUT}")
endif()
