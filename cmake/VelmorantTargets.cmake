# Shared target settings: one place for the language standard, the warnings and the sanitizers.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
if(NOT CMAKE_BUILD_TYPE)
    set(CMAKE_BUILD_TYPE Release)
endif()

# A second build folder then costs little: both share what was compiled.
find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER
        "${CMAKE_SOURCE_DIR}/tools/compiler_launcher.sh" "${CCACHE_PROGRAM}")
endif()

# The program folder, assembled as it is installed.
set(VELMORANT_PROGRAM_FOLDER "${CMAKE_BINARY_DIR}/program")

add_library(velmorant_compile_options INTERFACE)
target_include_directories(velmorant_compile_options INTERFACE "${CMAKE_SOURCE_DIR}")
target_compile_options(velmorant_compile_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual -Werror)
# GCC 12 reports "literal" + std::string as an overlapping copy when it optimises (GCC PR105651).
target_compile_options(velmorant_compile_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(VELMORANT_SANITIZE)
    target_compile_options(velmorant_compile_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(velmorant_compile_options INTERFACE -fsanitize=address,undefined)
endif()
if(VELMORANT_FUZZERS)
    # Without it the fuzzers would not see which paths of the libraries they reach.
    target_compile_options(velmorant_compile_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# velmorant_room(NAME [libraries...]): a static library of every .cpp file of the folder, or an
# interface library where the folder holds headers alone. It sees only what it links.
function(velmorant_room name)
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
    if(sources)
        add_library(${name} STATIC ${sources})
        target_link_libraries(${name} PUBLIC velmorant_compile_options ${ARGN})
        # moc looks at the headers again when a list file changes, so a source file that is added
        # must change one.
        file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/${name}-sources.cmake"
            CONTENT "# ${sources}\n")
        include("${CMAKE_CURRENT_BINARY_DIR}/${name}-sources.cmake")
    else()
        add_library(${name} INTERFACE)
        target_link_libraries(${name} INTERFACE velmorant_compile_options ${ARGN})
    endif()
endfunction()

# velmorant_use_desktop_headers(TARGET...): they read the toolkit's headers as precompiled for the
# rooms of the desktop.
function(velmorant_use_desktop_headers)
    foreach(target ${ARGN})
        target_compile_options(${target} PRIVATE -pthread)
        target_precompile_headers(${target} REUSE_FROM velmorant_desktop_headers)
    endforeach()
endfunction()

# The tests' own code need not be fast, and compiles in half the time.
set(VELMORANT_TEST_OPTIONS -O0)
if(VELMORANT_FUZZERS)
    # No fuzzer looks at their paths.
    list(APPEND VELMORANT_TEST_OPTIONS -fno-sanitize=fuzzer-no-link)
endif()

# velmorant_test_headers(NAME [LIBRARIES ...] [HEADERS ...]): the headers of GoogleTest and some
# more, read once for the tests of this folder and below; reading them takes most of the time of
# compiling a test. What is compiled in another way, as the code with the toolkit is, needs its own.
macro(velmorant_test_headers name)
    cmake_parse_arguments(parsed "" "" "LIBRARIES;HEADERS" ${ARGN})
    file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp" CONTENT "")
    add_library(${name} OBJECT "${CMAKE_CURRENT_BINARY_DIR}/${name}.cpp")
    target_link_libraries(${name} PRIVATE
        velmorant_compile_options ${parsed_LIBRARIES} GTest::gmock GTest::gtest)
    target_compile_options(${name} PRIVATE ${VELMORANT_TEST_OPTIONS})
    target_precompile_headers(${name} PRIVATE <gmock/gmock.h> <gtest/gtest.h> ${parsed_HEADERS})
    set(VELMORANT_TEST_HEADERS ${name})
endmacro()

# velmorant_test(NAME [libraries...]): one GoogleTest program of every *Test.cpp of the folder,
# each of its tests known to CTest by name.
include(GoogleTest)
function(velmorant_test name)
    file(GLOB sources CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/*.cpp")
    if(NOT sources)
        return()
    endif()
    add_executable(${name} ${sources})
    target_link_libraries(${name} PRIVATE velmorant_compile_options ${ARGN} GTest::gmock GTest::gtest_main)
    target_compile_definitions(${name} PRIVATE VELMORANT_TEST_DATA="${CMAKE_SOURCE_DIR}/tests/data")
    target_compile_options(${name} PRIVATE ${VELMORANT_TEST_OPTIONS})
    if(VELMORANT_TEST_HEADERS)
        target_precompile_headers(${name} REUSE_FROM ${VELMORANT_TEST_HEADERS})
    endif()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 120)
endfunction()
