# What is built is signed by a development authority, which is made in the build folder on first use. What customers are
# given scripts/release.sh signs.
set(ORV_SIGNING_SCRIPT ${CMAKE_CURRENT_LIST_DIR}/../scripts/signing.sh)
set(ORV_SIGNING_DIR ${CMAKE_BINARY_DIR}/signing)
# Whatever certificate of the maker the environment names.
set(orv_signing ${CMAKE_COMMAND} -E env --unset=ORV_SIGNING_PKCS12 ${ORV_SIGNING_SCRIPT})

add_custom_command(
    OUTPUT ${ORV_SIGNING_DIR}/signer.crt
    COMMAND ${ORV_SIGNING_SCRIPT} authority ${ORV_SIGNING_DIR}
    COMMENT "Making the development certificate authority"
    VERBATIM)
add_custom_target(signing_authority DEPENDS ${ORV_SIGNING_DIR}/signer.crt)

# orv_sign(TARGET): signs the image each time it is linked, and links it again when the certificate changes.
function(orv_sign target)
    add_dependencies(${target} signing_authority)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${ORV_SIGNING_DIR}/signer.crt ${ORV_SIGNING_SCRIPT})
    add_custom_command(
        TARGET ${target}
        POST_BUILD
        COMMAND ${orv_signing} sign ${ORV_SIGNING_DIR} $<TARGET_FILE:${target}>
        VERBATIM)
endfunction()
