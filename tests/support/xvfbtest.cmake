# mercantel_xvfb_test(NAME SOURCES ... DEPENDS ...): a GoogleTest executable for faults that depend
# on how a real X server delivers keys and clicks (there a key event carries the text the key
# makes). CTest runs it on the xcb platform under an X server of its own: xvfb-run -a picks a free
# display, and the tests that start one never run at the same time.
find_program(XVFB_RUN xvfb-run)
if(NOT XVFB_RUN)
    set(XVFB_RUN xvfb-run) # scripts/setup-deps installs it; without it the test fails plainly
endif()

function(mercantel_xvfb_test name)
    mercantel_test_executable(${name} ${ARGN})
    add_test(NAME ${name}
             COMMAND ${XVFB_RUN} -a -s "-screen 0 1280x800x24" $<TARGET_FILE:${name}>)
    set_tests_properties(${name} PROPERTIES
        ENVIRONMENT "QT_QPA_PLATFORM=xcb;ASAN_OPTIONS=detect_leaks=0"
        RESOURCE_LOCK xvfb TIMEOUT 120)
endfunction()
