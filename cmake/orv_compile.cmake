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
    # What it warns of nobody has seen yet, so warnings are none of its errors. The runtime is linked in, as with the other
    # compilers.
    target_compile_options(orv_compile INTERFACE /W4 /utf-8 /permissive- /bigobj)
    set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
    # Those that want a manifest have it among their resources.
    target_link_options(orv_image INTERFACE /DYNAMICBASE /NXCOMPAT /HIGHENTROPYVA /MANIFEST:NO)
else()
    # The module is loaded into every process with a file dialog: its size counts for more than the last cycle.
    set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG")
    set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
    target_compile_options(orv_compile INTERFACE $<$<COMPILE_LANGUAGE:C,CXX>:-Wall -Wextra -Wredundant-decls -Werror>)
    target_compile_options(
        orv_compile INTERFACE $<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:C,CXX>>:-ffunction-sections
                              -fdata-sections>)
    target_link_options(orv_image INTERFACE -static -Wl,--dynamicbase,--nxcompat
                        $<$<AND:$<CONFIG:Release>,$<NOT:$<BOOL:$<TARGET_PROPERTY:ORV_SYMBOLS>>>>:-s>
                        $<$<CONFIG:Release>:-Wl,--gc-sections>)
    if(CMAKE_SIZEOF_VOID_P EQUAL 8)
        target_link_options(orv_image INTERFACE -Wl,--high-entropy-va)
    endif()
    if(ORV_TRAP_UNDEFINED)
        # As a flag of the build, which a target's own options follow: the tests' -O0 holds here too.
        set(CMAKE_CXX_FLAGS_DEBUG "-gline-tables-only -O1")
        # No runtime library for this target: a trap ends the program as an illegal instruction. Three warnings are
        # not for us: one would have virtual destructors taken out of final classes, which have them on purpose; one
        # is about GCC's own headers; one about names of warnings that GCC alone has.
        target_compile_options(
            orv_compile INTERFACE $<$<COMPILE_LANGUAGE:CXX>:-fsanitize=undefined -fsanitize-trap=all
                                  -D_GLIBCXX_ASSERTIONS
                                  -Wno-unnecessary-virtual-specifier -Wno-deprecated-declarations
                                  -Wno-unknown-warning-option>)
    endif()
    if(ORV_COVERAGE)
        target_link_options(orv_image INTERFACE --coverage)
    endif()
endif()

# For what ships: the calling folder and those below it are compiled with a guard between variables and return address
# (ovufc/runtime/stack_guard.h; Visual C++ does it unasked), and with debug information, which ends up beside what ships,
# not in it, and names no folder of the machine that built it.
macro(orv_shipped)
    if(NOT MSVC)
        add_compile_options($<$<COMPILE_LANGUAGE:C,CXX>:-fstack-protector-strong>)
        add_compile_options("$<$<AND:$<CONFIG:Release>,$<COMPILE_LANGUAGE:C,CXX>>:-g;-ffile-prefix-map=${CMAKE_SOURCE_DIR}=.>")
    endif()
endmacro()

# orv_keep_symbols(TARGET): what is linked without its symbols still has them in files of its own: bin/NAME.debug for
# gdb, and bin/NAME.pdb, which Windows' debuggers read (names of functions; this linker knows no more).
function(orv_keep_symbols target)
    if(MSVC OR NOT CMAKE_BUILD_TYPE STREQUAL Release)
        return()
    endif()
    set_target_properties(${target} PROPERTIES ORV_SYMBOLS ON)
    target_link_options(${target} PRIVATE -Wl,--pdb=bin/${target}.pdb
                                                 -Wl,-Map=bin/${target}.map)
    add_custom_command(
        TARGET ${target}
        POST_BUILD
        COMMAND ${CMAKE_OBJCOPY} --only-keep-debug $<TARGET_FILE:${target}> ${target}.dll.debug
        COMMAND ${CMAKE_STRIP} $<TARGET_FILE:${target}>
        COMMAND ${CMAKE_OBJCOPY} --add-gnu-debuglink=${target}.dll.debug $<TARGET_FILE:${target}>
        WORKING_DIRECTORY ${CMAKE_RUNTIME_OUTPUT_DIRECTORY}
        VERBATIM)
endfunction()

# orv_library(NAME SOURCES... LINK libs...): one static library per product folder.
function(orv_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;LINK" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_link_libraries(${name} PUBLIC orv_compile ${ARG_LINK})
endfunction()
