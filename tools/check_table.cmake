# ctest -P script: runs a table generator and compares its output with the
# committed table file byte for byte. Variables: GEN (the generator), REF (the
# committed file), OUT (a scratch file).
execute_process(COMMAND ${GEN} OUTPUT_FILE ${OUT} RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "${GEN} failed (${rc})")
endif()
execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${OUT} ${REF} RESULT_VARIABLE diff)
if(NOT diff EQUAL 0)
  message(FATAL_ERROR "${REF} differs from the output of ${GEN}; regenerate it")
endif()
