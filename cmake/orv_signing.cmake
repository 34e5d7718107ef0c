# Signing. Without a certificate from outside, a development authority is made in the build folder on first use.
# A release names its own:
set(ORV_SIGNING_PKCS12 "$ENV{ORV_SIGNING_PKCS12}" CACHE FILEPATH "Certificate and key that sign a release (PKCS#12)")
set(ORV_SIGNING_PASSWORD_FILE "$ENV{ORV_SIGNING_PASSWORD_FILE}" CACHE FILEPATH "File with the password of the above")
set(ORV_SIGNING_TIMESTAMP_URL "$ENV{ORV_SIGNING_TIMESTAMP_URL}" CACHE STRING "Time-stamping service (RFC 3161) of a release")

set(ORV_SIGNING_SCRIPT ${CMAKE_SOURCE_DIR}/scripts/signing.sh)
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
        COMMAND
            ${CMAKE_COMMAND} -E env ORV_SIGNING_PKCS12=${ORV_SIGNING_PKCS12}
            ORV_SIGNING_PASSWORD_FILE=${ORV_SIGNING_PASSWORD_FILE}
            ORV_SIGNING_TIMESTAMP_URL=${ORV_SIGNING_TIMESTAMP_URL} ${ORV_SIGNING_SCRIPT} sign ${ORV_SIGNING_DIR}
            $<TARGET_FILE:${target}>
        VERBATIM)
endfunction()
