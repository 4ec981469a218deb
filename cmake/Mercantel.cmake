# Shared build settings for the program's own targets.

add_library(mercantel_options INTERFACE)
target_compile_options(mercantel_options INTERFACE -Wall -Wextra -Wold-style-cast)
target_compile_definitions(mercantel_options INTERFACE
    QT_NO_KEYWORDS QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_USE_QSTRINGBUILDER
    _GLIBCXX_ASSERTIONS)
if(MERCANTEL_WERROR)
    target_compile_options(mercantel_options INTERFACE -Werror)
endif()

if(MERCANTEL_SANITIZE)
    # The test build: every Q_ASSERT is checked, whatever the build type.
    target_compile_definitions(mercantel_options INTERFACE QT_FORCE_ASSERTS)
    add_compile_options(-fsanitize=address,undefined -fno-omit-frame-pointer -fno-sanitize-recover=undefined)
    add_link_options(-fsanitize=address,undefined)
endif()

# mercantel_library(NAME SOURCES ... DEPENDS ...): one library per src/ folder.
function(mercantel_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} PRIVATE mercantel_options)
endfunction()

# mercantel_test_executable(NAME SOURCES ... DEPENDS ...): a GoogleTest executable on the
# shared test support, run by testmain inside a QApplication.
function(mercantel_test_executable name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE ${ARG_DEPENDS} test_support GTest::gmock GTest::gtest
                          mercantel_options)
endfunction()

# mercantel_test(NAME SOURCES ... DEPENDS ...): one GoogleTest executable per area,
# each test case registered with CTest and run on the offscreen platform.
function(mercantel_test name)
    mercantel_test_executable(${name} ${ARGN})
    gtest_discover_tests(${name}
        PROPERTIES ENVIRONMENT "QT_QPA_PLATFORM=offscreen;ASAN_OPTIONS=detect_leaks=0"
        DISCOVERY_TIMEOUT 60)
endfunction()
