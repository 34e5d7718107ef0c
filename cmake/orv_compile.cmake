# The one place for compiler and linker settings: orv_compile goes to every target of ours,
# orv_image to every DLL and program.
add_library(orv_compile INTERFACE)
target_compile_features(orv_compile INTERFACE cxx_std_20)
target_include_directories(orv_compile INTERFACE ${CMAKE_SOURCE_DIR})
# 0x0A00: the interfaces of Windows 10 are declared; what older systems lack is asked for at run time.
target_compile_definitions(
    orv_compile INTERFACE UNICODE _UNICODE WIN32_LEAN_AND_MEAN NOMINMAX STRICT STRICT_TYPED_ITEMIDS
                          _WIN32_WINNT=0x0A00 WINVER=0x0A00)

add_library(orv_image INTERFACE)

if(MSVC)
    target_compile_options(orv_compile INTERFACE /W4 /WX /utf-8 /permissive-)
    set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
    target_link_options(orv_image INTERFACE /DYNAMICBASE /NXCOMPAT /HIGHENTROPYVA)
else()
    # The module is loaded into every process with a file dialog: its size counts for more than the last cycle.
    set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG")
    set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
    target_compile_options(orv_compile INTERFACE $<$<COMPILE_LANGUAGE:C,CXX>:-Wall -Wextra -Werror>)
    target_compile_options(
        orv_compile INTERFACE $<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:C,CXX>>:-ffunction-sections
                              -fdata-sections>)
    target_link_options(orv_image INTERFACE -static -Wl,--dynamicbase,--nxcompat
                        $<$<CONFIG:Release>:-s> $<$<CONFIG:Release>:-Wl,--gc-sections>)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
        target_link_options(orv_image INTERFACE -Wl,--high-entropy-va)
    endif()
    if(ORV_TRAP_UNDEFINED)
        # No runtime library for this target: a trap ends the program as an illegal instruction. Three warnings are
        # not for us: one would have virtual destructors taken out of final classes, which have them on purpose; one
        # is about GCC's own headers; one about names of warnings that GCC alone has.
        target_compile_options(
            orv_compile INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-O1 -fsanitize=undefined -fsanitize-trap=all
                                  -Wno-unnecessary-virtual-specifier -Wno-deprecated-declarations
                                  -Wno-unknown-warning-option>)
    endif()
    if(ORV_COVERAGE)
        target_link_options(orv_image INTERFACE --coverage)
    endif()
endif()

# orv_library(NAME SOURCES... LINK libs...): one static library per product folder.
function(orv_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC orv_compile ${ARG_LINK})
endfunction()
