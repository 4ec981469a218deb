# The keys whose signatures the program accepts on a program update, compiled in.
#     -DMERCANTEL_UPDATE_KEYS="resources/keys/maker.public;resources/keys/demo.public"
# lists key files (relative to the source tree or absolute); each holds one or more keys, so the
# maker can list a new key beside the old one. Left empty, a Release build takes the maker's
# keys only, any other build adds the demo key, whose secret half signs the demo updater.
set(MERCANTEL_UPDATE_KEYS "" CACHE STRING
    "Key lists of the program updates this build accepts (empty: by build type)")

set(update_key_files ${MERCANTEL_UPDATE_KEYS})
if(NOT update_key_files)
    set(update_key_files resources/keys/maker.public)
    if(NOT CMAKE_BUILD_TYPE STREQUAL "Release")
        list(APPEND update_key_files resources/keys/demo.public)
    endif()
endif()

set(update_key_text "")
foreach(key_file ${update_key_files})
    get_filename_component(key_path ${key_file} ABSOLUTE BASE_DIR ${PROJECT_SOURCE_DIR})
    if(NOT EXISTS ${key_path})
        message(FATAL_ERROR "MERCANTEL_UPDATE_KEYS: no key list ${key_path}")
    endif()
    file(READ ${key_path} key_text)
    string(APPEND update_key_text "${key_text}\n")
    set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${key_path})
endforeach()
set(update_keys_include ${PROJECT_BINARY_DIR}/generated/comms/updatekeys.inc)
file(CONFIGURE OUTPUT ${update_keys_include}
    CONTENT "R\"keys(\n${update_key_text})keys\"\n")
message(STATUS "Program updates accepted from the keys of: ${update_key_files}")

# A package for dealers must never accept the demo key, whose secret half is public.
file(STRINGS ${PROJECT_SOURCE_DIR}/resources/keys/demo.public demo_key REGEX "^[0-9a-fA-F]")
string(REGEX MATCH "^[0-9a-fA-F]+" demo_key "${demo_key}")
string(TOLOWER "${update_key_text}" accepted_keys)
string(TOLOWER "${demo_key}" demo_key)
string(FIND "${accepted_keys}" "${demo_key}" demo_key_at)
if(NOT demo_key_at EQUAL -1)
    install(CODE "message(FATAL_ERROR \"This build accepts program updates signed with the demo \
key. Configure a build of its own for the package: -DCMAKE_BUILD_TYPE=Release \
-DMERCANTEL_UPDATE_KEYS=resources/keys/maker.public\")")
endif()
