include("${CMAKE_CURRENT_LIST_DIR}/headers.cmake")
add_headers(nlohmann_json::nlohmann_json nlohmann)
