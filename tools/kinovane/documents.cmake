# SPDX-License-Identifier: Apache-2.0
# Writes the manual pages MANUALS and the completion scripts, which the program KINOVANE prints, to FOLDER.
function(print file)
    execute_process(COMMAND ${KINOVANE} ${ARGN} OUTPUT_FILE ${FOLDER}/${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(MAKE_DIRECTORY ${FOLDER})
foreach(manual ${MANUALS})
    string(REGEX REPLACE "^kinovane-?(.*)[.]1$" "\\1" command ${manual})
    print(${manual} manual ${command})
endforeach()
print(kinovane.bash completion bash)
print(_kinovane completion zsh)
print(kinovane.fish completion fish)
