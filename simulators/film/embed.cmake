# SPDX-License-Identifier: Apache-2.0
# Writes a C++ source with the content of files: cmake -DOUTPUT=<source> -DFILES="<file>;<file>" -P embed.cmake
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
file(WRITE ${OUTPUT} "#include \"embedded_file.hpp\"

#include <stdexcept>

namespace simulator::film {
namespace {
${arrays}} // namespace

std::string_view embeddedFile(std::string_view name) {
${rows}    throw std::logic_error(\"there is no embedded file of this name\");
}

} // namespace simulator::film
")
