# Runs one program and checks its exit code and its output:
#
#   cmake -DEXIT=<code> [-DLAST=<regex>] [-DHAS=<lines>] [-DERR=<text>] -P run_case.cmake
#         -- <program> [<argument>...]
#
# LAST must match the whole last line of standard output, and each line of HAS must stand in it
# somewhere; without the two it must be empty. ERR is all of standard error.
set(command)
set(isCommand FALSE)
math(EXPR last "${CMAKE_ARGC} - 1")
foreach(i RANGE ${last})
    if(isCommand)
        list(APPEND command "${CMAKE_ARGV${i}}")
    elseif(CMAKE_ARGV${i} STREQUAL "--")
        set(isCommand TRUE)
    endif()
endforeach()
execute_process(COMMAND ${command} RESULT_VARIABLE exit OUTPUT_VARIABLE out ERROR_VARIABLE err)

if(NOT exit STREQUAL EXIT)
    message(SEND_ERROR "exit code ${exit} instead of ${EXIT}")
endif()
if(NOT err STREQUAL "${ERR}")
    message(SEND_ERROR "standard error is\n${err}\ninstead of\n${ERR}")
endif()
if(NOT DEFINED LAST AND NOT DEFINED HAS AND NOT out STREQUAL "")
    message(SEND_ERROR "unexpected output\n${out}")
endif()
if(DEFINED LAST AND NOT out MATCHES "(^|\n)${LAST}\n$")
    message(SEND_ERROR "the last line does not match\n${LAST}\nin\n${out}")
endif()
string(REPLACE "\n" ";" HAS "${HAS}")
foreach(text IN LISTS HAS)
    string(FIND "${out}" "${text}" position)
    if(position EQUAL -1)
        message(SEND_ERROR "${text}\nis missing in\n${out}")
    endif()
endforeach()
