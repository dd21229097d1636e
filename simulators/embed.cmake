# SPDX-License-Identifier: Apache-2.0
# embed_files(<target> <file>...) compiles the content of the files into the target, for embeddedFile(). The file runs
# itself as a script at build time.
if(CMAKE_SCRIPT_MODE_FILE)
    set(arrays "")
    set(rows "")
    set(number 0)
    foreach(file IN LISTS FILES)
        file(READ ${file} digits HEX)
        string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," bytes "${digits}")
        get_filename_component(name ${file} NAME)
        string(APPEND arrays "constexpr unsigned char file${number}[] = {${bytes}};\n")
        string(APPEND rows "    if (name == \"${name}\")\n"
            "        return {reinterpret_cast<const char*>(file${number}), sizeof(file${number})};\n")
        math(EXPR number "${number} + 1")
    endforeach()
    file(WRITE ${OUTPUT} "#include \"common/embedded_file.hpp\"

#include <stdexcept>

namespace simulator {
namespace {
${arrays}} // namespace

std::string_view embeddedFile(std::string_view name) {
${rows}    throw std::logic_error(\"there is no embedded file of this name\");
}

} // namespace simulator
")
    return()
endif()

set(embedScript ${CMAKE_CURRENT_LIST_FILE})

function(embed_files target)
    list(TRANSFORM ARGN PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/ OUTPUT_VARIABLE files)
    set(source ${CMAKE_CURRENT_BINARY_DIR}/embedded_file.cpp)
    add_custom_command(OUTPUT ${source}
        COMMAND ${CMAKE_COMMAND} -DOUTPUT=${source} "-DFILES=${files}" -P ${embedScript}
        DEPENDS ${embedScript} ${files} VERBATIM)
    target_sources(${target} PRIVATE ${source})
endfunction()
