# The shipped files of "the program's folder". Programs of the build, the tests among them, find them beside themselves
# as links, so that a changed text needs no build.

set(zv_shipped ${CMAKE_SOURCE_DIR}/Languages ${CMAKE_SOURCE_DIR}/resources/product.ini
  ${CMAKE_SOURCE_DIR}/resources/searches.ini)

foreach(folder ${CMAKE_BINARY_DIR} ${CMAKE_BINARY_DIR}/tests)
  file(MAKE_DIRECTORY ${folder})
  foreach(item ${zv_shipped})
    get_filename_component(name ${item} NAME)
    file(CREATE_LINK ${item} ${folder}/${name} SYMBOLIC)
  endforeach()
endforeach()

# The manual is made beside the program.
file(CREATE_LINK ${CMAKE_BINARY_DIR}/manual ${CMAKE_BINARY_DIR}/tests/manual SYMBOLIC)
