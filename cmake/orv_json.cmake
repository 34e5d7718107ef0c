# nlohmann JSON is header only and lives in the host's /usr/include, which the cross compiler must never
# see as a whole; a copy in the build folder is all that it is shown.
find_path(ORV_JSON_SOURCE nlohmann/json.hpp PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
file(COPY ${ORV_JSON_SOURCE}/nlohmann DESTINATION ${CMAKE_BINARY_DIR}/third_party)
add_library(orv_json INTERFACE)
target_include_directories(orv_json SYSTEM INTERFACE ${CMAKE_BINARY_DIR}/third_party)
