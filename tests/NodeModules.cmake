find_program(VARNIX_NODE NAMES node nodejs)
find_program(VARNIX_NPM npm)

# varnix_node_test(NAME SCRIPT [VARIABLE=value...]): a test program for Node.js in the current folder. Its environment names
# the programs to test and the folder of the packages in package-lock.json.
function(varnix_node_test name script)
  add_test(NAME ${name}
    COMMAND ${CMAKE_COMMAND} -E env SERVICE=$<TARGET_FILE:service> FMSIM=$<TARGET_FILE:fmsim> PLUGIN=$<TARGET_FILE:plugin>
      TEST_CLOCK=$<TARGET_FILE:test_clock> SAMPLES=${PROJECT_SOURCE_DIR}/samples
      PACKAGES=${CMAKE_CURRENT_BINARY_DIR}/packages ${ARGN}
      sh ${TESTS}/support/run-node-test.sh ${VARNIX_NODE} ${VARNIX_NPM} ${CMAKE_CURRENT_SOURCE_DIR} ${script})
  set_tests_properties(${name} PROPERTIES SKIP_RETURN_CODE 77 TIMEOUT 400)
endfunction()
