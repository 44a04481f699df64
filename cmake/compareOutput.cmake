# Runs PROGRAM and fails unless it ends with 0 and prints exactly what the file EXPECTED holds.
execute_process(COMMAND ${PROGRAM} OUTPUT_VARIABLE printed RESULT_VARIABLE exitCode)
file(READ ${EXPECTED} expected)
if(NOT exitCode EQUAL 0)
    message(FATAL_ERROR "${PROGRAM} ended with ${exitCode}")
endif()
if(NOT printed STREQUAL expected)
    message(FATAL_ERROR "${PROGRAM} printed\n${printed}\nbut ${EXPECTED} holds\n${expected}")
endif()
