# Writes the source with the text that identifies this build of the library. The build runs it as a
# script:
# cmake -D OUTPUT=... -D VERSION=... -D TOOL=... -D SOURCE_DIR=... -P WriteModuleInfo.cmake
#
# With SOURCE_DATE_EPOCH set, the text depends only on the sources and their history, not on the
# machine.

string(TIMESTAMP timestamp "%Y-%m-%d %H:%M" UTC) # uses SOURCE_DATE_EPOCH if set

set(machine "reproducible")
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
    cmake_host_system_information(RESULT machine QUERY HOSTNAME)
endif()

execute_process(COMMAND git -C "${SOURCE_DIR}" rev-list --count HEAD
    OUTPUT_VARIABLE changelist OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET RESULT_VARIABLE failed)
if(failed)
    set(changelist 0) # the sources have no history
endif()

set(items "")
function(add_item name value)
    string(REPLACE "&" "&amp;" value "${value}")
    string(REPLACE "<" "&lt;" value "${value}")
    string(REPLACE ">" "&gt;" value "${value}")
    string(REPLACE "\"" "&quot;" value "${value}")
    set(items "${items}    <Item name=\"${name}\">${value}</Item>\n" PARENT_SCOPE)
endfunction()

add_item(CompanyName "vxattribute maintainers")
add_item(FileVersion "${VERSION}.0")
add_item(InternalName "vxattribute")
add_item(OriginalFilename "vxattribute-w32r-18-1.dll")
add_item(LegalCopyright "Copyright (c) 2026 vxattribute maintainers")
add_item(ZEMOBuildMachine "${machine}")
add_item(ZEMOBuildName "vxattribute-${VERSION}")
add_item(ZEMOBuildChangelist "${changelist}")
add_item(ZEMOBuildNum "1")
add_item(ZEMOBuildTimestamp "${timestamp}")
string(MD5 build_id "${TOOL}\n${items}")
string(TOUPPER "${build_id}" build_id)
add_item(ZEMOGCCBuildId "${build_id}")

file(WRITE "${OUTPUT}" "// Made by the build.
#include \"vxattribute/module/module_registrar_internal.h\"

char const vxattribute::impl::moduleInformation[] =
    R\"info(***ZEMO*MODULE*INFO*F70397B5E6FEBE4447157E5A1C9D5E64***
<ModuleInfo name=\"vxattribute\" type=\"dll\" tool=\"${TOOL}\" build=\"release\" arch=\"x86\">
  <FileInfo>
${items}  </FileInfo>
</ModuleInfo>
)info\";
")
