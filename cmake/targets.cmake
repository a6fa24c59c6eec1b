# The forms that our targets take, so that each CMakeLists.txt below only names its files.

# qxv_sources(a.cpp b.cpp ...): sources of this folder that go into the library.
function(qxv_sources)
  list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  target_sources(qxv_objects PRIVATE ${ARGN})
endfunction()

# qxv_os_sources(file clock ...): for each family the source of the system that we build for.
function(qxv_os_sources)
  if(WIN32)
    set(system win)
  else()
    set(system posix)
  endif()
  list(TRANSFORM ARGN APPEND _${system}.cpp)
  qxv_sources(${ARGN})
endfunction()

# qxv_add_test(name SOURCES a_test.cpp ... [LIBRARIES x ...]): one GoogleTest program over the library's objects, so that tests
# reach what the library hides. Every test runs in a process of its own: the library keeps state once a process.
function(qxv_add_test name)
  cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
  set(target qxv_${name}_tests)
  add_executable(${target} ${arg_SOURCES})
  target_link_libraries(${target} PRIVATE qxv_test_support qxv_objects qxv_options ${arg_LIBRARIES})
  gtest_discover_tests(${target} TEST_PREFIX ${name}. DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 300)
endfunction()
