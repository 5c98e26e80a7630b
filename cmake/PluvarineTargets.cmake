# One library per source folder: every .cpp of the folder (not of its sub-folders) is compiled
# into it, so adding a file needs no edit here. A folder without sources yet gives an
# INTERFACE library, so dependants can link it already.
function(pluvarine_library name)
  cmake_parse_arguments(ARG "" "" "DEPS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  file(GLOB resources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.qrc")
  if(sources)
    add_library(${name} STATIC ${sources} ${resources})
    target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}")
    target_link_libraries(${name} PUBLIC ${ARG_DEPS})
  else()
    add_library(${name} INTERFACE)
    target_include_directories(${name} INTERFACE "${PROJECT_SOURCE_DIR}")
    target_link_libraries(${name} INTERFACE ${ARG_DEPS})
  endif()
endfunction()

# One GoogleTest executable per test folder. Tests are discovered when ctest runs, so test
# programs that need a display are listed under the same display as they run.
#   ENVIRONMENT: extra variables for every test of the folder (e.g. QT_QPA_PLATFORM=offscreen)
#   QT_MAIN: link the shared main that creates a QApplication instead of gtest_main
#   LABEL: the ctest label of its tests: unit (default; fast, no display), gl (renders under
#     Xvfb) or e2e (runs the program); `ctest -L unit` runs the fast ones
function(pluvarine_test name)
  cmake_parse_arguments(ARG "QT_MAIN" "LABEL" "DEPS;ENVIRONMENT;SOURCES" ${ARGN})
  if(NOT ARG_LABEL)
    set(ARG_LABEL unit)
  endif()
  if(ARG_SOURCES)
    set(sources ${ARG_SOURCES})
  else()
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
  endif()
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE ${ARG_DEPS} GTest::gmock)
  if(ARG_QT_MAIN)
    target_link_libraries(${name} PRIVATE pluvarine_test_qtmain)
  else()
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
  endif()
  target_compile_definitions(${name} PRIVATE
    PLUVARINE_WORKFOLDER="${PLUVARINE_WORKFOLDER}"
    PLUVARINE_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
    PLUVARINE_BINARY_DIR="${PROJECT_BINARY_DIR}")
  if(TARGET pluvarine_workfolder)
    add_dependencies(${name} pluvarine_workfolder)
  endif()
  set(properties LABELS ${ARG_LABEL})
  if(ARG_ENVIRONMENT) # an empty value would drop out of the list and shift the pairs
    list(APPEND properties ENVIRONMENT "${ARG_ENVIRONMENT}")
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
    PROPERTIES ${properties})
endfunction()
