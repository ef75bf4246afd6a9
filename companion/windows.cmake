# Framewright.exe. The class that it serves, apart from the program, so that tests can serve it too.
file(GLOB companion_server_sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/server/win32/*.cpp)
add_library(nqp_companion_server STATIC ${companion_server_sources})
target_link_libraries(nqp_companion_server PUBLIC nqp_companion nqp_platform)

nqp_type_library(companion.tlb ${CMAKE_CURRENT_SOURCE_DIR}/server/companion.idl)
add_library(nqp_companion_resources OBJECT resources/framewright.rc)
target_include_directories(nqp_companion_resources PRIVATE resources ${CMAKE_CURRENT_BINARY_DIR}
  ${PROJECT_BINARY_DIR}/src)
set_source_files_properties(resources/framewright.rc PROPERTIES OBJECT_DEPENDS
  "${CMAKE_CURRENT_SOURCE_DIR}/resources/framewright.manifest;${PROJECT_SOURCE_DIR}/packaging/icon/framewright.ico;${CMAKE_CURRENT_BINARY_DIR}/companion.tlb")

add_executable(Framewright WIN32 main.cpp windows_console.cpp)
target_link_libraries(Framewright PRIVATE nqp_companion_server nqp_cutter nqp_forms_win32
  nqp_companion_resources)
# Its symbols are of no use to anyone who runs it, and take a third of its size.
target_link_options(Framewright PRIVATE -s)

# Not with all others: what they are built with takes minutes once.
set_target_properties(nqp_cutter Framewright PROPERTIES EXCLUDE_FROM_ALL ON)
