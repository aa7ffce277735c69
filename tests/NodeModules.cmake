find_program(VARNIX_NODE NAMES node nodejs)
find_program(VARNIX_NPM npm)

# varnix_node_packages(NAME): a fixture NAME_packages for ctest, which installs what package-lock.json in the current folder
# names into the folder "packages" of the build, once.
function(varnix_node_packages name)
  add_test(NAME ${name}_packages COMMAND sh ${TESTS}/support/install-node-packages.sh ${VARNIX_NPM}
    ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_BINARY_DIR}/packages)
  set_tests_properties(${name}_packages PROPERTIES FIXTURES_SETUP ${name}_packages TIMEOUT 300)
endfunction()
