# The sources of a folder and those below it, without the ones of another platform.
function(qx_sources out)
    file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${ARGN})
    set(${out} ${sources} PARENT_SCOPE)
endfunction()

# A shared library of the framework: public headers in include/NAME, sources in src.
#   qx_framework_library(NAME LIBS public libraries... PRIVATE_LIBS libraries...)
function(qx_framework_library name)
    cmake_parse_arguments(ARG "" "" "LIBS;PRIVATE_LIBS" ${ARGN})
    qx_sources(sources "src/*.cpp" "src/*.h")
    qx_sources(headers "include/*.h")
    add_library(${name} SHARED ${sources})
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS include FILES ${headers})
    target_include_directories(${name} PRIVATE src)
    string(TOUPPER ${name} upper)
    target_compile_definitions(${name} PRIVATE ${upper}_BUILD)
    target_link_libraries(${name} PUBLIC ${ARG_LIBS} PRIVATE QxWarnings ${ARG_PRIVATE_LIBS})
    set_target_properties(${name} PROPERTIES VERIFY_INTERFACE_HEADER_SETS ON)
endfunction()

# Runs the tests that ctest finds in the variable `list` with folders of their own in place of the user's. A list does
# not get through PROPERTIES of gtest_discover_tests, so a file that ctest reads afterwards sets it.
function(qx_keep_from_home list)
    set(home "${CMAKE_BINARY_DIR}/test-home")
    file(MAKE_DIRECTORY "${home}/run")
    set(script "${CMAKE_CURRENT_BINARY_DIR}/${list}_home.cmake")
    file(WRITE "${script}" "if(${list})
    set_tests_properties(\${${list}} PROPERTIES ENVIRONMENT_MODIFICATION \"HOME=set:${home};\
XDG_CONFIG_HOME=set:${home}/config;XDG_DATA_HOME=set:${home}/data;XDG_STATE_HOME=set:${home}/state;\
XDG_RUNTIME_DIR=set:${home}/run\")
endif()
")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${script}")
endfunction()

# A test program of the sources in the current folder, each test a CTest test of its own.
#   qx_tests(NAME LABEL unit|ui|system LIBS libraries... TIMEOUT seconds)
function(qx_tests name)
    cmake_parse_arguments(ARG "" "LABEL;TIMEOUT" "LIBS;SOURCES;PROPERTIES" ${ARGN})
    if(NOT ARG_SOURCES)
        file(GLOB ARG_SOURCES CONFIGURE_DEPENDS "*Tests.cpp")
    endif()
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 60)
    endif()
    if(QX_SANITIZER)
        math(EXPR ARG_TIMEOUT "5 * ${ARG_TIMEOUT}") # instrumented code takes that much longer
    endif()
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gtest GTest::gmock GTest::gtest_main QxWarnings)
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
    target_compile_definitions(${name} PRIVATE
        QX_SOURCE_DIR="${CMAKE_SOURCE_DIR}" QX_BIN_DIR="${CMAKE_RUNTIME_OUTPUT_DIRECTORY}"
        QX_TEST_OUTPUT_DIR="${CMAKE_BINARY_DIR}/test-output")
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST TEST_PREFIX "${name}." TEST_LIST ${name}_names
        PROPERTIES LABELS "${ARG_LABEL}" TIMEOUT ${ARG_TIMEOUT} ${ARG_PROPERTIES})
    qx_keep_from_home(${name}_names)
endfunction()

# A benchmark program of the sources in the current folder.
function(qx_bench name)
    cmake_parse_arguments(ARG "" "" "LIBS" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS "*Bench.cpp")
    add_executable(${name} ${sources})
    target_link_libraries(${name} PRIVATE ${ARG_LIBS} benchmark::benchmark_main QxWarnings)
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bench")
endfunction()

# A fuzz target and the test that replays its corpus: SOURCE has LLVMFuzzerTestOneInput, CORPUS is a folder of inputs.
#   qx_fuzz(NAME SOURCE file CORPUS folder LIBS libraries...)
function(qx_fuzz name)
    cmake_parse_arguments(ARG "" "SOURCE;CORPUS" "LIBS" ${ARGN})
    if(QX_BUILD_FUZZ)
        add_executable(${name} ${ARG_SOURCE})
        target_link_options(${name} PRIVATE -fsanitize=fuzzer)
        # tools/fuzz finds the targets and their corpora by these files.
        file(WRITE "${CMAKE_BINARY_DIR}/fuzz/${name}.corpus" "${CMAKE_CURRENT_SOURCE_DIR}/${ARG_CORPUS}")
    else()
        add_executable(${name} ${ARG_SOURCE} "${CMAKE_SOURCE_DIR}/tests/support/ReplayCorpus.cpp")
        add_test(NAME ${name}.replay COMMAND ${name} "${CMAKE_CURRENT_SOURCE_DIR}/${ARG_CORPUS}")
        set_tests_properties(${name}.replay PROPERTIES LABELS unit TIMEOUT 60)
    endif()
    target_link_libraries(${name} PRIVATE ${ARG_LIBS} QxWarnings)
    target_include_directories(${name} PRIVATE "${CMAKE_SOURCE_DIR}")
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/fuzz")
endfunction()
