# SPDX-License-Identifier: Apache-2.0
# The shared library exports its own namespace and the two version symbols. Visibility alone does not achieve that:
# the instances of Boost and standard library templates have the visibility that those headers state.
set(exportedSymbols
    KinovaneCoreVersionNumber
    KinovaneCoreVersionString
    "_ZN8kinovane*"   # functions and objects
    "_ZNK8kinovane*"  # const member functions
    "_ZTVN8kinovane*" # virtual tables
    "_ZTIN8kinovane*" # type information
    "_ZTSN8kinovane*" # names in type information
)

if(BUILD_SHARED_LIBS)
    if(APPLE)
        list(TRANSFORM exportedSymbols PREPEND "_")
        list(JOIN exportedSymbols "\n" text)
        set(symbolFile ${PROJECT_BINARY_DIR}/exported_symbols.txt)
        set(symbolOption "LINKER:-exported_symbols_list,${symbolFile}")
    else()
        list(JOIN exportedSymbols "; " text)
        set(text "{ global: ${text}; local: *; };")
        set(symbolFile ${PROJECT_BINARY_DIR}/exported_symbols.map)
        set(symbolOption "LINKER:--version-script=${symbolFile}")
    endif()
    file(CONFIGURE OUTPUT ${symbolFile} CONTENT "${text}\n")
    target_link_options(KinovaneCore PRIVATE ${symbolOption})
    set_target_properties(KinovaneCore PROPERTIES LINK_DEPENDS ${symbolFile})
endif()
