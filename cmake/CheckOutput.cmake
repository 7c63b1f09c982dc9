# Runs PROGRAM and compares what it prints with the file EXPECTED: cmake -DPROGRAM= -DEXPECTED= -P

execute_process(COMMAND "${PROGRAM}" OUTPUT_VARIABLE output RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${PROGRAM} ended with ${status}")
endif()
file(READ "${EXPECTED}" expected)
if(NOT output STREQUAL expected)
  message("${output}")
  message(FATAL_ERROR "${PROGRAM} printed the above, which differs from ${EXPECTED}")
endif()
