# Runs the example on its script and compares all that it prints.
execute_process(COMMAND ${PROGRAM} ${FOLDER}/jogo.tvl OUTPUT_VARIABLE printed ERROR_VARIABLE reports
                RESULT_VARIABLE code)
file(READ ${FOLDER}/expected.txt expected)
if(NOT code EQUAL 0 OR NOT reports STREQUAL "" OR NOT printed STREQUAL expected)
  message(FATAL_ERROR "exit code ${code}\n${reports}${printed}")
endif()
