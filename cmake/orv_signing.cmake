# Signing. The signer is asked for at each configure, in the environment (see scripts/signing.sh); without one, a
# development authority is made in the build folder on first use. A build with ORV_RELEASE refuses that.
option(ORV_RELEASE "What is given to customers: the signer must be the maker's own" OFF)
set(ORV_SIGNING_SCRIPT ${CMAKE_CURRENT_LIST_DIR}/../scripts/signing.sh)

foreach(name ORV_SIGNING_PKCS12 ORV_SIGNING_PASSWORD_FILE)
    unset(${name} CACHE)
    set(${name})
    if(NOT "$ENV{${name}}" STREQUAL "")
        file(REAL_PATH "$ENV{${name}}" ${name} BASE_DIRECTORY ${CMAKE_SOURCE_DIR})
        if(NOT EXISTS "${${name}}")
            message(FATAL_ERROR "${name} names no file: ${${name}}")
        endif()
    endif()
endforeach()
unset(ORV_SIGNING_TIMESTAMP_URL CACHE)
set(ORV_SIGNING_TIMESTAMP_URL "$ENV{ORV_SIGNING_TIMESTAMP_URL}")
set(orv_signer_environment
    ${CMAKE_COMMAND} -E env ORV_SIGNING_PKCS12=${ORV_SIGNING_PKCS12}
    ORV_SIGNING_PASSWORD_FILE=${ORV_SIGNING_PASSWORD_FILE} ORV_SIGNING_TIMESTAMP_URL=${ORV_SIGNING_TIMESTAMP_URL})

if(ORV_RELEASE)
    execute_process(
        COMMAND ${orv_signer_environment} ${ORV_SIGNING_SCRIPT} check-signer
        RESULT_VARIABLE result
        ERROR_VARIABLE complaint)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${complaint}")
    endif()
endif()

set(ORV_SIGNING_DIR ${CMAKE_BINARY_DIR}/signing)
if(ORV_SIGNING_PKCS12)
    set(ORV_SIGNING_MATERIAL ${ORV_SIGNING_PKCS12})
else()
    set(ORV_SIGNING_MATERIAL ${ORV_SIGNING_DIR}/signer.crt)
endif()
add_custom_command(
    OUTPUT ${ORV_SIGNING_DIR}/signer.crt
    COMMAND ${ORV_SIGNING_SCRIPT} authority ${ORV_SIGNING_DIR}
    COMMENT "Making the development certificate authority"
    VERBATIM)
add_custom_target(signing_authority DEPENDS ${ORV_SIGNING_DIR}/signer.crt)

# orv_sign(TARGET): signs the image each time it is linked, and links it again when the certificate changes.
function(orv_sign target)
    add_dependencies(${target} signing_authority)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${ORV_SIGNING_MATERIAL} ${ORV_SIGNING_SCRIPT})
    add_custom_command(
        TARGET ${target}
        POST_BUILD
        COMMAND ${orv_signer_environment} ${ORV_SIGNING_SCRIPT} sign ${ORV_SIGNING_DIR} $<TARGET_FILE:${target}>
        VERBATIM)
endfunction()
