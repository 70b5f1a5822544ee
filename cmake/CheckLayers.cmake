cmake_policy(SET CMP0057 NEW)
# The layers of the source tree, lowest first. A folder may include headers of its own
# folder and of folders before it in this list, never of one after it. Run at configure
# time (a violation stops the build) and as a test:
#   cmake -DSOURCE_DIR=<src> -P CheckLayers.cmake
set(STEWARD_LAYERS platform support model settings maps generate bots wizard messaging console watch commands ui cli app)
# The windows and the program without a window stand side by side on the commands:
# neither includes the other.
set(STEWARD_SIDE_BY_SIDE ui cli)

if(NOT DEFINED SOURCE_DIR OR SOURCE_DIR STREQUAL "")
    set(SOURCE_DIR "${CMAKE_CURRENT_LIST_DIR}/../src")
endif()

get_filename_component(SOURCE_DIR "${SOURCE_DIR}" ABSOLUTE)
set(violations "")
set(rank 0)
foreach(layer IN LISTS STEWARD_LAYERS)
    set(layer_rank_${layer} ${rank})
    math(EXPR rank "${rank} + 1")
endforeach()

file(GLOB_RECURSE sources "${SOURCE_DIR}/*.h" "${SOURCE_DIR}/*.cpp")
foreach(source IN LISTS sources)
    file(RELATIVE_PATH relative "${SOURCE_DIR}" "${source}")
    string(REGEX MATCH "^[^/]+" folder "${relative}")
    if(NOT DEFINED layer_rank_${folder})
        list(APPEND violations "${relative}: folder '${folder}' is not a known layer")
        continue()
    endif()
    file(STRINGS "${source}" includes REGEX "^[ \t]*#[ \t]*include[ \t]*\"[^\"/]+/")
    foreach(line IN LISTS includes)
        string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*\"([^\"/]+)/.*$" "\\1" target "${line}")
        if(NOT DEFINED layer_rank_${target})
            continue() # a generated or foreign header
        endif()
        if(NOT target STREQUAL folder AND target IN_LIST STEWARD_SIDE_BY_SIDE AND folder IN_LIST STEWARD_SIDE_BY_SIDE)
            list(APPEND violations "${relative} includes a header of '${target}', which stands beside '${folder}'")
        elseif(layer_rank_${target} GREATER layer_rank_${folder})
            list(APPEND violations "${relative} includes a header of '${target}', a layer above '${folder}'")
        endif()
    endforeach()
endforeach()

if(violations)
    list(JOIN violations "\n  " text)
    message(FATAL_ERROR "Layer order broken:\n  ${text}")
endif()
