# Counts with callgrind what comparing tags costs: the same for a wrong first and a wrong last byte,
# or a forger learns from the time how far he got. The control shows that the count can tell.
#
#   cmake -DVALGRIND=<program> -DPROGRAM=<compare_tags> -P count_instructions.cmake
function(count result kind place)
    execute_process(
        COMMAND ${VALGRIND} --tool=callgrind --callgrind-out-file=/dev/null
            --toggle-collect=compare_tags ${PROGRAM} ${kind} ${place}
        RESULT_VARIABLE exit ERROR_VARIABLE output)
    if(NOT exit EQUAL 0 OR NOT output MATCHES "Collected : ([0-9]+)")
        message(FATAL_ERROR "${kind} ${place}: exit code ${exit}\n${output}")
    endif()
    message(STATUS "${kind}, wrong ${place} byte: ${CMAKE_MATCH_1} instructions")
    set(${result} ${CMAKE_MATCH_1} PARENT_SCOPE)
endfunction()

foreach(kind library early)
    count(${kind}_first ${kind} first)
    count(${kind}_last ${kind} last)
endforeach()
if(NOT library_first EQUAL library_last)
    message(SEND_ERROR "the comparison tells where tags differ")
endif()
if(early_first EQUAL early_last)
    message(SEND_ERROR "the control does not differ: the count tells nothing")
endif()
